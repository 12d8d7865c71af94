#include "frontends/cli/commands/neighbors_command.h"

#include <iostream>
#include <memory>
#include <optional>

#include <poll.h>

#include "base/stop_signals.h"
#include "frontends/cli/commands/device_reports.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/installation.h"
#include "frontends/cli/options/option_checks.h"
#include "frontends/cli/output/neighbor_table.h"
#include "frontends/cli/output/print.h"
#include "frontends/cli/output/terminal.h"

namespace yfw::cli {
namespace {

constexpr const char *neighbors_examples = R"(
Prints a table as wide as the terminal: longer texts are shortened there unless --wide is given. Colors are for
terminals only, and NO_COLOR switches them off. With several devices, one that cannot be read is named and left out.

Examples:
  yfw neighbors
  yfw neighbors --device examples/r1 --device examples/r2
  yfw neighbors --device lldpd: -w
  yfw neighbors --json | jq -r '.[]."system-name"'
)";

constexpr int usual_pause = 2;
constexpr int longest_pause = 86400;

struct NeighborsOptions {
    std::vector<std::filesystem::path> devices;
    int pause = 0; // in seconds between two tables; 0: one table
    bool wide = false;
    bool json = false;
};

// Home, and erase what is below (ISO 6429): without a flicker of the whole screen.
constexpr const char *from_the_top = "\x1b[H\x1b[J";

bool print_neighbors(const DeviceOptions &device, const NeighborsOptions &options) {
    const bool repeats = options.pause != 0;
    const DeviceReports read = read_devices(options.devices, device);
    if (options.json) {
        std::cout << neighbor_json(read.reports, repeats ? -1 : 2) << '\n';
    } else {
        if (repeats && is_terminal(stdout))
            std::cout << from_the_top;
        std::cout << neighbor_table(read.reports, options.wide ? std::nullopt : terminal_width(),
                                    shows_colors());
    }
    finish_output();
    return read.is_complete;
}

// Returns when the time has passed or a signal asks the program to stop, which is true.
bool is_stopped_within(const StopSignals &stop, int seconds) {
    pollfd signals{stop.descriptor(), POLLIN, 0};
    return ::poll(&signals, 1, seconds * 1000) > 0;
}

void run_neighbors(const DeviceOptions &device, const NeighborsOptions &options) {
    bool is_complete = true;
    if (options.pause == 0) {
        is_complete = print_neighbors(device, options);
    } else {
        const StopSignals stop;
        do
            is_complete = print_neighbors(device, options);
        while (!is_stopped_within(stop, options.pause));
    }
    if (!is_complete)
        throw FailureTold{};
}

} // namespace

void add_neighbors(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<NeighborsOptions>();
    options->devices.emplace_back(installation().examples / "r1");
    CLI::App *command = app.add_subcommand("neighbors", "List who is connected to which port");
    command->footer(neighbors_examples);
    add_devices_option(*command, options->devices, "r1");
    command->add_flag("--wide", options->wide, "Shorten nothing, whatever the terminal's width");
    command->add_flag("--json", options->json, "Print JSON; with -w, one line each time");
    command
        ->add_option("-w,--watch", options->pause,
                     "Read and print again until interrupted, after as many seconds; default: 2")
        ->expected(0, 1)
        ->default_str(std::to_string(usual_pause))
        ->check(number_range(1, longest_pause))
        ->option_text("[SECONDS]");
    add_mapping_options(*command, device);
    command->callback([&device, options] { run_neighbors(device, *options); });
}

} // namespace yfw::cli
