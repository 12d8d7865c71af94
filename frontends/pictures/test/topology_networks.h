// Hand-made networks and how they are drawn.
#ifndef YFW_FRONTENDS_PICTURES_TEST_TOPOLOGY_NETWORKS_H
#define YFW_FRONTENDS_PICTURES_TEST_TOPOLOGY_NETWORKS_H

#include <ostream>
#include <string>
#include <vector>

#include "frontends/pictures/topology_model.h"

namespace yfw::pictures {

struct Network {
    std::string name;
    std::vector<Report> reports;
    std::string text;  // the complete drawing
    std::string edges; // the graph from its first router onwards
};

void PrintTo(const Network &network, std::ostream *to);

std::vector<Network> networks();

// A neighbor that announced everything, and a device with the same naming.
Neighbor neighbor(const std::string &router, const std::string &port);
Report device(const std::string &name, std::vector<Interface> interfaces);

} // namespace yfw::pictures

#endif
