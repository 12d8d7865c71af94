// What an lldpd knows, as plain structures that depend on neither lldpd's library nor YANG.
#ifndef YFW_SOURCES_LLDPD_LLDPD_STATE_H
#define YFW_SOURCES_LLDPD_LLDPD_STATE_H

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace yfw::sources::lldpd {

// Bits of IEEE Std 802.1AB clause 8.5.8.1.
struct Capabilities {
    uint16_t available = 0;
    uint16_t enabled = 0;
};

struct ManagementAddress {
    std::string text; // IPv4 or IPv6
    std::optional<uint32_t> interface_number;
};

// An organizationally specific TLV (clause 8.6).
struct CustomTlv {
    std::array<uint8_t, 3> oui{};
    uint8_t subtype = 0;
    std::string octets; // as on the wire

    bool operator==(const CustomTlv &) const = default;
};

struct Chassis {
    std::optional<uint32_t> id_subtype; // clause 8.5.2.2; nothing when lldpd does not report it
    std::string id;
    std::string id_octets = {}; // as on the wire; empty when they are not known
    std::optional<std::string> name = std::nullopt;
    std::optional<std::string> description = std::nullopt;
    std::optional<Capabilities> capabilities = std::nullopt;
    std::vector<ManagementAddress> addresses = {};
};

struct Neighbor {
    Chassis chassis;
    std::optional<uint32_t> port_id_subtype; // clause 8.5.3.2
    std::string port_id;
    std::string port_id_octets; // as on the wire; empty when they are not known
    std::optional<std::string> port_description;
    std::optional<uint32_t> time_to_live; // seconds
    std::optional<uint64_t> changed_at;   // when the announcement last changed; seconds since the epoch
    std::optional<uint64_t> last_update;  // seconds since changed_at
    std::optional<uint64_t> age;          // seconds since the neighbor was discovered
    std::vector<CustomTlv> tlvs;
};

// lldpd's counters have 64 bits. Nothing for a counter that it does not have.
struct Counters {
    std::optional<uint64_t> transmitted;
    std::optional<uint64_t> received;
    std::optional<uint64_t> discarded;
    std::optional<uint64_t> unrecognized;
    std::optional<uint64_t> aged_out;
};

struct PortStatus {
    bool transmits = true;
    bool receives = true;
    bool operator==(const PortStatus &) const = default;
};

struct Port {
    std::string name;
    PortStatus status;
    Counters counters;
    std::vector<Neighbor> neighbors; // only those heard by LLDP
};

// The configured settings that the native models can express, and the hold multiplier, which they cannot.
struct DaemonSettings {
    bool paused = false;
    bool receives_only = false;             // as a whole, whatever the ports' status
    uint32_t transmit_interval = 30;        // seconds
    uint32_t hold_multiplier = 4;           // the time to live is that many intervals
    std::optional<std::string> system_name; // may have been set to an empty text, like the next two
    std::optional<std::string> system_description;
    std::optional<std::string> chassis_id;
    bool advertises_capabilities = true;
    bool advertises_addresses = true;
};

struct State {
    Chassis local;
    DaemonSettings settings;
    std::vector<Port> ports; // in lldpd's order
};

} // namespace yfw::sources::lldpd

#endif
