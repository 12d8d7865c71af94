// The picture of a network for Graphviz, made to be looked at.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_PICTURE_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_PICTURE_H

#include <string>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// A graph in which the names of ports are nodes of their own, so that no label lies on a box or on another
// label. Routers that were read, routers that were not and shared segments have a color each; what only one
// side reports is dashed. The elements of an SVG have ids: "router-N", "port-N" and "segment-N", the indices in
// the topology; a segment's lines have the class "segment-N".
std::string draw_picture(const Topology &topology, const std::string &title);

} // namespace yfw::pictures

#endif
