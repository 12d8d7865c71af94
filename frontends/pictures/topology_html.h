// A network as a page.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_HTML_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_HTML_H

#include <string>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

// A page that needs no other file: the picture, which can be moved and zoomed, and beside it what both ends of
// a link that is clicked have heard of each other. `svg`: of draw_picture(). The text of neighbors is data of
// the page, never markup or script.
std::string draw_html(const Topology &topology, const std::string &title, const std::string &svg);

} // namespace yfw::pictures

#endif
