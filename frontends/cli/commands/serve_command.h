// `yfw serve` and `yfw netconf-stdio`.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_SERVE_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_SERVE_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// `device` must outlive the commands.
void add_serve(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
