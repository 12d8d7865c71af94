// The generated node callbacks of OpenConfig LLDP: one row per node. A read of a leaf adds the native path
// that holds its data; an edit of one adds nothing. A strong definition of the same name replaces a row.
#include "frame.h"
#include "namespaces.h"

namespace oclldp {
namespace {

// A value in the request is passed on as a filter.
terrno reads(frame &f, const node *in, node *out, const char *ns, const char *path) {
    return is_read(f.ctx) ? add(f, out, path, ns, in->value) : YMAP_OK;
}

// Adds both paths, whatever the first add returns.
terrno reads_both(frame &f, const node *in, node *out, const char *ns, const char *first, const char *second) {
    reads(f, in, out, ns, first);
    return reads(f, in, out, ns, second);
}

terrno list_entry(frame &f, const node *in, node *out, const char *ns, const char *path) {
    const node *source = is_delete(in) ? in : nullptr;
    return add(f, out, path, ns, nullptr, {.source = source, .list_entry = 1});
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

// Nodes with nothing to map.
YMAP_DEFINE_CONTAINER(ymap_oq_oclldp_openconfiglldp_duck_map_container, invalid_arguments, YMAP_OK)
YMAP_DEFINE_DUCK(ymap_oq_oclldp_openconfiglldp_duck_map_list)
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_duck_map_leaf, invalid_arguments, YMAP_STS_NO_MAPPING)

YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_config, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_state, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_state_counters, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_interface_config, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_interface_state, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvlb_lldp_state_counters, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_interface_neighbors, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_neighbor_config, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_neighbor_state, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_neighbor_capabilities, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_tlv_config, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_tlv_state, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_capability_config, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_capability_state, ymap_oq_oclldp_openconfiglldp_duck_map_container)
YMAP_ALIAS(ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_capabilities_capability, ymap_oq_oclldp_openconfiglldp_duck_map_list)
YMAP_ALIAS(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_type, ymap_oq_oclldp_openconfiglldp_duck_map_leaf)

// Leaves read from one native leaf.
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_enabled, invalid_arguments, reads(f, in, out, cfg_ns, "/lldp/enable"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_hellotimer, invalid_arguments, reads(f, in, out, cfg_ns, "/lldp/timer"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_systemname, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/global-lldp/lldp-info/system-name"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_systemdescription, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/global-lldp/lldp-info/system-description"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_chassisid, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/global-lldp/lldp-info/chassis-id"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_chassisidtype, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/global-lldp/lldp-info/chassis-id-sub-type"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_framein, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/received-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_frameout, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/transmitted-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_frameerrorin, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/bad-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_framediscard, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/discarded-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_tlvdiscard, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/discarded-tl-vs"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_tlvunknown, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/unrecognized-tl-vs"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_entriesagedout, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/aged-out-entries"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_lastclear, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/last-clear"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_tlvaccepted, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/statistics/accepted-tl-vs"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_framein, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/received-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_frameout, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/transmitted-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_frameerrorin, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/bad-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_framediscard, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/discarded-packets"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_tlvdiscard, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/discarded-tl-vs"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_tlvunknown, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/unrecognized-tl-vs"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_lastclear, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/last-clear"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_frameerrorout, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/interfaces/interface/interface-stats/transmit-failures"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_systemname, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/system-name"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_systemdescription, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/system-description"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_chassisid, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/chassis-id"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_chassisidtype, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/chassis-id-sub-type"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_id, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/device-id"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_ttl, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/hold-time"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_portid, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/port-id-detail"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_portidtype, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/port-id-sub-type"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_portdescription, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/port-description"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_managementaddresstype, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/network-addresses/lldp-addr-entry/address/address-type"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_age, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/age"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_lastupdate, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/last-update"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_tlv_oui, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry/oui"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_oui, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry/oui"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_tlv_ouisubtype, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry/tlv-subtype"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_ouisubtype, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry/tlv-subtype"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_value, invalid_arguments, reads(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry/tlv-value"))

// A leaf with two native sources.
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_managementaddress, invalid_arguments, reads_both(f, in, out, oper_ns,
    "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/network-addresses/lldp-addr-entry/address/ipv4-address",
    "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/network-addresses/lldp-addr-entry/address/ipv6-address"))

// Custom TLVs.
YMAP_DEFINE_WEAK_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_neighbor_customtlvs, invalid_arguments, whole_container(f, count, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list"))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_customtlvs_tlv, invalid_arguments, list_entry(f, in, out, oper_ns, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry"))

// Leaves that hand-written callbacks map.
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_suppresstlvadvertisement, invalid_arguments, ymap_oc_lldp_suppresstlvadv_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement, invalid_arguments, ymap_oc_lldp_suppresstlvadv_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_config_enabled, invalid_arguments, ymap_oc_interface_enabled_man_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_tlv_type, invalid_arguments, ymap_qd_custom_tlv_typekey_man_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_capability_name, invalid_arguments, ymap_qd_lldp_neighbor_capabilities_man_cb(f.ctx, in, out))

// clang-format on
