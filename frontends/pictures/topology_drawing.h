// Drawings of a network.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_DRAWING_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_DRAWING_H

#include <string>
#include <string_view>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// Aligned plain text, one link a line.
std::string draw_text(const Topology &topology);

// A graph in Graphviz's language: routers are nodes with their labels as names, a link is an edge with its
// ports at both ends, and a shared segment is a node of its own. What only one side tells is dashed.
std::string draw_dot(const Topology &topology);

// What both drawings call a port: its name, and in parentheses what else neighbors know it by. "?" when nobody
// told its name.
std::string port_text(const Port &port);

// One line without control characters: they are written as \x and two digits.
std::string printable(std::string_view text);

} // namespace yfw::pictures

#endif
