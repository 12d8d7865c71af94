// The options common to all commands on a device.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_DEVICE_OPTIONS_H
#define YFW_FRONTENDS_CLI_OPTIONS_DEVICE_OPTIONS_H

#include <filesystem>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// What is used without options: the shipped device and what is installed with the program.
DeviceOptions shipped_device();

// Adds --native, --device, --store, --models, --plugin and --trace. `options`, which has the defaults, must outlive
// the command.
void add_device_options(CLI::App &command, DeviceOptions &options);

// Adds --device for commands on several devices, which set `devices`; it must outlive the command. `standard`:
// which of the shipped devices it has been set to.
CLI::Option *add_devices_option(CLI::App &command, std::vector<std::filesystem::path> &devices,
                                const std::string &standard);

// Adds --models, --plugin and --trace only.
void add_mapping_options(CLI::App &command, DeviceOptions &options);

// Adds a command with these options and --json, which sets `json`; it must outlive the command, too.
CLI::App *add_device_command(CLI::App &app, DeviceOptions &device, bool &json, const char *name,
                             const char *help, const char *examples);

} // namespace yfw::cli

#endif
