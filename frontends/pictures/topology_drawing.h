// Drawings of a network.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_DRAWING_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_DRAWING_H

#include <string>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// How many routers and links there are, in one line without its end: "4 routers, 3 links, all connected".
std::string summary(const Topology &topology);

// Aligned plain text, one link per line.
std::string draw_text(const Topology &topology);

// A graph in Graphviz's language: routers are nodes named by their labels, a link is an edge with its ports at
// both ends, and a shared segment has its own node. Connections that only one side reports are dashed.
std::string draw_dot(const Topology &topology);

// The label of a port in both drawings: its name, followed in parentheses by the other ids under which
// neighbors know it. "?" when its name is unknown.
std::string port_text(const Port &port);

} // namespace yfw::pictures

#endif
