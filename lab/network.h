// Namespaces, cables and bridges, created and removed by the program `ip`.
#ifndef YFW_LAB_NETWORK_H
#define YFW_LAB_NETWORK_H

#include <string>
#include <vector>

#include <sys/types.h>

#include "lab/lab_directory.h"
#include "lab/topology_file.h"

namespace yfw::lab {

// All members throw std::runtime_error with the command and what `ip` printed.
class Network {
public:
    // `lock` stays open in every program started.
    Network(Place place, int lock);

    void make_namespace(const std::string &name) const;
    void remove_namespace(const std::string &name) const;

    // Creates the cable. Leaves the routers' ports off.
    void connect(const Link &link) const;
    // Creates the bridge in the segment's namespace and the cables to it. Leaves the routers' ports off.
    void connect(const Segment &segment) const;
    void add_addresses(const Router &router) const;
    // Switches on all ports of the router at once.
    void switch_on(const Router &router) const;
    // Switches the port off and on again.
    void flap(const Port &port) const;

private:
    void ip(std::vector<std::string> arguments) const;
    void make_cable(const std::string &first_namespace, const std::string &first,
                    const std::string &second_namespace, const std::string &second) const;
    void switch_on(const std::string &name_space, const std::string &interface) const;

    Place place_;
    int lock_;
    std::string program_;
};

// The path at which the namespace can be opened.
std::string namespace_file(const std::string &name);

// The inode of a namespace; 0 when there is none with this name.
ino_t inode_of_namespace(const std::string &name);

} // namespace yfw::lab

#endif
