#include "frontends/cli/watch_command.h"

#include <iostream>
#include <memory>
#include <string>

#include <nlohmann/json.hpp>

#include "frontends/cli/device_options.h"
#include "frontends/cli/session.h"
#include "frontends/cli/stop_signals.h"
#include "host/error.h"
#include "host/path.h"
#include "host/utc_time.h"

namespace yfw::cli {
namespace {

constexpr const char *watch_examples = R"(
Prints one line for each neighbor that is added, updated or removed, in OpenConfig paths, until it is
interrupted. A daemon that goes away is waited for; when it is back it gets the last commit again.

Examples:
  yfw watch --device lldpd:/run/lldpd.socket
  yfw watch --device lldpd: --json | jq .path
)";

// The native data of the event at hand, as a device of its own: so the mapping names the neighbor as every read
// does.
class EventSource final : public sources::NativeSource {
public:
    void hold(host::DataTree data) { data_ = std::move(data); }
    host::DataTree read(const ly_ctx *) override { return std::move(data_); }

private:
    host::DataTree data_;
};

const char *word(sources::NeighborChange change) {
    switch (change) {
    case sources::NeighborChange::added:
        return "added";
    case sources::NeighborChange::removed:
        return "removed";
    case sources::NeighborChange::updated:
        break;
    }
    return "updated";
}

// The innermost list entry: the neighbor. Every step to it has one list entry.
const lyd_node *neighbor_in(const lyd_node *answer) {
    const lyd_node *found = nullptr;
    for (const lyd_node *node = answer; node != nullptr;) {
        const bool is_list = node->schema->nodetype == LYS_LIST;
        if (is_list)
            found = node;
        if (is_list && std::string_view(node->schema->name) == "neighbor")
            break;
        const lyd_node *next = lyd_child(node);
        while (next != nullptr && (next->schema->nodetype & (LYS_LIST | LYS_CONTAINER)) == 0)
            next = next->next;
        node = next;
    }
    return found;
}

std::string path_of(const lyd_node *node) {
    const std::unique_ptr<char, decltype(&std::free)> path(lyd_path(node, LYD_PATH_STD, nullptr, 0), std::free);
    std::string text = path != nullptr ? path.get() : "";
    const std::string prefix = "/" + std::string(node->schema->module->name) + ":";
    return text.rfind(prefix, 0) == 0 ? "/" + text.substr(prefix.size()) : text;
}

nlohmann::ordered_json data_of(const lyd_node *node) {
    char *text = nullptr;
    lyd_print_mem(&text, node, LYD_JSON, LYD_PRINT_SHRINK);
    const std::unique_ptr<char, decltype(&std::free)> owner(text, std::free);
    nlohmann::ordered_json data = nlohmann::ordered_json::parse(text != nullptr ? text : "{}");
    return data.empty() ? data : data.front().front(); // of the one member, a list of one entry
}

class Printer {
public:
    Printer(Session &session, const DeviceOptions &options, bool json)
        : schemas_(session.schemas), engine_(session.schemas, event_, options.plugin), json_(json) {
        wanted_.paths.push_back(
            host::parse_path(schemas_.openconfig_root(), "/lldp/interfaces/interface/neighbors"));
    }

    void print(sources::NeighborEvent event) {
        const sources::NeighborChange change = event.change;
        event_.hold(std::move(event.data));
        const host::Answer answer = engine_.read(wanted_);
        const lyd_node *neighbor = neighbor_in(answer.data.get());
        if (neighbor == nullptr)
            return;
        const std::string time = host::utc_now();
        if (json_)
            std::cout << nlohmann::ordered_json{{"time", time},
                                                {"change", word(change)},
                                                {"path", path_of(neighbor)},
                                                {"neighbor", data_of(neighbor)}}
                             .dump(-1, ' ', false, nlohmann::ordered_json::error_handler_t::replace);
        else
            std::cout << time << "  " << word(change)
                      << (change == sources::NeighborChange::added ? "    " : "  ") << path_of(neighbor);
        std::cout << '\n' << std::flush; // a line is worth nothing before it is seen
        if (!std::cout)
            throw host::Error(host::ErrorTag::operation_failed, "standard output", "cannot be written");
    }

private:
    const host::Schemas &schemas_;
    EventSource event_;
    host::Engine engine_;
    host::ReadRequest wanted_;
    bool json_;
};

void run_watch(const DeviceOptions &device, bool json) {
    Session session(device);
    if (session.device.watch == nullptr)
        throw host::Error(host::ErrorTag::invalid_value, "--device",
                          "a recorded device does not change; expected lldpd:SOCKET");
    const StopSignals stop;
    Printer printer(session, device, json);
    session.device.watch->run(session.schemas.context(), stop.descriptor(),
                              {[&](sources::NeighborEvent event) { printer.print(std::move(event)); },
                               [](const std::string &reason) {
                                   std::cerr << "yfw: warning: " << reason << "; waiting for it" << std::endl;
                               },
                               [&] {
                                   std::cerr << "yfw: the device is back" << std::endl;
                                   session.source.restore_target();
                               }});
}

} // namespace

void add_watch(CLI::App &app, DeviceOptions &device) {
    CLI::App *command = app.add_subcommand("watch", "Print neighbors as they come and go");
    command->footer(watch_examples);
    const auto json = std::make_shared<bool>(false);
    command->add_flag("--json", *json, "One JSON object a line, with the neighbor's data");
    add_device_options(*command, device);
    command->callback([&device, json] { run_watch(device, *json); });
}

} // namespace yfw::cli
