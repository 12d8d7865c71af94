#include "lab/network.h"

#include <stdexcept>
#include <utility>

#include <sys/stat.h>

#include "base/run_program.h"
#include "lab/programs.h"

namespace yfw::lab {

Network::Network(Place place, int lock) : place_(std::move(place)), lock_(lock), program_(ip_program()) {}

void Network::ip(std::vector<std::string> arguments) const {
    arguments.insert(arguments.begin(), program_);
    const Finished finished = run(arguments, lock_);
    if (finished.status == 0)
        return;
    std::string command = "ip";
    for (size_t i = 1; i < arguments.size(); ++i)
        command += " " + arguments[i];
    throw std::runtime_error(command + ": " + finished.reason());
}

void Network::make_namespace(const std::string &name) const {
    ip({"netns", "add", name});
}

void Network::remove_namespace(const std::string &name) const {
    ip({"netns", "del", name});
}

void Network::switch_on(const std::string &name_space, const std::string &interface) const {
    ip({"-n", name_space, "link", "set", interface, "up"});
}

// Both ends are created directly in their namespaces, so that neither is ever in the machine's own.
void Network::make_cable(const std::string &first_namespace, const std::string &first,
                         const std::string &second_namespace, const std::string &second) const {
    ip({"link", "add", first, "netns", first_namespace, "type", "veth", "peer", "name", second, "netns",
        second_namespace});
}

void Network::switch_on(const Router &router) const {
    ip({"-n", place_.namespace_of(router.name), "link", "set", "group", "default", "up"});
}

void Network::flap(const Port &port) const {
    const std::string name_space = place_.namespace_of(port.router);
    ip({"-n", name_space, "link", "set", port.interface, "down"});
    switch_on(name_space, port.interface);
}

void Network::connect(const Link &link) const {
    make_cable(place_.namespace_of(link.first.router), link.first.interface,
               place_.namespace_of(link.second.router), link.second.interface);
}

void Network::connect(const Segment &segment) const {
    const std::string name_space = place_.namespace_of(segment.name);
    // A bridge does not forward LLDP's group address 01:80:c2:00:00:0e unless bit 14 is set.
    ip({"-n", name_space, "link", "add", "br0", "type", "bridge", "group_fwd_mask", "0x4000"});
    switch_on(name_space, "br0");
    int number = 0;
    for (const Port &port : segment.ports) {
        const std::string end = "p" + std::to_string(++number);
        make_cable(place_.namespace_of(port.router), port.interface, name_space, end);
        ip({"-n", name_space, "link", "set", end, "master", "br0", "up"});
    }
}

void Network::add_addresses(const Router &router) const {
    for (const auto &[interface, addresses] : router.addresses)
        for (const std::string &address : addresses) {
            std::vector<std::string> command{
                "-n", place_.namespace_of(router.name), "address", "add", address, "dev", interface};
            if (address.find(':') != std::string::npos)
                command.emplace_back("nodad"); // skips duplicate detection: usable and announced at once
            ip(command);
        }
}

std::string namespace_file(const std::string &name) {
    return "/run/netns/" + name;
}

ino_t inode_of_namespace(const std::string &name) {
    struct stat found {};
    return ::stat(namespace_file(name).c_str(), &found) == 0 ? found.st_ino : 0;
}

} // namespace yfw::lab
