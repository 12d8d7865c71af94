// Names of the files that keep devices' commits.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_STORE_NAME_H
#define YFW_FRONTENDS_CLI_OPTIONS_STORE_NAME_H

#include <optional>
#include <string>

namespace yfw::cli {

// `device`: what identifies it, its path. Two devices have two names. The name of a long path ends in a hash;
// it leaves room for what the store's other files append to it.
std::string store_name(const std::string &device);

// The name in earlier versions; nothing if another device could have had the same.
std::optional<std::string> former_store_name(const std::string &device);

} // namespace yfw::cli

#endif
