#include "sources/lldpd/tlv_reader.h"

#include <cstring>

#include <lldp-const.h>

#include "sources/lldpd/atom_values.h"
#include "sources/lldpd/connection.h"
#include "sources/lldpd/organization_tlvs.h"

namespace yfw::sources::lldpd {
namespace {

using Tlvs = std::vector<CustomTlv>;

// lldpd tells powers in milliwatts, TLVs in tenths of a watt.
uint16_t power(lldpctl_atom_t *atom, lldpctl_key_t key) {
    return static_cast<uint16_t>(number_or_zero<uint32_t>(atom, key) / 100);
}

bool flag(lldpctl_atom_t *atom, lldpctl_key_t key) {
    return number_or_zero<int>(atom, key) != 0;
}

void add_vlans(Tlvs &tlvs, lldpctl_atom_t *port) {
    if (const auto id = number_or_zero<uint16_t>(port, lldpctl_k_port_vlan_pvid); id != 0)
        tlvs.push_back(port_vlan_id(id));
    const Atom port_and_protocol(lldpctl_atom_get(port, lldpctl_k_port_ppvids));
    for_each(port_and_protocol.get(), [&](lldpctl_atom_t *atom) {
        tlvs.push_back(port_and_protocol_vlan_id(number_or_zero<uint8_t>(atom, lldpctl_k_ppvid_status),
                                                 number_or_zero<uint16_t>(atom, lldpctl_k_ppvid_id)));
    });
    const Atom names(lldpctl_atom_get(port, lldpctl_k_port_vlans));
    for_each(names.get(), [&](lldpctl_atom_t *atom) {
        tlvs.push_back(vlan_name(number_or_zero<uint16_t>(atom, lldpctl_k_vlan_id),
                                 text(atom, lldpctl_k_vlan_name).value_or("")));
    });
    const Atom protocols(lldpctl_atom_get(port, lldpctl_k_port_pis));
    for_each(protocols.get(),
             [&](lldpctl_atom_t *atom) { tlvs.push_back(protocol_identity(octets(atom, lldpctl_k_pi_id))); });
}

void add_mac_phy(Tlvs &tlvs, lldpctl_atom_t *port) {
    const MacPhy status{flag(port, lldpctl_k_port_dot3_autoneg_support),
                        flag(port, lldpctl_k_port_dot3_autoneg_enabled),
                        number_or_zero<uint16_t>(port, lldpctl_k_port_dot3_autoneg_advertised),
                        number_or_zero<uint16_t>(port, lldpctl_k_port_dot3_mautype)};
    if (status.supported || status.enabled || status.advertised != 0 || status.mau_type != 0)
        tlvs.push_back(mac_phy(status));
}

// lldpd numbers the types from 1, without the kind of device.
PowerNegotiation read_negotiation(lldpctl_atom_t *atom, bool is_pse) {
    PowerNegotiation at;
    const bool is_type_1 = number_or_zero<int>(atom, lldpctl_k_dot3_power_type) == LLDP_DOT3_POWER_8023AT_TYPE1;
    at.type_bits = static_cast<uint8_t>((is_type_1 ? 2 : 0) | (is_pse ? 0 : 1));
    at.source = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_source);
    at.priority = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_priority);
    at.has_4pid = flag(atom, lldpctl_k_dot3_power_pd_4pid);
    at.requested = power(atom, lldpctl_k_dot3_power_requested);
    at.allocated = power(atom, lldpctl_k_dot3_power_allocated);
    return at;
}

FourPairPower read_four_pair(lldpctl_atom_t *atom) {
    FourPairPower bt;
    bt.requested_a = power(atom, lldpctl_k_dot3_power_requested_a);
    bt.requested_b = power(atom, lldpctl_k_dot3_power_requested_b);
    bt.allocated_a = power(atom, lldpctl_k_dot3_power_allocated_a);
    bt.allocated_b = power(atom, lldpctl_k_dot3_power_allocated_b);
    bt.pse_status = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_pse_status);
    bt.pd_status = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_pd_status);
    bt.pse_pairs = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_pse_pairs_ext);
    bt.class_a = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_class_a);
    bt.class_b = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_class_b);
    bt.power_class = number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_class_ext);
    // lldpd has the three bits where they are in their octet, plus 1.
    bt.type = static_cast<uint8_t>((number_or_zero<uint8_t>(atom, lldpctl_k_dot3_power_type_ext) - 1) >> 1 & 7);
    bt.pd_load = flag(atom, lldpctl_k_dot3_power_pd_load);
    bt.pse_maximum = power(atom, lldpctl_k_dot3_power_pse_max);
    return bt;
}

