#include "sources/lldpd/organization_tlvs.h"

#include "sources/lldpd/tlv_octets.h"

namespace yfw::sources::lldpd {
namespace {

constexpr std::array<uint8_t, 3> ieee_8021 = {0x00, 0x80, 0xc2};
constexpr std::array<uint8_t, 3> ieee_8023 = {0x00, 0x12, 0x0f};

} // namespace

CustomTlv port_vlan_id(uint16_t id) {
    return TlvOctets(ieee_8021, 1).number(id, 2);
}

CustomTlv port_and_protocol_vlan_id(uint8_t flags, uint16_t id) {
    return TlvOctets(ieee_8021, 2).number(flags, 1).number(id, 2);
}

CustomTlv vlan_name(uint16_t id, std::string_view name) {
    return TlvOctets(ieee_8021, 3).number(id, 2).with_length(name);
}

CustomTlv protocol_identity(std::string_view octets) {
    return TlvOctets(ieee_8021, 4).with_length(octets);
}

// Clause 79.3.1.
CustomTlv mac_phy(const MacPhy &status) {
    return TlvOctets(ieee_8023, 1)
        .number((status.supported ? 1u : 0u) | (status.enabled ? 2u : 0u), 1)
        .number(status.advertised, 2)
        .number(status.mau_type, 2);
}

// Clause 79.3.2.
CustomTlv mdi_power(const MdiPower &power) {
    TlvOctets tlv(ieee_8023, 2);
    tlv.number((power.is_pse ? 1u : 0u) | (power.supported ? 2u : 0u) | (power.enabled ? 4u : 0u) |
                   (power.pair_control ? 8u : 0u),
               1);
    tlv.number(power.pairs, 1).number(power.power_class, 1);
    if (!power.negotiation.has_value())
        return tlv;
    const PowerNegotiation &at = *power.negotiation;
    tlv.number(static_cast<unsigned>(at.type_bits << 6 | (at.source & 3) << 4) | (at.has_4pid ? 4u : 0u) |
                   (at.priority & 3u),
               1);
    tlv.number(at.requested, 2).number(at.allocated, 2);
    if (!power.four_pair.has_value())
        return tlv;
    const FourPairPower &bt = *power.four_pair;
    tlv.number(bt.requested_a, 2).number(bt.requested_b, 2);
    tlv.number(bt.allocated_a, 2).number(bt.allocated_b, 2);
    tlv.number(static_cast<unsigned>((bt.pse_status & 3) << 14 | (bt.pd_status & 3) << 12 |
                                     (bt.pse_pairs & 3) << 10 | (bt.class_a & 7) << 7 | (bt.class_b & 7) << 4 |
                                     (bt.power_class & 15)),
               2);
    tlv.number(static_cast<unsigned>((bt.type & 7) << 1) | (bt.pd_load ? 1u : 0u), 1);
    return tlv.number(bt.pse_maximum, 2).number(0, 4);
}

// Clause 79.3.3: the port can be aggregated, and is.
CustomTlv link_aggregation(uint32_t port_id) {
    return TlvOctets(ieee_8023, 3).number(3, 1).number(port_id, 4);
}

CustomTlv max_frame_size(uint16_t octets) {
    return TlvOctets(ieee_8023, 4).number(octets, 2);
}

} // namespace yfw::sources::lldpd
