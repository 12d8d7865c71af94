// The user running the program.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_CURRENT_USER_H
#define YFW_FRONTENDS_CLI_OPTIONS_CURRENT_USER_H

#include <string>

namespace yfw::cli {

// The user's name; under sudo, that of the caller; the user ID if there is no name.
std::string current_user();

} // namespace yfw::cli

#endif
