// Who is connected to whom, put together from what LLDP told each of several devices.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_MODEL_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_MODEL_H

#include <compare>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace yfw::pictures {

// ---- what devices report; a text that a device did not tell is empty ---------------------------------------

struct Neighbor {
    std::string id; // the device's own word for this neighbor
    std::string system_name;
    std::string chassis_id;
    std::string port_id;
    std::string port_description;
};

struct Interface {
    std::string name;
    std::vector<Neighbor> neighbors;
};

struct Report {
    std::string place; // where the device was read from
    std::string system_name;
    std::string chassis_id;
    std::vector<Interface> interfaces;
};

// ---- the picture -------------------------------------------------------------------------------------------

struct Router {
    std::string label; // no two routers have the same
    std::string system_name;
    std::string chassis_id;
    bool read = false; // whether it is one of the devices that reported
};

struct Port {
    size_t router = 0; // index into Topology::routers
    std::string name;  // empty when nobody told it
    std::vector<std::string>
        announced_as; // port ids that neighbors know it by, where they differ from its name
};

// One port hears another; indices into Topology::ports.
struct Sighting {
    size_t by = 0;
    size_t of = 0;
    auto operator<=>(const Sighting &) const = default;
};

// Ports that are connected with one another: two are a link, more share a medium, a single one hears itself.
struct Segment {
    std::vector<size_t> ports;       // in ascending order
    std::vector<Sighting> sightings; // in ascending order, each once

    bool shared() const { return ports.size() > 2; }
    bool sees(size_t by, size_t of) const;
};

// Sorted throughout, so that the same network gives the same picture in whatever order it was read: routers by
// label, ports by router and name, segments by their ports. Numbers in names count as numbers.
struct Topology {
    std::vector<Router> routers;
    std::vector<Port> ports; // those of the read routers, and those of others that somebody hears
    std::vector<Segment> segments;
    size_t networks = 0; // groups of routers without a connection between them

    const Router &router_of(size_t port) const { return routers[ports[port].router]; }
};

// Puts the reports together. A neighbor is the read router with its system name and chassis id, else the only
// one with its system name, else the only one with its chassis id; neighbors that are not among the read
// routers are told apart in the same way. A neighbor's port is the router's interface that its port id or else
// its port description names, else the only one that hears the neighbor's observer, else what the port id says.
Topology build(const std::vector<Report> &reports);

// "eth2" before "eth10".
bool natural_less(std::string_view a, std::string_view b);

} // namespace yfw::pictures

#endif
