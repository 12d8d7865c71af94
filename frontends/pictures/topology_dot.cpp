#include <unordered_set>

#include <fmt/format.h>

#include "frontends/pictures/dot_text.h"
#include "frontends/pictures/topology_drawing.h"

namespace yfw::pictures {
namespace {

std::string routers(const Topology &topology) {
    std::string text;
    for (const Router &router : topology.routers)
        text += fmt::format("    {} [label=\"{}{}\"{}];\n", dot_text(router.label), dot_label(router.label),
                            router.read ? "" : "\\n(not read)", router.read ? "" : ", style=dashed");
    return text;
}

std::string node_of(const Topology &topology, size_t port) {
    return dot_text(topology.router_of(port).label);
}

std::string port_label(const Topology &topology, size_t port) {
    return '"' + dot_label(port_text(topology.ports[port])) + '"';
}

// The arrow points at the port that does not report the other one.
std::string link_edge(const Topology &topology, const Segment &link) {
    const size_t left = link.ports.front(), right = link.ports.back();
    const bool there = link.sees(left, right), back = link.sees(right, left);
    const char *style = there && back ? "" : there ? ", style=dashed, dir=forward" : ", style=dashed, dir=back";
    return fmt::format("    {} -- {} [taillabel={}, headlabel={}{}];\n", node_of(topology, left),
                       node_of(topology, right), port_label(topology, left), port_label(topology, right),
                       style);
}

std::string segment_edges(const Topology &topology, const Segment &segment, const std::string &node) {
    std::string text = fmt::format("    {} [shape=point, width=0.12];\n", node);
    for (const size_t port : segment.ports)
        text += fmt::format("    {} -- {} [headlabel={}{}];\n", node, node_of(topology, port),
                            port_label(topology, port), is_one_sided(segment, port) ? ", style=dashed" : "");
    return text;
}

// Names for shared segments that differ from all router names.
class SegmentNames {
public:
    explicit SegmentNames(const Topology &topology) {
        for (const Router &router : topology.routers)
            taken_.insert(router.label);
    }

    std::string next() {
        std::string name = fmt::format("segment {}", ++number_);
        while (taken_.contains(name))
            name += '\'';
        return dot_text(name);
    }

private:
    std::unordered_set<std::string> taken_;
    size_t number_ = 0;
};

} // namespace

std::string draw_dot(const Topology &topology) {
    std::string text = "graph lldp {\n"
                       "    graph [nodesep=1, ranksep=1];\n"
                       "    node [shape=box];\n"
                       "    edge [fontsize=10, labeldistance=2.4, labelangle=30];\n\n" +
                       routers(topology) + '\n';
    SegmentNames names(topology);
    for (const Segment &segment : topology.segments)
        text +=
            segment.shared() ? segment_edges(topology, segment, names.next()) : link_edge(topology, segment);
    return text + "}\n";
}

} // namespace yfw::pictures
