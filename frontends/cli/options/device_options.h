// The options that every command on a device has.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_DEVICE_OPTIONS_H
#define YFW_FRONTENDS_CLI_OPTIONS_DEVICE_OPTIONS_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Adds --native, --device, --store, --models, --plugin and --trace, with their defaults. `options` outlives the
// command.
void add_device_options(CLI::App &command, DeviceOptions &options);

} // namespace yfw::cli

#endif
