#include "fuzz/support/daemon_messages.h"

#include <array>
#include <iterator>
#include <type_traits>
#include <utility>

namespace yfw::fuzz {
namespace {

// A structure is followed by those that it points to, and those by theirs, in an order that both sides know.
class Content {
public:
    uint64_t number() { return ++last_number_; }
    uint64_t number_if(bool is_there) { return is_there ? number() : 0; }

    template <class Structure> void add(uint64_t number, const Structure &structure) {
        static_assert(std::is_trivially_copyable_v<Structure>);
        add_bytes(number, std::string(reinterpret_cast<const char *>(&structure), sizeof structure));
    }
    // A structure that is within another one.
    void add_inner() { add_bytes(number(), ""); }
    void add_octets(uint64_t number, const std::string &octets) {
        if (number != 0)
            add_bytes(number, octets);
    }
    void add_text(uint64_t number, const std::string &text) { add_octets(number, text + '\0'); }
    void add_text(uint64_t number, const std::optional<std::string> &text) {
        add_text(number, text.value_or(""));
    }

    std::string take() { return std::move(content_); }

private:
    void add_bytes(uint64_t number, const std::string &bytes) {
        constexpr size_t alignment = 8;
        const std::array<uint64_t, 2> header{number, sizeof header + bytes.size()};
        content_.resize((content_.size() + alignment - 1) / alignment * alignment);
        content_.append(reinterpret_cast<const char *>(header.data()), sizeof header);
        content_ += bytes;
    }

    std::string content_;
    uint64_t last_number_ = 0;
};

// For each kind of element: sets its pointers, and adds what they point to.
void point(Content &, Address &) {}
void add_targets(Content &, Address &) {}
void point(Content &, ProtocolVlan &) {}
void add_targets(Content &, ProtocolVlan &) {}

void point(Content &content, Vlan &vlan) {
    vlan.structure.name = content.number();
}
void add_targets(Content &content, Vlan &vlan) {
    content.add_text(vlan.structure.name, vlan.name);
}

void point(Content &content, InterfaceName &name) {
    name.structure.name = content.number();
}
void add_targets(Content &content, InterfaceName &name) {
    content.add_text(name.structure.name, name.name);
}

template <class WithOctets> void point(Content &content, WithOctets &item) {
    item.structure.octets = content.number_if(!item.octets.empty());
    item.structure.length = static_cast<int32_t>(item.octets.size());
}
template <class WithOctets> void add_targets(Content &content, WithOctets &item) {
    content.add_octets(item.structure.octets, item.octets);
}

void point(Content &content, PortAnswer &port);
void add_targets(Content &content, PortAnswer &port);

// An element of a list is followed by the rest of the list, and then by what it points to.
template <class Item> void add_list(Content &content, uint64_t first, std::vector<Item> &items, size_t at = 0) {
    if (at == items.size())
        return;
    Item &item = items[at];
    item.structure.links.next = content.number_if(at + 1 < items.size());
    point(content, item);
    content.add(first, item.structure);
    add_list(content, item.structure.links.next, items, at + 1);
    add_targets(content, item);
}

void point(Content &content, ChassisAnswer &chassis) {
    ChassisAnswer::Structure &to = chassis.structure;
    to.id = content.number();
    to.id_length = static_cast<int32_t>(chassis.id.size());
    to.name = content.number_if(chassis.name.has_value());
    to.description = content.number_if(chassis.description.has_value());
    to.addresses.first = content.number_if(!chassis.addresses.empty());
    for (size_t i = 0; i < std::size(to.inventory); i++)
        to.inventory[i] = content.number_if(chassis.inventory[i].has_value());
}

void add_chassis(Content &content, uint64_t number, ChassisAnswer &chassis) {
    const ChassisAnswer::Structure &from = chassis.structure;
    point(content, chassis);
    content.add(number, from);
    content.add_octets(from.id, chassis.id);
    content.add_text(from.name, chassis.name);
    content.add_text(from.description, chassis.description);
    add_list(content, from.addresses.first, chassis.addresses);
    for (size_t i = 0; i < std::size(from.inventory); i++)
        content.add_text(from.inventory[i], chassis.inventory[i]);
}

// Except to the chassis, which several ports may share.
void point(Content &content, PortAnswer &port) {
    PortAnswer::Structure &to = port.structure;
    to.id = content.number();
    to.id_length = static_cast<int32_t>(port.id.size());
    to.description = content.number_if(port.description.has_value());
    for (size_t i = 0; i < std::size(to.locations); i++) {
        to.locations[i].octets = content.number_if(to.locations[i].format != 0);
        to.locations[i].length = static_cast<int32_t>(port.locations[i].size());
    }
    to.vlans.first = content.number_if(!port.vlans.empty());
    to.protocol_vlans.first = content.number_if(!port.protocol_vlans.empty());
    to.protocols.first = content.number_if(!port.protocols.empty());
    to.unknown.first = content.number_if(!port.unknown.empty());
}

void add_targets(Content &content, PortAnswer &port) {
    const PortAnswer::Structure &from = port.structure;
    if (port.chassis.has_value())
        add_chassis(content, from.chassis, *port.chassis);
    content.add_octets(from.id, port.id);
    content.add_text(from.description, port.description);
    for (size_t i = 0; i < std::size(from.locations); i++) {
        content.add_inner();
        content.add_octets(from.locations[i].octets, port.locations[i]);
    }
    add_list(content, from.vlans.first, port.vlans);
    add_list(content, from.protocol_vlans.first, port.protocol_vlans);
    add_list(content, from.protocols.first, port.protocols);
    add_list(content, from.unknown.first, port.unknown);
}

// The elements of a list are written last one first, except for their structures.
void share_chassis(Content &content, std::vector<PortAnswer> &ports) {
    uint64_t next = 0;
    for (auto port = ports.rbegin(); port != ports.rend(); ++port)
        next = port->structure.chassis = port->chassis.has_value() ? content.number() : next;
}

} // namespace

std::string content_of(Configuration &configuration) {
    Content content;
    Configuration::Structure &to = configuration.structure;
    to.chassis_id = content.number_if(configuration.chassis_id.has_value());
    to.name = content.number_if(configuration.name.has_value());
    to.description = content.number_if(configuration.description.has_value());
    content.add(content.number(), to);
    content.add_text(to.chassis_id, configuration.chassis_id);
    content.add_text(to.name, configuration.name);
    content.add_text(to.description, configuration.description);
    return content.take();
}

std::string content_of(ChassisAnswer &chassis) {
    Content content;
    add_chassis(content, content.number(), chassis);
    return content.take();
}

std::string content_of(InterfaceAnswer &interface) {
    Content content;
    InterfaceAnswer::Structure &to = interface.structure;
    interface.port.structure.chassis = content.number();
    point(content, interface.port);
    to.port = interface.port.structure;
    to.neighbors.first = content.number_if(!interface.neighbors.empty());
    share_chassis(content, interface.neighbors);
    content.add(content.number(), to);
    content.add_inner();
    add_targets(content, interface.port);
    add_list(content, to.neighbors.first, interface.neighbors);
    return content.take();
}

std::string content_of(std::vector<InterfaceName> &names) {
    Content content;
    const Head head{content.number_if(!names.empty()), 0};
    content.add(content.number(), head);
    add_list(content, head.first, names);
    return content.take();
}

} // namespace yfw::fuzz
