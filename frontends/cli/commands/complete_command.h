// yfw complete: what the completion of a shell asks for.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_COMPLETE_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_COMPLETE_COMMAND_H

#include <CLI/CLI.hpp>

namespace yfw::cli {

// Adds the command, which help does not show. It runs while the command line is parsed and prints one candidate
// a line; a first line ":files" asks the shell for files. `app` has all the commands that are completed.
void add_complete(CLI::App &app);

} // namespace yfw::cli

#endif
