#include <algorithm>
#include <map>

#include <fmt/format.h>

#include "base/printable.h"
#include "base/text_table.h"
#include "frontends/pictures/topology_drawing.h"

namespace yfw::pictures {
namespace {

std::string count(size_t number, const std::string &thing) {
    return fmt::format("{} {}{}", number, thing, number == 1 ? "" : "s");
}

std::string router_text(const Topology &topology, size_t port) {
    return printable(topology.router_of(port).label);
}

std::string routers(const Topology &topology) {
    TextTable table({Align::left, Align::left, Align::left});
    for (const Router &router : topology.routers)
        table.add({printable(router.label), router.chassis_id.empty() ? "-" : printable(router.chassis_id),
                   router.read ? "" : "not read"});
    return "\nRouters\n" + table.text();
}

// Which end of a link does not report the other, and why, if that is known.
std::string link_note(const Topology &topology, const Segment &link) {
    const size_t left = link.ports.front(), right = link.ports.back();
    if (left == right)
        return "hears itself";
    const bool there = link.sees(left, right), back = link.sees(right, left);
    if (there && back)
        return "";
    const size_t seer = there ? left : right, silent = there ? right : left;
    std::string note = "seen from " + router_text(topology, seer);
    if (topology.ports[left].router == topology.ports[right].router)
        note += ' ' + port_text(topology.ports[seer]);
    note += " only";
    if (!topology.router_of(silent).read)
        note += ", " + router_text(topology, silent) + " is not read";
    return note;
}

std::string links(const Topology &topology) {
    TextTable table({Align::left, Align::right, Align::left, Align::left, Align::left, Align::left});
    for (const Segment &link : topology.segments) {
        if (link.shared())
            continue;
        const size_t left = link.ports.front(), right = link.ports.back();
        const char *line = !link.sees(left, right) ? "<--" : link.sees(right, left) ? "---" : "-->";
        table.add({router_text(topology, left), port_text(topology.ports[left]), line,
                   port_text(topology.ports[right]), router_text(topology, right), link_note(topology, link)});
    }
    const std::string text = table.text();
    return text.empty() ? "" : "\nLinks\n" + text;
}

// What one port of a segment hears without being heard. Routers that are not read are omitted: they report
// nothing, which their own lines already say.
std::string one_way_sightings(const Topology &topology, const Segment &segment) {
    std::string text;
    for (const Sighting &sighting : segment.sightings) {
        if (!topology.router_of(sighting.of).read || segment.sees(sighting.of, sighting.by))
            continue;
        text += fmt::format("      one way: {} {} sees {} {}\n", router_text(topology, sighting.by),
                            port_text(topology.ports[sighting.by]), router_text(topology, sighting.of),
                            port_text(topology.ports[sighting.of]));
    }
    return text;
}

std::string shared_segments(const Topology &topology) {
    std::string text;
    size_t number = 0;
    for (const Segment &segment : topology.segments) {
        if (!segment.shared())
            continue;
        text += fmt::format("\nShared segment {}\n", ++number);
        TextTable table({Align::left, Align::left, Align::left, Align::left});
        for (const size_t port : segment.ports)
            table.add({"|--", port_text(topology.ports[port]), router_text(topology, port),
                       topology.router_of(port).read ? "" : "not read"});
        text += table.text() + one_way_sightings(topology, segment);
    }
    return text;
}

std::string ports_without_neighbors(const Topology &topology) {
    std::vector<bool> in_use(topology.ports.size());
    for (const Segment &segment : topology.segments)
        for (const size_t port : segment.ports)
            in_use[port] = true;
    std::map<size_t, std::string> ports;
    for (size_t port = 0; port < topology.ports.size(); port++) {
        if (in_use[port])
            continue;
        std::string &names = ports[topology.ports[port].router];
        names += (names.empty() ? "" : " ") + port_text(topology.ports[port]);
    }
    TextTable table({Align::left, Align::left});
    for (const auto &[router, names] : ports)
        table.add({printable(topology.routers[router].label), names});
    return ports.empty() ? "" : "\nPorts without neighbors\n" + table.text();
}

} // namespace

std::string summary(const Topology &topology) {
    const auto shared = static_cast<size_t>(std::count_if(topology.segments.begin(), topology.segments.end(),
                                                          [](const Segment &s) { return s.shared(); }));
    const size_t links = topology.segments.size() - shared;
    std::string text = count(topology.routers.size(), "router") + ", ";
    text += links == 0 ? "no links" : count(links, "link");
    if (shared != 0)
        text += ", " + count(shared, "shared segment");
    if (topology.routers.size() > 1)
        text += topology.networks == 1 ? ", all connected"
                                       : ", in " + count(topology.networks, "part") + " without a connection";
    return text;
}

std::string draw_text(const Topology &topology) {
    return summary(topology) + '\n' + routers(topology) + links(topology) + shared_segments(topology) +
           ports_without_neighbors(topology);
}

} // namespace yfw::pictures
