// Who is connected to whom, derived from the LLDP reports of several devices.
#ifndef YFW_FRONTENDS_PICTURES_TOPOLOGY_MODEL_H
#define YFW_FRONTENDS_PICTURES_TOPOLOGY_MODEL_H

#include <compare>
#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace yfw::pictures {

// ---- what devices report; a text that a device did not report is empty -------------------------------------

struct Neighbor {
    std::string id; // the device's own id for this neighbor
    std::string system_name;
    std::string chassis_id;
    std::string port_id;
    std::string port_description;
    std::string system_description{};
    std::string management_address{};
    std::string age{};                       // in seconds
    std::vector<std::string> capabilities{}; // that it uses, by the names of their identities
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
    std::string label; // unique among the routers
    std::string system_name;
    std::string chassis_id;
    bool read = false; // whether it is one of the devices that reported
};

struct Port {
    size_t router = 0; // index into Topology::routers
    std::string name;  // empty when unknown
    std::vector<std::string>
        announced_as; // port ids that neighbors know it by, where they differ from its name
};

// One port hears another. Both are indices into Topology::ports.
struct Sighting {
    size_t by = 0;
    size_t of = 0;
    auto operator<=>(const Sighting &) const = default;
};

// Ports connected with one another: two form a link, more share a medium, a single one hears itself.
struct Segment {
    std::vector<size_t> ports;       // in ascending order
    std::vector<Sighting> sightings; // in ascending order, without duplicates

    bool shared() const { return ports.size() > 2; }
    bool sees(size_t by, size_t of) const;
};

// Fully sorted, so that the same network gives the same picture whatever the order of reading: routers by
// label, ports by router and name, segments by their ports. Numbers in names are compared as numbers.
struct Topology {
    std::vector<Router> routers;
    std::vector<Port> ports; // those of the read routers, and those of others that a port hears
    std::vector<Segment> segments;
    std::map<Sighting, Neighbor> heard; // what the port heard of the other one, for each sighting
    size_t networks = 0;                // groups of routers without a connection between them

    const Router &router_of(size_t port) const { return routers[ports[port].router]; }
};

// Combines the reports. A neighbor is the read router with its system name and chassis id, else the only one
// with its system name, else the only one with its chassis id. Neighbors that are not among the read routers
// are distinguished in the same way. A neighbor's port is the router's interface that its port id or else its
// port description names, else the only interface that hears the neighbor's observer, else a port named by the
// port id.
Topology build(const std::vector<Report> &reports);

// Sorts "eth2" before "eth10".
bool natural_less(std::string_view a, std::string_view b);

} // namespace yfw::pictures

#endif
