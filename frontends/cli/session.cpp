#include "frontends/cli/session.h"

#include <cstdlib>
#include <string>
#include <system_error>

namespace yfw::cli {
namespace {

sources::FileSource open_device(const DeviceOptions &options) {
    if (!options.native_files.empty())
        return sources::FileSource(options.native_files);
    return sources::FileSource::of_device(options.device);
}

std::string environment(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

// XDG base directories.
std::filesystem::path state_directory() {
    const std::string state = environment("XDG_STATE_HOME");
    if (!state.empty())
        return std::filesystem::path(state) / "yfw";
    const std::string home = environment("HOME");
    return std::filesystem::path(home.empty() ? "/var/lib" : home + "/.local/state") / "yfw";
}

} // namespace

std::filesystem::path store_of(const DeviceOptions &options) {
    if (!options.store.empty() || !options.native_files.empty())
        return options.store;
    std::error_code error;
    std::string name = std::filesystem::weakly_canonical(options.device, error).string();
    while (!name.empty() && (name.front() == '/' || name.back() == '/'))
        name.erase(name.front() == '/' ? 0 : name.size() - 1, 1);
    for (char &c : name)
        c = c == '/' ? '%' : c;
    return state_directory() / (name + ".db");
}

Session::Session(const DeviceOptions &options)
    : schemas(options.native_models, options.openconfig_models), recorded(open_device(options)),
      source(schemas, recorded, store_of(options)), engine(schemas, source, options.plugin) {
    engine.set_trace(options.trace);
}

} // namespace yfw::cli
