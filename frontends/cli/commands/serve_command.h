// `yfw serve` and `yfw netconf-stdio`.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_SERVE_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_SERVE_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

class GnmiDoors;

// `device` must outlive the commands, and so must `gnmi`, which may be NULL: the program that can serve gNMI
// takes over then.
void add_serve(CLI::App &app, DeviceOptions &device, const GnmiDoors *gnmi);

} // namespace yfw::cli

#endif
