#include "frontends/cli/commands/status_command.h"

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "base/error.h"
#include "base/printable.h"
#include "base/say.h"
#include "device/pending_file.h"
#include "frontends/cli/commands/commit_print.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/output/print.h"

namespace yfw::cli {
namespace {

using Json = nlohmann::ordered_json;

constexpr const char *status_examples = R"(
The configuration is what clients wrote; a device may do something else: because a setting holds another one back,
because the device cannot show it, or because someone changed the device by other means. drift lists these leaves,
apply makes the device do what the last commit says. Reading never changes a device.

Examples:
  yfw status --device lldpd:
  yfw drift --device lldpd: --json
  yfw status --device lldpd: --json | jq .drift
  yfw apply --device lldpd:
  yfw get --applied /lldp/config --device lldpd:
)";

// Before the first commit nothing can drift. The device is read all the same: one that cannot be is no good
// news.
std::vector<device::Drift> drift_of(NamedDevice &named) {
    if (named.device.last_commit_number() < 0)
        named.device.running_configuration();
    return named.device.drift();
}

std::string text_of(const Error &error) {
    return (error.path().empty() ? "" : error.path() + ": ") + error.what();
}

std::string line_of(const device::Drift &drift) {
    std::string line = drift.path + ": ";
    line += drift.configured.has_value() ? "configured \"" + *drift.configured + "\"" : "not configured";
    line += ", the device has " + (drift.applied.has_value() ? "\"" + *drift.applied + "\"" : "nothing");
    return drift.reason.empty() ? line : line + " (" + drift.reason + ")";
}

Json json_of_drift(const device::Drift &drift) {
    Json json{{"path", drift.path}};
    if (drift.configured.has_value())
        json["configured"] = *drift.configured;
    if (drift.applied.has_value())
        json["applied"] = *drift.applied;
    if (!drift.reason.empty())
        json["reason"] = drift.reason;
    return json;
}

// A device that cannot be reached is no mistake of whoever asks.
std::vector<device::Drift> drift_or_failure(NamedDevice &named) {
    try {
        return drift_of(named);
    } catch (const Error &error) {
        if (error.tag() != ErrorTag::operation_failed)
            throw;
        throw std::runtime_error(text_of(error));
    }
}

void print_drift(const DeviceOptions &options, bool json) {
    NamedDevice named(options);
    const std::vector<device::Drift> drift = drift_or_failure(named);
    if (json) {
        Json all = Json::array();
        for (const device::Drift &one : drift)
            all.push_back(json_of_drift(one));
        print_json(std::cout, all);
    } else {
        for (const device::Drift &one : drift)
            std::cout << printable(line_of(one)) << '\n';
        if (drift.empty())
            std::cout << "no drift\n";
    }
    finish_output();
}

std::string device_name(const DeviceOptions &options) {
    if (options.native_files.empty())
        return options.device.string();
    std::string names;
    for (const std::filesystem::path &file : options.native_files)
        names += (names.empty() ? "" : " ") + file.string();
    return names;
}

std::string counted(size_t number, const std::string &what) {
    return std::to_string(number) + " " + what + (number == 1 ? "" : "s");
}

// How many leaves drift, or why that is not known.
struct DriftCount {
    std::optional<size_t> number;
    std::string failure;
};

DriftCount count_drift(NamedDevice &named) {
    try {
        return {drift_of(named).size(), ""};
    } catch (const Error &error) {
        return {std::nullopt, text_of(error)};
    }
}

std::string line_of(const DriftCount &drift) {
    if (!drift.number.has_value())
        return "unknown: the device cannot be read";
    return *drift.number == 0 ? "none" : counted(*drift.number, "leaf value") + " (see yfw drift)";
}

// The commit whose configuration comes back unless a later one is confirmed. A device given with --native may
// have no store.
std::optional<int64_t> pending_of(const NamedDevice &named) {
    const std::filesystem::path store = named.device.store();
    return store.empty() ? std::nullopt : device::remembered_pending(store);
}

constexpr const char *no_commit = "none: the configuration is the device's own";

std::string line_of(const commits::Commit &commit) {
    return std::to_string(commit.number) + ", " + commit.time +
           printable((commit.who.empty() ? "" : ", by " + commit.who) +
                     (commit.comment.empty() ? "" : ": " + commit.comment));
}

DriftCount print_status_json(const DeviceOptions &options, NamedDevice &named) {
    Json json{{"device", device_name(options)}, {"store", nullptr}, {"commit", nullptr}};
    if (!named.device.store().empty())
        json["store"] = named.device.store().string();
    const std::vector<commits::Commit> history = named.device.history();
    if (!history.empty())
        json["commit"] = json_of(history.front());
    if (const std::optional<int64_t> back_to = pending_of(named))
        json["unconfirmed"] = Json{{"back-to", *back_to}};
    const DriftCount drift = count_drift(named);
    json["drift"] = drift.number.has_value() ? Json(*drift.number) : Json();
    print_json(std::cout, json);
    return drift;
}

DriftCount print_status_text(const DeviceOptions &options, NamedDevice &named) {
    const std::vector<commits::Commit> history = named.device.history();
    std::cout << "device  " << printable(device_name(options)) << '\n';
    std::cout << "store   "
              << (named.device.store().empty() ? "none" : printable(named.device.store().string())) << '\n';
    std::cout << "commit  " << (history.empty() ? no_commit : line_of(history.front())) << '\n';
    if (const std::optional<int64_t> back_to = pending_of(named))
        std::cout << "        unconfirmed: unless it is confirmed, the configuration of commit " << *back_to
                  << " comes back\n";
    const DriftCount drift = count_drift(named);
    if (!history.empty() || !drift.number.has_value())
        std::cout << "drift   " << line_of(drift) << '\n';
    return drift;
}

void print_status(const DeviceOptions &options, bool json) {
    NamedDevice named(options);
    const DriftCount drift = json ? print_status_json(options, named) : print_status_text(options, named);
    finish_output();
    if (!drift.number.has_value())
        throw std::runtime_error(drift.failure);
}

// Says what a device does not do although it should. False if there is such a thing.
bool does_all(NamedDevice &named) {
    bool all = true;
    for (const device::Drift &one : drift_of(named)) {
        if (!one.configured.has_value() || !one.reason.empty())
            continue;
        say("the device does not take a setting: " + line_of(one));
        all = false;
    }
    return all;
}

void apply(const DeviceOptions &options, bool json) {
    NamedDevice named(options);
    named.device.apply_last_commit();
    const int64_t number = named.device.last_commit_number();
    if (json)
        print_json(std::cout, Json{{"commit", number}});
    else
        std::cout << "commit " << number << " is applied\n";
    finish_output();
    if (!does_all(named))
        throw FailureTold{};
}

using Run = void (*)(const DeviceOptions &options, bool json);

void add(CLI::App &app, DeviceOptions &device, const char *name, const char *help, Run run) {
    const auto json = std::make_shared<bool>(false);
    CLI::App *command = add_device_command(app, device, *json, name, help, status_examples);
    command->callback([&device, json, run] { run(device, *json); });
}

} // namespace

void add_status_commands(CLI::App &app, DeviceOptions &device) {
    add(app, device, "status", "Show a device's store, last commit and drift", print_status);
    add(app, device, "drift", "List what the device does not do as it was configured", print_drift);
    add(app, device, "apply", "Make the device do what the last commit says", apply);
}

} // namespace yfw::cli
