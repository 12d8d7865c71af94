// The commands about what a device does of its configuration: status, drift and apply.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_STATUS_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_STATUS_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

void add_status_commands(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
