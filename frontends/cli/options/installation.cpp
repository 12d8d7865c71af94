#include "frontends/cli/options/installation.h"

namespace yfw::cli {
namespace {

// Of a program in bin/ or libexec/yfw/.
std::filesystem::path prefix_of(const std::filesystem::path &program) {
    const std::filesystem::path above = program.parent_path().parent_path();
    return above.filename() == "libexec" ? above.parent_path() : above;
}

Installation find_installation() {
    std::error_code error;
    const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
    const std::filesystem::path prefix = prefix_of(program);
    const std::filesystem::path shared = prefix / "share/yfw";
    if (!error && std::filesystem::is_directory(shared / "models", error))
        return {shared / "models", YFW_STANDARD_MODELS_DIR, shared / "examples", prefix / "lib/yfw",
                prefix / "libexec/yfw/yfw-gnmi"};
    return {YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR, YFW_EXAMPLES_DIR, YFW_PLUGINS,
            program.parent_path() / "yfw-gnmi"};
}

} // namespace

const Installation &installation() {
    static const Installation found = find_installation(); // cached, as every command asks
    return found;
}

} // namespace yfw::cli
