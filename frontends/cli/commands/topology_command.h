// The command that draws a network topology.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_TOPOLOGY_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_TOPOLOGY_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Adds `topology` to the program. It takes models, plug-in and trace from `device`, which must outlive parsing,
// and has its own option for the devices. The command throws Error for unreadable input and std::runtime_error
// when it cannot write.
void add_topology(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
