#include "frontends/cli/options/device_options.h"

#include "frontends/cli/options/installation.h"
#include "frontends/cli/options/option_checks.h"

namespace yfw::cli {

DeviceOptions shipped_device() {
    const Installation &files = installation();
    DeviceOptions options;
    options.device = files.examples / "r1";
    options.openconfig_models = files.models;
    options.native_models = files.models;
    options.plugin = files.plugins;
    return options;
}

void add_mapping_options(CLI::App &command, DeviceOptions &options) {
    command
        .add_option("--models", options.openconfig_models,
                    "Directory of OpenConfig modules to use instead of the shipped ones")
        ->option_text("DIR");
    command
        .add_option(
            "--plugin", options.plugin,
            "The mapping plug-in to load, by its library or its description, or a directory of them; default: "
            "the installed ones")
        ->option_text("FILE");
    command.add_flag("--trace", options.trace, "Print the plug-in's debug log on standard error");
}

CLI::Option *add_devices_option(CLI::App &command, std::vector<std::filesystem::path> &devices,
                                const std::string &standard) {
    auto *option = command
                       .add_option("--device", devices,
                                   "Directory of a recorded device, or lldpd:SOCKET; may be repeated; default: "
                                   "the shipped " +
                                       standard)
                       ->option_text("DEVICE")
                       ->check(not_empty());
    option->allow_extra_args(false);
    return option;
}

void add_device_options(CLI::App &command, DeviceOptions &options) {
    auto *native = command.add_option("--native", options.native_files,
                                      "File of native instance data, XML or JSON; may be repeated");
    native->option_text("FILE")->check(not_empty());
    native->allow_extra_args(false);
    command
        .add_option(
            "--device", options.device,
            "Directory of a recorded device, or lldpd:SOCKET for a running lldpd; default: the shipped r1")
        ->option_text("DEVICE")
        ->check(not_empty())
        ->excludes(native);
    command
        .add_option(
            "--store", options.store,
            "File of the device's commits; default: one in the user's state directory, named after the device")
        ->option_text("FILE")
        ->check(not_empty());
    add_mapping_options(command, options);
}

CLI::App *add_device_command(CLI::App &app, DeviceOptions &device, bool &json, const char *name,
                             const char *help, const char *examples) {
    CLI::App *command = app.add_subcommand(name, help);
    command->footer(examples);
    command->add_flag("--json", json, "Print JSON");
    add_device_options(*command, device);
    return command;
}

} // namespace yfw::cli
