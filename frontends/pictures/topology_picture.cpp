#include "frontends/pictures/topology_picture.h"

#include <fmt/format.h>

#include "frontends/pictures/dot_text.h"
#include "frontends/pictures/topology_drawing.h"

namespace yfw::pictures {
namespace {

constexpr const char *font = "Helvetica,Arial,sans-serif";
constexpr const char *read_color = "#dbe9f8";
constexpr const char *unread_color = "#eeeeee";
constexpr const char *segment_color = "#fdebc8";
constexpr const char *link_color = "#33658a";
constexpr const char *own_color = "#999999"; // of the line from a router to its port
constexpr const char *one_sided = ", style=dashed";

// Port labels are nodes, which Graphviz moves apart where they would overlap.
std::string settings(const std::string &title) {
    return fmt::format("    graph [layout=sfdp, overlap=prism, overlap_scaling=-5, sep=\"+4\", splines=line, "
                       "outputorder=edgesfirst, K=0.7, start=1, fontname=\"{0}\", fontsize=18, labelloc=t, "
                       "label=\"{1}\", bgcolor=white];\n"
                       "    node [fontname=\"{0}\", fontsize=13];\n"
                       "    edge [color=\"{2}\"];\n\n",
                       font, dot_label(title), link_color);
}

std::string placed_routers(const Topology &topology) {
    std::string text;
    for (size_t i = 0; i < topology.routers.size(); i++) {
        const Router &router = topology.routers[i];
        text += fmt::format("    r{0} [id=\"router-{0}\", class=router, shape=box, style=\"filled{1}\", "
                            "fillcolor=\"{2}\", label=\"{3}\"];\n",
                            i, router.read ? "" : ",dashed", router.read ? read_color : unread_color,
                            dot_label(router.label));
    }
    return text;
}

// The port of a segment, hung on its router.
std::string port_node(const Topology &topology, size_t port, size_t segment) {
    return fmt::format(
        "    p{0} [id=\"port-{0}\", class=\"port segment-{3}\", shape=box, style=filled, "
        "color=\"#ffffff00\", fillcolor=\"#ffffffe0\", fontsize=9, width=0, height=0, margin=\"0.03,0.01\", "
        "label=\"{1}\"];\n"
        "    r{2} -- p{0} [color=\"{4}\", len=0.6, weight=4];\n",
        port, dot_label(port_text(topology.ports[port])), topology.ports[port].router, segment, own_color);
}

std::string link(const Segment &segment, size_t number) {
    const size_t left = segment.ports.front(), right = segment.ports.back();
    const bool is_mutual = segment.sees(left, right) && segment.sees(right, left);
    return fmt::format("    p{0} -- p{1} [id=\"segment-{2}\", class=\"link segment-{2}\", penwidth=1.5{3}];\n",
                       left, right, number, is_mutual ? "" : one_sided);
}

// Its name is made of its ports', as far as there are few.
std::string segment_name(const Topology &topology, const Segment &segment) {
    constexpr size_t named = 4;
    std::string name;
    for (size_t i = 0; i < segment.ports.size() && i < named; i++)
        name += (name.empty() ? "" : "\\n") + dot_label(topology.router_of(segment.ports[i]).label) + ' ' +
                dot_label(port_text(topology.ports[segment.ports[i]]));
    if (segment.ports.size() > named)
        name += fmt::format("\\nand {} more", segment.ports.size() - named);
    return name;
}

std::string shared_segment(const Topology &topology, const Segment &segment, size_t number) {
    std::string text = fmt::format("    s{0} [id=\"segment-{0}\", class=\"shared segment-{0}\", shape=ellipse, "
                                   "style=filled, fillcolor=\"{1}\", fontsize=9, label=\"{2}\"];\n",
                                   number, segment_color, segment_name(topology, segment));
    for (const size_t port : segment.ports)
        text += fmt::format("    s{} -- p{} [class=\"link segment-{}\", penwidth=1.5{}];\n", number, port,
                            number, is_one_sided(segment, port) ? one_sided : "");
    return text;
}

} // namespace

std::string draw_picture(const Topology &topology, const std::string &title) {
    std::string text = "graph lldp {\n" + settings(title) + placed_routers(topology) + '\n';
    for (size_t i = 0; i < topology.segments.size(); i++) {
        const Segment &segment = topology.segments[i];
        for (const size_t port : segment.ports)
            text += port_node(topology, port, i);
        text += segment.shared() ? shared_segment(topology, segment, i) : link(segment, i);
    }
    return text + "}\n";
}

} // namespace yfw::pictures
