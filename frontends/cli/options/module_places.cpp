#include "frontends/cli/options/module_places.h"

#include <system_error>

#include "frontends/cli/options/installation.h"

namespace yfw::cli {

// A repository keeps OpenConfig's modules in release/models/TOPIC, and the IETF's in third_party/ietf.
std::vector<std::filesystem::path> import_directories(const std::filesystem::path &models) {
    constexpr int most_levels = 3;
    std::vector<std::filesystem::path> found;
    std::error_code error;
    std::filesystem::path above = std::filesystem::weakly_canonical(models, error);
    for (int level = 0; level < most_levels && !error && above.has_relative_path(); level++) {
        above = above.parent_path();
        const std::filesystem::path beside = above / "third_party/ietf";
        std::error_code ignored;
        if (std::filesystem::is_directory(beside, ignored))
            found.push_back(beside);
    }
    found.push_back(installation().standard_models);
    return found;
}

} // namespace yfw::cli