void add_mdi_power(Tlvs &tlvs, lldpctl_atom_t *port) {
    const Atom atom(lldpctl_atom_get(port, lldpctl_k_port_dot3_power));
    const int device = atom != nullptr ? number_or_zero<int>(atom.get(), lldpctl_k_dot3_power_devicetype) : 0;
    if (device == 0)
        return;
    MdiPower made;
    made.is_pse = device == LLDP_DOT3_POWER_PSE;
    made.supported = flag(atom.get(), lldpctl_k_dot3_power_supported);
    made.enabled = flag(atom.get(), lldpctl_k_dot3_power_enabled);
    made.pair_control = flag(atom.get(), lldpctl_k_dot3_power_paircontrol);
    made.pairs = number_or_zero<uint8_t>(atom.get(), lldpctl_k_dot3_power_pairs);
    made.power_class = number_or_zero<uint8_t>(atom.get(), lldpctl_k_dot3_power_class);
    if (number_or_zero<int>(atom.get(), lldpctl_k_dot3_power_type) != LLDP_DOT3_POWER_8023AT_OFF)
        made.negotiation = read_negotiation(atom.get(), made.is_pse);
    if (number_or_zero<int>(atom.get(), lldpctl_k_dot3_power_type_ext) != LLDP_DOT3_POWER_8023BT_OFF)
        made.four_pair = read_four_pair(atom.get());
    tlvs.push_back(mdi_power(made));
}

void add_8023(Tlvs &tlvs, lldpctl_atom_t *port) {
    add_mac_phy(tlvs, port);
    add_mdi_power(tlvs, port);
    if (const auto id = number_or_zero<uint32_t>(port, lldpctl_k_port_dot3_aggregid); id != 0)
        tlvs.push_back(link_aggregation(id));
    if (const auto size = number_or_zero<uint16_t>(port, lldpctl_k_port_dot3_mfs); size != 0)
        tlvs.push_back(max_frame_size(size));
}

// lldpd lists all applications; those without a policy have type 0.
void add_policies(Tlvs &tlvs, lldpctl_atom_t *port) {
    const Atom list(lldpctl_atom_get(port, lldpctl_k_port_med_policies));
    for_each(list.get(), [&](lldpctl_atom_t *atom) {
        const auto application = number_or_zero<uint8_t>(atom, lldpctl_k_med_policy_type);
        if (application != 0)
            tlvs.push_back(network_policy({application, flag(atom, lldpctl_k_med_policy_unknown),
                                           flag(atom, lldpctl_k_med_policy_tagged),
                                           number_or_zero<uint16_t>(atom, lldpctl_k_med_policy_vid),
                                           number_or_zero<uint8_t>(atom, lldpctl_k_med_policy_priority),
                                           number_or_zero<uint8_t>(atom, lldpctl_k_med_policy_dscp)}));
    });
}

std::optional<CustomTlv> read_coordinates(lldpctl_atom_t *atom) {
    const std::string latitude = text(atom, lldpctl_k_med_location_latitude).value_or(""),
                      longitude = text(atom, lldpctl_k_med_location_longitude).value_or(""),
                      altitude = text(atom, lldpctl_k_med_location_altitude).value_or("");
    return coordinate_location({latitude, longitude, altitude,
                                number_or_zero<uint8_t>(atom, lldpctl_k_med_location_altitude_unit),
                                number_or_zero<uint8_t>(atom, lldpctl_k_med_location_geoid)});
}

// The library takes the length that the neighbor announced for a signed number. It does not notice that one
// above 127 leads beyond the location, and reads what is there. Only its iterator knows the length.
bool is_within_location(lldpctl_atom_t *elements) {
    struct Iterator { // of liblldpctl 1.0
        const uint8_t *element;
        size_t left; // octets, without the first three
    };
    constexpr size_t longest = INT8_MAX - 3;
    const auto *first = reinterpret_cast<const Iterator *>(lldpctl_atom_iter(elements));
    return first == nullptr || first->left <= longest;
}

std::optional<CustomTlv> read_civic_address(lldpctl_atom_t *atom) {
    std::string elements;
    const Atom list(lldpctl_atom_get(atom, lldpctl_k_med_location_ca_elements));
    if (list == nullptr || !is_within_location(list.get()))
        return std::nullopt;
    for_each(list.get(), [&](lldpctl_atom_t *element) {
        const std::string value = text(element, lldpctl_k_med_civicaddress_value).value_or("");
        elements += static_cast<char>(number_or_zero<uint8_t>(element, lldpctl_k_med_civicaddress_type));
        elements += static_cast<char>(value.size());
        elements += value;
    });
    return civic_location(text(atom, lldpctl_k_med_location_country).value_or(""), elements);
}

