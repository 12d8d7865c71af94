// Where YANG modules are that those in use import.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_MODULE_PLACES_H
#define YFW_FRONTENDS_CLI_OPTIONS_MODULE_PLACES_H

#include <filesystem>
#include <vector>

namespace yfw::cli {

// The directories of modules that those of `models` import and that are not in it: third_party/ietf of the
// repository that `models` is a part of, as OpenConfig publishes them, and those of the Debian package.
std::vector<std::filesystem::path> import_directories(const std::filesystem::path &models);

} // namespace yfw::cli

#endif
