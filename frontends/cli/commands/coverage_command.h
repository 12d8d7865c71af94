// The command that shows what a device serves of its model.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_COVERAGE_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_COVERAGE_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// `device` must outlive the command.
void add_coverage(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
