// yfw manual: the manual page, made of the texts of --help.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_MANUAL_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_MANUAL_COMMAND_H

#include <string>

#include <CLI/CLI.hpp>

namespace yfw::cli {

// Adds the command, which help does not show and packages call when they are built. It prints yfw(1) for man,
// with a section for each command of `app`. `version` is for the footer.
void add_manual(CLI::App &app, const std::string &version);

} // namespace yfw::cli

#endif
