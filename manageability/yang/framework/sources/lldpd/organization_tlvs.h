// Organizationally specific TLVs (IEEE Std 802.1AB clause 8.6) that lldpd interprets, as the octets that they
// were on the wire: lldpd hands on only what it understood of them.
#ifndef YFW_SOURCES_LLDPD_ORGANIZATION_TLVS_H
#define YFW_SOURCES_LLDPD_ORGANIZATION_TLVS_H

#include <cstdint>
#include <optional>
#include <string_view>

#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

// --- IEEE Std 802.1Q annex D ---

CustomTlv port_vlan_id(uint16_t id);
// `flags`: supported (2) and enabled (4).
CustomTlv port_and_protocol_vlan_id(uint8_t flags, uint16_t id);
CustomTlv vlan_name(uint16_t id, std::string_view name);
CustomTlv protocol_identity(std::string_view octets);

// --- IEEE Std 802.3 clause 79 ---

struct MacPhy {
    bool supported = false; // auto-negotiation
    bool enabled = false;
    uint16_t advertised = 0; // capability bits
    uint16_t mau_type = 0;
};
CustomTlv mac_phy(const MacPhy &status);

// The fields of 802.3at and 802.3bt that a Power via MDI TLV may be extended by. Powers are in tenths of a
// watt.
struct PowerNegotiation {
    uint8_t type_bits = 0; // of two bits: 0 type 2 PSE, 1 type 2 PD, 2 type 1 PSE, 3 type 1 PD
    uint8_t source = 0;
    uint8_t priority = 0;
    bool has_4pid = false;
    uint16_t requested = 0;
    uint16_t allocated = 0;
};
struct FourPairPower {
    uint16_t requested_a = 0, requested_b = 0;
    uint16_t allocated_a = 0, allocated_b = 0;
    uint8_t pse_status = 0, pd_status = 0, pse_pairs = 0;
    uint8_t class_a = 0, class_b = 0, power_class = 0;
    uint8_t type = 0;
    bool pd_load = false;
    uint16_t pse_maximum = 0;
};
struct MdiPower {
    bool is_pse = false;
    bool supported = false, enabled = false, pair_control = false;
    uint8_t pairs = 0;
    uint8_t power_class = 0; // as sent: the class plus 1
    std::optional<PowerNegotiation> negotiation;
    std::optional<FourPairPower> four_pair; // only with a negotiation
};
// What lldpd does not keep of the longest form, autoclass and power down, is zero.
CustomTlv mdi_power(const MdiPower &power);

// Of a port that is part of an aggregation.
CustomTlv link_aggregation(uint32_t port_id);
CustomTlv max_frame_size(uint16_t octets);

// --- ANSI/TIA-1057 (LLDP-MED) ---

CustomTlv med_capabilities(uint16_t capabilities, uint8_t device_class);

struct NetworkPolicy {
    uint8_t application = 0;
    bool unknown = false, tagged = false;
    uint16_t vlan = 0;
    uint8_t priority = 0, dscp = 0;
};
CustomTlv network_policy(const NetworkPolicy &policy);

// Coordinates as lldpd words them: "48.8566699N", "2.2945999W" and "35.25". The resolutions that RFC 3825 sends
// with them are those of the words. Nothing for other words.
struct Coordinates {
    std::string_view latitude, longitude, altitude;
    uint8_t altitude_unit = 0;
    uint8_t datum = 0;
};
std::optional<CustomTlv> coordinate_location(const Coordinates &coordinates);

// `elements`: type, length and value of each. The location is that of the client, since lldpd does not keep
// what it was said to be of. Nothing when it does not fit into a TLV.
std::optional<CustomTlv> civic_location(std::string_view country, std::string_view elements);
CustomTlv emergency_number(std::string_view digits);

struct ExtendedPower {
    uint8_t type = 0;   // of two bits
    uint8_t source = 0; // of two bits
    uint8_t priority = 0;
    uint16_t value = 0; // tenths of a watt
};
CustomTlv extended_power(const ExtendedPower &power);

// `subtype`: from 5, hardware revision, to 11, asset id.
CustomTlv inventory(uint8_t subtype, std::string_view text);

} // namespace yfw::sources::lldpd

#endif
