// Names and labels in Graphviz's language.
#ifndef YFW_FRONTENDS_PICTURES_DOT_TEXT_H
#define YFW_FRONTENDS_PICTURES_DOT_TEXT_H

#include <cstddef>
#include <string>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// A name, in quotes.
std::string dot_text(const std::string &name);

// A label, or a part of one, without quotes.
std::string dot_label(const std::string &shown);

// Whether only one side reports that the port is on its segment.
bool is_one_sided(const Segment &segment, size_t port);

} // namespace yfw::pictures

#endif
