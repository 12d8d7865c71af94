// The command that draws a network.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_TOPOLOGY_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_TOPOLOGY_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Adds `topology` to the program. The models, the plug-in and the trace are those of `device`, which has to
// outlive the parsing; the devices are the command's own. The command throws Error for what cannot be
// read and std::runtime_error for what cannot be written.
void add_topology(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
