// What a laboratory consists of, and the file that describes it.
#ifndef YFW_LAB_TOPOLOGY_FILE_H
#define YFW_LAB_TOPOLOGY_FILE_H

#include <filesystem>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace yfw::lab {

struct Port {
    std::string router;
    std::string interface;

    bool operator==(const Port &) const = default;
};

// An organizationally specific TLV; `content` holds the bytes as on the wire.
struct CustomTlv {
    std::vector<unsigned char> oui;
    int subtype = 0;
    std::vector<unsigned char> content;
};

struct Router {
    std::string name;
    std::string system_name;
    std::string system_description;
    std::vector<std::string> capabilities; // empty: as reported by the kernel
    std::vector<CustomTlv> custom_tlvs;
    std::map<std::string, std::vector<std::string>> addresses; // by interface, each with its prefix length
};

// A cable between two ports.
struct Link {
    Port first;
    Port second;
};

// A bridge that forwards LLDP, and all its ports.
struct Segment {
    std::string name;
    std::vector<Port> ports;
};

struct Topology {
    std::vector<Router> routers;
    std::vector<Link> links;
    std::vector<Segment> segments;
    nlohmann::json source; // the file's JSON

    // A router's interfaces, in the order in which they are created.
    std::vector<std::string> interfaces_of(const std::string &router) const;
    // Each port with the number of ports that it hears.
    std::vector<std::pair<Port, size_t>> peers() const;
};

// Parses and checks a topology. Throws Error with `file`, the place in it and what was expected there.
Topology read_topology(nlohmann::json source, const std::string &file);
Topology read_topology_file(const std::filesystem::path &file);

// The four routers of the recorded devices.
Topology default_topology();

// Whether this is a valid name for a laboratory, a router or a segment: letters, digits, - and _, at most 32
// characters, starting with a letter or a digit.
bool is_name(const std::string &name);

} // namespace yfw::lab

#endif
