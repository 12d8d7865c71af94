#include "fuzz/support/daemon_answers.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstring>
#include <type_traits>

#include <lldp-const.h>

#include "yang/yang_text.h"

namespace yfw::fuzz {
namespace {

// Of the elements of one list.
constexpr size_t most = 4;

template <class Value> void fill(Value &value, Input &input) {
    static_assert(std::is_trivially_copyable_v<Value>);
    const std::string_view bytes = input.take(sizeof value);
    std::memcpy(static_cast<void *>(&value), bytes.data(), bytes.size());
}

std::string octets_of(Input &input) {
    const size_t length = input.byte();
    return std::string(input.take(length));
}

// lldpd refuses an id without octets.
std::string id_of(Input &input) {
    const std::string id = octets_of(input);
    return id.empty() ? "i" : id;
}

// A text ends at its first zero octet.
std::string text_of(Input &input) {
    const std::string text = octets_of(input);
    return text.substr(0, text.find('\0'));
}

std::optional<std::string> optional_text_of(Input &input) {
    return (input.byte() & 1) != 0 ? std::optional(text_of(input)) : std::nullopt;
}

template <class Item, class Make> std::vector<Item> list_of(Input &input, Make &&make) {
    std::vector<Item> items(input.byte() % most);
    for (Item &item : items)
        make(item);
    return items;
}

ChassisAnswer chassis_of(Input &input) {
    ChassisAnswer chassis;
    chassis.structure.id_subtype = input.byte();
    chassis.id = id_of(input);
    chassis.name = optional_text_of(input);
    chassis.description = optional_text_of(input);
    chassis.structure.available = input.number();
    chassis.structure.enabled = input.number();
    chassis.addresses = list_of<Address>(input, [&](Address &address) {
        address.structure.family = input.byte() % 3; // neither, IPv4, IPv6
        address.structure.size = sizeof address.structure.octets;
        fill(address.structure.octets, input);
        fill(address.structure.interface_number, input);
    });
    chassis.structure.med_capabilities = input.number();
    chassis.structure.med_class = input.byte();
    if (chassis.structure.med_class != 0)
        std::generate(std::begin(chassis.inventory), std::end(chassis.inventory),
                      [&] { return optional_text_of(input); });
    return chassis;
}

void fill_8021(PortAnswer &port, Input &input) {
    port.structure.vlan = input.number();
    port.vlans = list_of<Vlan>(input, [&](Vlan &vlan) {
        vlan.structure.id = input.number();
        vlan.name = text_of(input);
    });
    port.protocol_vlans = list_of<ProtocolVlan>(input, [&](ProtocolVlan &vlan) {
        vlan.structure.flags = input.byte();
        vlan.structure.id = input.number();
    });
    port.protocols = list_of<Protocol>(input, [&](Protocol &protocol) { protocol.octets = octets_of(input); });
}

void fill_8023(PortAnswer &port, Input &input) {
    fill(port.structure.aggregation, input);
    fill(port.structure.mac_phy, input);
    fill(port.structure.power, input);
}

// lldpd keeps one policy for each application and one location in each format, where it looks for them.
void fill_med(PortAnswer &port, Input &input) {
    const unsigned applications = input.byte();
    for (size_t i = 0; i < std::size(port.structure.policies); i++)
        if ((applications >> i & 1) != 0) {
            fill(port.structure.policies[i], input);
            port.structure.policies[i].type = static_cast<uint8_t>(i + 1);
        }
    const unsigned formats = input.byte();
    for (size_t i = 0; i < std::size(port.locations); i++)
        if ((formats >> i & 1) != 0) {
            port.structure.locations[i].format = static_cast<uint8_t>(i + 1);
            port.locations[i] = octets_of(input);
        }
    fill(port.structure.med_power, input);
}

void fill_unknown(PortAnswer &port, Input &input) {
    port.unknown = list_of<UnknownTlv>(input, [&](UnknownTlv &tlv) {
        fill(tlv.structure.oui, input);
        tlv.structure.subtype = input.byte();
        tlv.octets = octets_of(input);
    });
}

// The bits of one byte say what the neighbor announces beside the basic TLVs.
void fill_neighbor(PortAnswer &port, Input &input) {
    const unsigned kinds = input.byte();
    if ((kinds & 1) == 0)
        port.chassis = chassis_of(input);
    const uint8_t protocol = input.byte() % (LLDPD_MODE_MAX + 1);
    port.structure.protocol = protocol == 0 ? LLDPD_MODE_LLDP : protocol;
    uint32_t changed_at = 0;
    fill(changed_at, input);
    port.structure.changed_at = changed_at;
    port.structure.id_subtype = input.byte();
    port.id = id_of(input);
    port.description = optional_text_of(input);
    port.structure.ttl = input.number();
    port.structure.frame_size = input.number();
    if ((kinds & 2) != 0)
        fill_8021(port, input);
    if ((kinds & 4) != 0)
        fill_8023(port, input);
    if ((kinds & 8) != 0)
        fill_med(port, input);
    if ((kinds & 16) != 0)
        fill_unknown(port, input);
}

InterfaceAnswer interface_of(const std::string &name, Input &input) {
    InterfaceAnswer interface;
    std::copy(name.begin(), name.end(), interface.structure.name);
    interface.port.chassis.emplace().id = "local";
    interface.port.id = name;
    interface.port.structure.flags = input.byte() & (receives_nothing | transmits_nothing);
    fill(interface.structure.transmitted, input);
    fill(interface.structure.received, input);
    fill(interface.structure.discarded, input);
    fill(interface.structure.unrecognized, input);
    fill(interface.structure.aged_out, input);
    interface.neighbors =
        list_of<PortAnswer>(input, [&](PortAnswer &neighbor) { fill_neighbor(neighbor, input); });
    if (!interface.neighbors.empty() && !interface.neighbors.back().chassis.has_value())
        interface.neighbors.back().chassis.emplace().id = "last";
    return interface;
}

Configuration configuration_of(Input &input) {
    Configuration configuration;
    const unsigned flags = input.byte();
    configuration.structure.paused = flags & 1;
    configuration.structure.receives_only = flags >> 1 & 1;
    configuration.structure.tells_capabilities = flags >> 2 & 1;
    configuration.structure.tells_addresses = flags >> 3 & 1;
    fill(configuration.structure.interval_ms, input);
    fill(configuration.structure.hold, input);
    configuration.chassis_id = optional_text_of(input);
    configuration.name = optional_text_of(input);
    configuration.description = optional_text_of(input);
    return configuration;
}

// Linux has no two interfaces of one name, and allows neither these octets in a name nor more of them.
std::string interface_name(size_t number, Input &input) {
    constexpr size_t longest = 15;
    std::string name = std::to_string(number) + text_of(input);
    std::erase_if(name,
                  [](char c) { return std::isspace(static_cast<unsigned char>(c)) || c == '/' || c == ':'; });
    return name.substr(0, longest);
}

void append(std::string &messages, MessageType type, const std::string &content) {
    std::string header(sizeof(MessageHeader), '\0');
    const size_t length = content.size();
    std::memcpy(header.data() + offsetof(MessageHeader, type), &type, sizeof type);
    std::memcpy(header.data() + offsetof(MessageHeader, length), &length, sizeof length);
    messages += header + content;
}

} // namespace

DaemonAnswers daemon_answers(Input &input) {
    DaemonAnswers answers;
    answers.chassis = chassis_of(input);
    if (answers.chassis.structure.id_subtype == LLDP_CHASSISID_SUBTYPE_ADDR) // never the daemon's own
        answers.chassis.structure.id_subtype = LLDP_CHASSISID_SUBTYPE_LOCAL;
    answers.configuration = configuration_of(input);
    for (size_t left = input.byte() % most; left > 0; left--) {
        const std::string name = interface_name(left, input);
        answers.names.emplace_back().name = name;
        const bool is_there = (input.byte() & 1) == 0;
        answers.interfaces.push_back(is_there ? std::optional(interface_of(name, input)) : std::nullopt);
    }
    return answers;
}

std::string messages_of(DaemonAnswers &answers) {
    std::string messages;
    append(messages, chassis_message, content_of(answers.chassis));
    append(messages, configuration_message, content_of(answers.configuration));
    append(messages, interfaces_message, content_of(answers.names));
    for (size_t i = 0; i < answers.interfaces.size(); i++) {
        std::optional<InterfaceAnswer> &interface = answers.interfaces[i];
        if (!yang::is_yang_text(answers.names[i].name)) // nobody asks for it
            continue;
        if (interface.has_value())
            append(messages, interface_message, content_of(*interface));
        else
            append(messages, no_answer, "");
    }
    return messages;
}

} // namespace yfw::fuzz
