// The commands that change a device: set, delete, edit, commit.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_EDIT_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_EDIT_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Adds the commands; they run while the command line is parsed and throw Error. `device` outlives `app`.
void add_edit_commands(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
