// What an lldpd may answer on its control socket, and the messages that say it.
//
// A message holds the daemon's structures as they are in its memory, each with a header. The structures below
// are those of lldpd 1.0.16 with all protocols, on machines with pointers of 64 bits; see lldpd-structs.h in
// its sources.
#ifndef YFW_FUZZ_SUPPORT_DAEMON_MESSAGES_H
#define YFW_FUZZ_SUPPORT_DAEMON_MESSAGES_H

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace yfw::fuzz {

inline constexpr const char *known_lldpd = "1.0.16";

enum MessageType : uint32_t {
    no_answer = 0, // to a question that the daemon cannot answer; without content
    configuration_message = 1,
    interfaces_message = 3,
    chassis_message = 5,
    interface_message = 6
};

// The header of a message.
struct MessageHeader {
    uint32_t type = 0;
    size_t length = 0; // of what follows, in bytes
};

// Pointers are numbers that the messages' structures have, or 0.
struct Links {
    uint64_t next = 0, previous = 0;
};
struct Head {
    uint64_t first = 0, last = 0;
};

struct Configuration {
    struct Structure {
        int32_t paused = 0, interval_ms = 0, ttl = 0, smart = 0, receives_only = 0, most_neighbors = 0;
        uint64_t address_pattern = 0, id_pattern = 0, chassis_id = 0, interface_pattern = 0,
                 kept_interfaces = 0, platform = 0, description = 0, name = 0;
        int32_t tells_version = 0, sets_descriptions = 0, is_promiscuous = 0, tells_capabilities = 0,
                overrides_capabilities = 0, tells_addresses = 0, hides_inventory = 0, starts_fast = 0,
                fast_count = 0, fast_interval = 0, hold = 0, bond_address = 0, port_id_type = 0, agent_type = 0;
    } structure;
    std::optional<std::string> chassis_id, name, description; // without zero octets, like all texts here
};

struct Address {
    struct Structure {
        Links links;
        int32_t family = 0;
        uint8_t octets[16]{};
        uint64_t size = 0;
        uint32_t interface_number = 0;
    } structure;
};

struct ChassisAnswer {
    struct Structure {
        Links links;
        uint16_t references = 0, index = 0;
        uint8_t protocol = 0, id_subtype = 0;
        uint64_t id = 0;
        int32_t id_length = 0;
        uint64_t name = 0, description = 0;
        uint16_t available = 0, enabled = 0;
        Head addresses;
        uint16_t med_capabilities = 0;
        uint8_t med_class = 0;
        uint64_t inventory[7]{};
    } structure;
    std::string id; // never empty
    std::optional<std::string> name, description;
    std::vector<Address> addresses;
    std::optional<std::string> inventory[7];
};

struct Vlan {
    struct Structure {
        Links links;
        uint64_t name = 0;
        uint16_t id = 0;
    } structure;
    std::string name;
};

struct ProtocolVlan {
    struct Structure {
        Links links;
        uint8_t flags = 0;
        uint16_t id = 0;
    } structure;
};

struct Protocol {
    struct Structure {
        Links links;
        uint64_t octets = 0;
        int32_t length = 0;
    } structure;
    std::string octets;
};

struct UnknownTlv {
    struct Structure {
        Links links;
        uint8_t oui[3]{}, subtype = 0;
        uint64_t octets = 0;
        int32_t length = 0;
    } structure;
    std::string octets;
};

struct PortAnswer {
    struct Policy {
        uint8_t index, type, is_unknown, is_tagged;
        uint16_t vlan;
        uint8_t priority, dscp;
    };
    struct Location {
        uint8_t index = 0, format = 0;
        uint64_t octets = 0;
        int32_t length = 0;
    };
    struct MacPhy {
        uint8_t supported, enabled;
        uint16_t advertised, mau_type;
    };
    struct Power {
        uint8_t device, supported, enabled, pair_control, pairs, power_class, type, source, priority;
        uint16_t requested, allocated;
        uint8_t has_4pid;
        uint16_t requested_a, requested_b, allocated_a, allocated_b, pse_status;
        uint8_t pd_status, pse_pairs, class_a, class_b, class_ext, type_ext, pd_load;
        uint16_t pse_maximum;
    };
    struct MedPower {
        uint8_t device, source, priority;
        uint16_t value;
    };
    struct Structure {
        Links links;
        uint64_t chassis = 0;
        int64_t changed_at = 0, updated_at = 0, removed_at = 0;
        uint64_t frame = 0;
        uint8_t protocol = 0, flags = 0;
        int32_t hardware_flags = 0;
        uint8_t id_subtype = 0;
        uint64_t id = 0;
        int32_t id_length = 0;
        uint64_t description = 0;
        int32_t description_is_forced = 0;
        uint16_t frame_size = 0, ttl = 0;
        int32_t vlan_tag = 0, vlan_is_enabled = 0;
        uint32_t aggregation = 0;
        MacPhy mac_phy{};
        Power power{};
        uint16_t med_enabled = 0;
        Policy policies[8]{};
        Location locations[3];
        MedPower med_power{};
        uint16_t other_power[2]{}; // of other protocols
        uint16_t vlan = 0;
        Head vlans, protocol_vlans, protocols, unknown;
    } structure;
    std::optional<ChassisAnswer> chassis; // nothing: that of the next neighbor
    std::string id;                       // never empty
    std::optional<std::string> description;
    std::string locations[3];
    std::vector<Vlan> vlans;
    std::vector<ProtocolVlan> protocol_vlans;
    std::vector<Protocol> protocols;
    std::vector<UnknownTlv> unknown;
};

// Bits of a port's flags.
inline constexpr uint8_t receives_nothing = 4, transmits_nothing = 8;

struct InterfaceAnswer {
    struct Structure {
        Links links;
        uint64_t daemon = 0, receiver = 0;
        int32_t sender = 0, mangles = 0;
        uint64_t operations = 0, data = 0, timer = 0;
        int32_t mtu = 0, flags = 0, index = 0, index_has_changed = 0;
        char name[16]{};
        uint8_t address[6]{};
        uint64_t transmitted = 0, received = 0, discarded = 0, unrecognized = 0, aged_out = 0, inserted = 0,
                 deleted = 0, dropped = 0;
        uint64_t previous_port = 0;
        int64_t previous_length = 0;
        uint8_t previous_chassis_subtype = 0;
        uint64_t previous_chassis = 0;
        int32_t previous_chassis_length = 0;
        uint8_t previous_id_subtype = 0;
        uint64_t previous_id = 0;
        int32_t previous_id_length = 0;
        PortAnswer::Structure port;
        Head neighbors;
        int32_t fast_count = 0;
    } structure;
    PortAnswer port; // with a chassis; its structure becomes that of the interface
    std::vector<PortAnswer> neighbors;
};

struct InterfaceName {
    struct Structure {
        Links links;
        uint64_t name = 0;
    } structure;
    std::string name;
};

// The content of a message. Sets the pointers and lengths in the structures. An interface's port and its last
// neighbor must have a chassis.
std::string content_of(Configuration &configuration);
std::string content_of(ChassisAnswer &chassis);
std::string content_of(InterfaceAnswer &interface);
std::string content_of(std::vector<InterfaceName> &names);

} // namespace yfw::fuzz

#endif
