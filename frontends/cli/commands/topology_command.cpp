#include "frontends/cli/commands/topology_command.h"

#include <cstdio>
#include <memory>
#include <stdexcept>

#include "base/status_line.h"
#include "frontends/cli/commands/device_reports.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/installation.h"
#include "frontends/cli/output/print.h"
#include "frontends/pictures/graphviz.h"
#include "frontends/pictures/topology_drawing.h"
#include "frontends/pictures/topology_html.h"
#include "frontends/pictures/topology_model.h"
#include "frontends/pictures/topology_picture.h"
#include "lab/lab.h"

namespace yfw::cli {
namespace {

constexpr const char *topology_examples = R"(
Reads /lldp from every device and draws which routers are connected on which ports. Neighbors that are not among
the devices are marked as not read, and links that only one end reports are marked too.

Examples:
  yfw topology
  yfw topology --device examples/r1 --device examples/r2
  yfw topology --dot | neato -Tpng -o network.png
  yfw topology --svg network.svg
  yfw topology --html network.html
  yfw topology --lab
)";

struct TopologyOptions {
    std::vector<std::filesystem::path> devices;
    std::string lab; // its name; empty: none
    bool dot = false;
    std::filesystem::path svg;
    std::filesystem::path html;
};

void print(const std::string &text) {
    if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size() || std::fflush(stdout) != 0)
        refuse_output();
}

std::vector<std::filesystem::path> devices_of_lab(const std::string &name) {
    std::vector<std::filesystem::path> devices;
    for (const lab::LabRouter &router : lab::running_lab(name))
        devices.emplace_back("lldpd:" + router.socket.string());
    return devices;
}

void write_pictures(const pictures::Topology &topology, const TopologyOptions &options) {
    const std::string title = "LLDP: " + pictures::summary(topology);
    show_status("drawing the picture");
    const std::string svg = pictures::make_svg(pictures::draw_picture(topology, title));
    if (!options.svg.empty())
        pictures::write_file(options.svg, svg);
    if (!options.html.empty())
        pictures::write_file(options.html, pictures::draw_html(topology, title, svg));
    clear_status();
}

void run_topology(const DeviceOptions &device, const TopologyOptions &options) {
    const DeviceReports read =
        read_devices(options.lab.empty() ? options.devices : devices_of_lab(options.lab), device);
    const pictures::Topology topology = pictures::build(read.reports);
    if (!options.svg.empty() || !options.html.empty())
        write_pictures(topology, options);
    else
        print(options.dot ? pictures::draw_dot(topology) : pictures::draw_text(topology));
    if (!read.is_complete)
        throw FailureTold{};
}

} // namespace

void add_topology(CLI::App &app, DeviceOptions &device) {
    const auto options = std::make_shared<TopologyOptions>();
    for (const char *name : {"r1", "r2", "r3", "r4"})
        options->devices.emplace_back(installation().examples / name);
    CLI::App *command = app.add_subcommand("topology", "Draw which routers are connected");
    command->footer(topology_examples);
    auto *devices = add_devices_option(*command, options->devices, "r1 to r4");
    command->add_option("--lab", options->lab, "Draw the routers of this laboratory; default: yfw")
        ->expected(0, 1)
        ->default_str(lab::Place().name)
        ->option_text("[NAME]")
        ->excludes(devices);
    auto *dot = command->add_flag("--dot", options->dot, "Print the graph in the DOT language of Graphviz");
    command->add_option("--svg", options->svg, "Write the picture to this file; needs Graphviz")
        ->option_text("FILE")
        ->excludes(dot);
    command
        ->add_option("--html", options->html,
                     "Write a page with the picture, to move, zoom and click, to this file; needs Graphviz")
        ->option_text("FILE")
        ->excludes(dot);
    add_mapping_options(*command, device);
    command->callback([&device, options] { run_topology(device, *options); });
}

} // namespace yfw::cli