std::optional<CustomTlv> read_location(lldpctl_atom_t *atom) {
    switch (number_or_zero<int>(atom, lldpctl_k_med_location_format)) {
    case LLDP_MED_LOCFORMAT_COORD:
        return read_coordinates(atom);
    case LLDP_MED_LOCFORMAT_CIVIC:
        return read_civic_address(atom);
    case LLDP_MED_LOCFORMAT_ELIN:
        return emergency_number(text(atom, lldpctl_k_med_location_elin).value_or(""));
    default: // not announced
        return std::nullopt;
    }
}

// lldpd's numbers for kinds of power and their sources are not those of the TLV.
void add_extended_power(Tlvs &tlvs, lldpctl_atom_t *port) {
    const Atom atom(lldpctl_atom_get(port, lldpctl_k_port_med_power));
    const int type = atom != nullptr ? number_or_zero<int>(atom.get(), lldpctl_k_med_power_type) : 0;
    if (type == 0)
        return;
    ExtendedPower made;
    made.type = static_cast<uint8_t>(type - LLDP_MED_POW_TYPE_PSE);
    switch (number_or_zero<int>(atom.get(), lldpctl_k_med_power_source)) {
    case LLDP_MED_POW_SOURCE_PRIMARY:
    case LLDP_MED_POW_SOURCE_PSE:
        made.source = 1;
        break;
    case LLDP_MED_POW_SOURCE_BACKUP:
    case LLDP_MED_POW_SOURCE_LOCAL:
        made.source = 2;
        break;
    case LLDP_MED_POW_SOURCE_RESERVED:
    case LLDP_MED_POW_SOURCE_BOTH:
        made.source = 3;
        break;
    default:
        break;
    }
    made.priority = number_or_zero<uint8_t>(atom.get(), lldpctl_k_med_power_priority);
    made.value = power(atom.get(), lldpctl_k_med_power_val);
    tlvs.push_back(extended_power(made));
}

void add_inventory(Tlvs &tlvs, lldpctl_atom_t *chassis) {
    constexpr uint8_t first_subtype = 5;
    constexpr lldpctl_key_t keys[] = {
        lldpctl_k_chassis_med_inventory_hw,    lldpctl_k_chassis_med_inventory_fw,
        lldpctl_k_chassis_med_inventory_sw,    lldpctl_k_chassis_med_inventory_sn,
        lldpctl_k_chassis_med_inventory_manuf, lldpctl_k_chassis_med_inventory_model,
        lldpctl_k_chassis_med_inventory_asset};
    uint8_t subtype = first_subtype;
    for (const lldpctl_key_t key : keys) {
        if (const auto value = text(chassis, key))
            tlvs.push_back(inventory(subtype, *value));
        subtype++;
    }
}

void add_med(Tlvs &tlvs, lldpctl_atom_t *port, lldpctl_atom_t *chassis) {
    const auto capabilities = number_or_zero<uint16_t>(chassis, lldpctl_k_chassis_med_cap);
    const auto device_class = number_or_zero<uint8_t>(chassis, lldpctl_k_chassis_med_type);
    if (capabilities != 0 || device_class != 0)
        tlvs.push_back(med_capabilities(capabilities, device_class));
    add_policies(tlvs, port);
    const Atom locations(lldpctl_atom_get(port, lldpctl_k_port_med_locations));
    for_each(locations.get(), [&](lldpctl_atom_t *atom) {
        if (auto location = read_location(atom))
            tlvs.push_back(std::move(*location));
    });
    add_extended_power(tlvs, port);
    add_inventory(tlvs, chassis);
}

void add_uninterpreted(Tlvs &tlvs, lldpctl_atom_t *port) {
    const Atom list(lldpctl_atom_get(port, lldpctl_k_custom_tlvs));
    for_each(list.get(), [&](lldpctl_atom_t *atom) {
        CustomTlv tlv;
        const std::string oui = octets(atom, lldpctl_k_custom_tlv_oui);
        if (oui.size() != tlv.oui.size())
            return;
        std::memcpy(tlv.oui.data(), oui.data(), oui.size());
        tlv.subtype = number_or_zero<uint8_t>(atom, lldpctl_k_custom_tlv_oui_subtype);
        tlv.octets = octets(atom, lldpctl_k_custom_tlv_oui_info_string);
        tlvs.push_back(std::move(tlv));
    });
}

} // namespace

std::vector<CustomTlv> read_tlvs(lldpctl_atom_t *remote_port, lldpctl_atom_t *chassis) {
    Tlvs tlvs;
    add_vlans(tlvs, remote_port);
    add_8023(tlvs, remote_port);
    if (chassis != nullptr)
        add_med(tlvs, remote_port, chassis);
    add_uninterpreted(tlvs, remote_port);
    return tlvs;
}

} // namespace yfw::sources::lldpd
