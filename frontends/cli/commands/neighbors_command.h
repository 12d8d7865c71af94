// yfw neighbors: who is connected to which port.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_NEIGHBORS_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_NEIGHBORS_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Adds the command; it runs while the command line is parsed and throws Error. `device` outlives `app`.
void add_neighbors(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
