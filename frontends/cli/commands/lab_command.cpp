#include "frontends/cli/commands/lab_command.h"

#include <iostream>
#include <memory>
#include <sstream>

#include <nlohmann/json.hpp>

#include "base/say.h"
#include "base/status_line.h"
#include "frontends/cli/commands/commit_print.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/options/option_checks.h"
#include "frontends/cli/output/print.h"
#include "lab/lab.h"

namespace yfw::cli {
namespace {

using nlohmann::ordered_json;
using Phase = lab::Status::Phase;

constexpr const char *lab_help = R"(
A laboratory is a small network of real LLDP daemons (lldpd), each in its own network namespace on this machine.
up, record and down need root.

Examples:
  yfw lab up
  yfw lab status
  yfw get /lldp --device lldpd:/run/yfw/lab-yfw/r1.sock
  yfw topology --lab
  yfw lab record recordings
  yfw lab down
)";

constexpr const char *topology_help = R"(
A topology file is JSON. Without one: r1 to r4, the routers of the recorded devices.

  {
    "routers": [
      {"name": "a", "system-name": "a.example.net", "system-description": "Router a",
       "addresses": {"eth1": ["192.0.2.1/24", "2001:db8::1/64"]},
       "capabilities": ["bridge", "router"],
       "custom-tlvs": [{"oui": "00:80:c2", "subtype": 9, "value": "61:62:63"}]},
      {"name": "b"}, {"name": "c"}
    ],
    "links": [["a:eth1", "b:eth1"]],
    "segments": [{"name": "lan", "ports": ["a:eth2", "b:eth2", "c:eth1"]}]
  }

Only "routers" and each "name" are required. A link is a cable between two ports, a segment a bridge that forwards
LLDP. A router has the interfaces that links and segments name.
)";

struct LabOptions {
    lab::Place place;
    std::filesystem::path topology;
    std::filesystem::path recordings;
    int tx_interval = 2;
    bool json = false;
};

// On a terminal one line, which the next one replaces and standard output's text ends.
void report_progress(const std::string &line) {
    if (has_status_line())
        show_status("lab: " + line);
    else
        say("lab: " + line);
}

std::string text_of(const lab::Port &port) {
    return port.router + ":" + port.interface;
}

std::string ports_of(const lab::Segment &segment) {
    std::string result;
    for (const lab::Port &port : segment.ports)
        result += (result.empty() ? "" : ", ") + text_of(port);
    return result;
}

const char *phase_name(Phase phase) {
    switch (phase) {
    case Phase::none:
        return "down";
    case Phase::incomplete:
        return "incomplete";
    case Phase::up:
        break;
    }
    return "up";
}

std::string status_json(const lab::Place &place, const lab::Status &status) {
    ordered_json routers = ordered_json::array(), links = ordered_json::array(),
                 segments = ordered_json::array();
    for (const lab::RouterStatus &router : status.routers)
        routers.push_back({{"name", router.name},
                           {"socket", router.socket.string()},
                           {"device", "lldpd:" + router.socket.string()},
                           {"running", router.running}});
    for (const lab::Link &link : status.links)
        links.push_back({text_of(link.first), text_of(link.second)});
    for (const lab::Segment &segment : status.segments) {
        ordered_json ports = ordered_json::array();
        for (const lab::Port &port : segment.ports)
            ports.push_back(text_of(port));
        segments.push_back({{"name", segment.name}, {"ports", ports}});
    }
    const ordered_json all{{"name", place.name},
                           {"state", phase_name(status.phase)},
                           {"routers", routers},
                           {"links", links},
                           {"segments", segments}};
    std::ostringstream text;
    print_json(text, all);
    return text.str();
}

std::string no_laboratory(const lab::Place &place) {
    return "laboratory " + place.name + " is not up\n";
}

std::string status_text(const lab::Place &place, const lab::Status &status) {
    if (status.phase == Phase::none)
        return no_laboratory(place);
    std::ostringstream text;
    text << "laboratory " << place.name << " is " << phase_name(status.phase);
    if (status.phase == Phase::incomplete)
        text << ": yfw lab up is still running or was killed; yfw lab down removes what it left behind";
    text << "\n\nRouters\n";
    for (const lab::RouterStatus &router : status.routers)
        text << "  " << router.name << "  " << (router.running ? "running" : "not running")
             << "  lldpd:" << router.socket.string() << '\n';
    if (!status.links.empty())
        text << "\nLinks\n";
    for (const lab::Link &link : status.links)
        text << "  " << text_of(link.first) << " --- " << text_of(link.second) << '\n';
    if (!status.segments.empty())
        text << "\nSegments\n";
    for (const lab::Segment &segment : status.segments)
        text << "  " << segment.name << "  " << ports_of(segment) << '\n';
    return text.str();
}

