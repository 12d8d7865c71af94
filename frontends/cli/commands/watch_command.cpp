#include "frontends/cli/commands/watch_command.h"

#include <iostream>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "base/error.h"
#include "base/printable.h"
#include "base/say.h"
#include "base/stop_signals.h"
#include "base/utc_time.h"
#include "device/neighbor_report.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/print.h"
#include "yang/tree_text.h"

namespace yfw::cli {
namespace {

constexpr const char *watch_examples = R"(
Prints one line for each neighbor that is added, updated or removed, with its OpenConfig path, until it is
interrupted. If the daemon goes away, it waits for it.

Examples:
  yfw watch --device lldpd:/run/lldpd.socket
  yfw watch --device lldpd: --json | jq .path
)";

nlohmann::ordered_json data_of(const lyd_node *node) {
    const std::string text = yang::printed(node, LYD_JSON, LYD_PRINT_SHRINK);
    nlohmann::ordered_json data = nlohmann::ordered_json::parse(text.empty() ? "{}" : text);
    return data.empty() ? data : data.front().front(); // the entry, without its module and list around it
}

void print(const device::NeighborReport &report, bool json) {
    const std::string time = utc_now();
    if (json)
        std::cout << nlohmann::ordered_json{{"time", time},
                                            {"change", device::to_string(report.change)},
                                            {"path", report.path()},
                                            {"neighbor", data_of(report.neighbor)}}
                         .dump(-1, ' ', true, nlohmann::ordered_json::error_handler_t::replace);
    else
        std::cout << time << "  " << device::to_string(report.change)
                  << (report.change == sources::NeighborChange::added ? "    " : "  ")
                  << printable(report.path());
    std::cout << '\n';
    finish_output(); // so that a pipe gets each line at once
}

void run_watch(const DeviceOptions &options, bool json) {
    NamedDevice named(options);
    if (!named.device.tells_changes())
        throw Error(ErrorTag::invalid_value, "--device",
                    "a recorded device does not change; expected lldpd:SOCKET");
    if (!named.device.mapping().notification.has_value())
        throw Error(ErrorTag::operation_not_supported, named.device.mapping().file.string(),
                    "the mapping defines no notification of changes");
    const StopSignals stop;
    const device::NeighborReporter reporter(named.device);
    named.device.watch(stop.descriptor(), {[&](sources::NeighborEvent event) {
                                               if (const auto report = reporter.report(std::move(event)))
                                                   print(*report, json);
                                           },
                                           [](const std::string &reason) { warn(reason + "; waiting for it"); },
                                           [] { say("the device is back"); }});
}

} // namespace

void add_watch(CLI::App &app, DeviceOptions &device) {
    CLI::App *command = app.add_subcommand("watch", "Print neighbors as they come and go");
    command->footer(watch_examples);
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "Print one JSON object per line, with the neighbor's data");
    add_device_options(*command, device);
    command->callback([&device, json] { run_watch(device, *json); });
}

} // namespace yfw::cli
