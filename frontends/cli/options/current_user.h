// Who runs the program.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_CURRENT_USER_H
#define YFW_FRONTENDS_CLI_OPTIONS_CURRENT_USER_H

#include <string>

namespace yfw::cli {

// The user's name, of who called sudo where that is so; the number of a user without a name.
std::string current_user();

} // namespace yfw::cli

#endif