// The options that select this laboratory in another command.
std::string choice(const lab::Place &place) {
    const lab::Place standard;
    return (place.name != standard.name ? " --name " + place.name : "") +
           (place.base != standard.base ? " --dir " + place.base.string() : "");
}

std::string next_commands(const lab::Place &place, const lab::Status &status) {
    std::ostringstream text;
    text << "\nNext\n  yfw get /lldp --device lldpd:" << status.routers.front().socket.string() << '\n';
    if (const lab::Place standard; place.base == standard.base)
        text << "  yfw topology --lab" << (place.name != standard.name ? " " + place.name : "") << '\n';
    text << "  yfw lab down" << choice(place) << '\n';
    return text.str();
}

// Commits made on an earlier laboratory's daemon at this socket do not apply to the new one.
void forget_commits(const std::filesystem::path &socket) {
    DeviceOptions device;
    device.device = "lldpd:" + socket.string();
    std::error_code ignored;
    for (int names = 0; names < 2; ++names) { // it may have one by its former name, too
        const std::string store = store_of(device).string();
        for (const char *part : {"", "-wal", "-shm", ".unconfirmed"})
            std::filesystem::remove(store + part, ignored);
    }
}

void run_up(const LabOptions &options) {
    const lab::Topology topology =
        options.topology.empty() ? lab::default_topology() : lab::read_topology_file(options.topology);
    lab::up(options.place, topology, options.tx_interval, report_progress);
    clear_status();
    const lab::Status status = lab::status(options.place);
    for (const lab::RouterStatus &router : status.routers)
        forget_commits(router.socket);
    std::cout << status_text(options.place, status) << next_commands(options.place, status);
    finish_output();
}

void run_status(const LabOptions &options) {
    const lab::Status status = lab::status(options.place);
    std::cout << (options.json ? status_json(options.place, status) : status_text(options.place, status));
    finish_output();
}

void run_down(const LabOptions &options) {
    const bool was_there = lab::down(options.place, report_progress);
    clear_status();
    if (was_there)
        std::cout << "laboratory " << options.place.name << " removed\n";
    else
        std::cout << no_laboratory(options.place);
    finish_output();
}

void run_record(const LabOptions &options) {
    const std::vector<lab::Port> deaf = lab::record(options.place, options.recordings, report_progress);
    clear_status();
    for (const lab::Port &port : deaf)
        warn(text_of(port) + " has not heard all its neighbors");
}

CLI::App *add_command(CLI::App &lab, LabOptions &options, const char *name, const char *description) {
    CLI::App *command = lab.add_subcommand(name, description);
    command
        ->add_option("--name", options.place.name,
                     "Name of the laboratory, prefix of its namespaces; default: yfw")
        ->option_text("NAME");
    command
        ->add_option("--dir", options.place.base,
                     "Directory that contains lab-NAME with the sockets; default: /run/yfw")
        ->option_text("DIR");
    return command;
}

} // namespace

void add_lab(CLI::App &app) {
    const auto options = std::make_shared<LabOptions>();
    CLI::App *lab = app.add_subcommand("lab", "Run a laboratory of real LLDP daemons on this machine");
    lab->footer(lab_help);
    lab->require_subcommand(1);
    CLI::App *up = add_command(*lab, *options, "up", "Create the laboratory and wait until it is ready");
    up->footer(topology_help);
    up->add_option("--topology", options->topology, "Topology file; default: the four recorded routers")
        ->option_text("FILE");
    up->add_option("--tx-interval", options->tx_interval, "Seconds between a router's frames; default: 2")
        ->check(number_range(1, 3600))
        ->option_text("SECONDS");
    up->callback([options] { run_up(*options); });
    CLI::App *status = add_command(*lab, *options, "status", "Print the routers, their sockets and the links");
    status->add_flag("--json", options->json, "As JSON");
    status->callback([options] { run_status(*options); });
    CLI::App *record = add_command(*lab, *options, "record", "Record the data of the routers' daemons");
    record->add_option("DIR", options->recordings, "Directory for the recordings; existing files are replaced")
        ->required()
        ->option_text(" ");
    record->callback([options] { run_record(*options); });
    CLI::App *down = add_command(*lab, *options, "down", "Remove everything that the laboratory made");
    down->callback([options] { run_down(*options); });
}

} // namespace yfw::cli
