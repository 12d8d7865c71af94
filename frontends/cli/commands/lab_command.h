// The commands of the laboratory: up, status, record, down.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_LAB_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_LAB_COMMAND_H

#include <CLI/CLI.hpp>

namespace yfw::cli {

// Adds `lab` to the program. Its commands run while the command line is parsed; they throw Error for what
// the user can change and std::runtime_error for the rest.
void add_lab(CLI::App &app);

} // namespace yfw::cli

#endif
