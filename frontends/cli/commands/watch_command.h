// `yfw watch`: neighbors as they come and go.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_WATCH_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_WATCH_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// `device` outlives the command.
void add_watch(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
