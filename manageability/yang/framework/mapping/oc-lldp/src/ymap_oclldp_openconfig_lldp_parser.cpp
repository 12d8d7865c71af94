// The walkers of OpenConfig LLDP requests: one table per container or list, one row per walker.
#include "oq_walker.h"

namespace oclldp {
namespace {

constexpr oq_child root_children[] = {
    {"config", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config},
    {"state", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state, get_only},
    {"interfaces", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces},
};

// A read of the whole tree maps the interfaces before the global state.
constexpr oq_child root_whole[] = {
    {"config", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config},
    {"interfaces", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces},
    {"state", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state, get_only},
};

constexpr oq_child config_children[] = {
    {"enabled", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_enabled},
    {"hello-timer", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_hellotimer},
    {"suppress-tlv-advertisement", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_suppresstlvadvertisement},
    {"system-name", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_systemname},
    {"system-description", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_systemdescription},
    {"chassis-id", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_chassisid},
    {"chassis-id-type", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_chassisidtype},
};

constexpr oq_child state_children[] = {
    {"enabled", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_enabled},
    {"hello-timer", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_hellotimer},
    {"suppress-tlv-advertisement", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement},
    {"system-name", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_systemname},
    {"system-description", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_systemdescription},
    {"chassis-id", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_chassisid},
    {"chassis-id-type", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_chassisidtype},
    {"counters", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_counters},
};

constexpr oq_child state_counters_children[] = {
    {"frame-in", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_framein},
    {"frame-out", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_frameout},
    {"frame-error-in", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_frameerrorin},
    {"frame-discard", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_framediscard},
    {"tlv-discard", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_tlvdiscard},
    {"tlv-unknown", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_tlvunknown},
    {"last-clear", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_lastclear},
    {"tlv-accepted", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_tlvaccepted},
    {"entries-aged-out", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_entriesagedout},
};

constexpr oq_child interfaces_children[] = {
    {"interface", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_interface},
};

constexpr oq_child interface_children[] = {
    {"name", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_name, key},
    {"config", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_config},
    {"state", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_state, get_only},
    {"neighbors", ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_neighbors, get_only},
};

constexpr oq_child interface_config_children[] = {
    {"name", ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_name},
    {"enabled", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_config_enabled},
};

constexpr oq_child interface_state_children[] = {
    {"name", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_name},
    {"enabled", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_enabled},
    {"counters", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_counters},
};

constexpr oq_child interface_counters_children[] = {
    {"frame-in", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_framein},
    {"frame-out", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_frameout},
    {"frame-error-in", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_frameerrorin},
    {"frame-discard", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_framediscard},
    {"tlv-discard", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_tlvdiscard},
    {"tlv-unknown", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_tlvunknown},
    {"last-clear", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_lastclear},
    {"frame-error-out", ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_frameerrorout},
};

constexpr oq_child neighbors_children[] = {
    {"neighbor", ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbors_neighbor},
};

constexpr oq_child neighbor_children[] = {
    {"id", ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_id, get_only | key},
    {"config", ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_config, get_only},
    {"state", ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_state, get_only},
    {"custom-tlvs", ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_customtlvs, get_only},
    {"capabilities", ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_capabilities, get_only},
};

constexpr oq_child neighbor_state_children[] = {
    {"system-name", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_systemname},
    {"system-description", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_systemdescription},
    {"chassis-id", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_chassisid},
    {"chassis-id-type", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_chassisidtype},
    {"id", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_id},
    {"age", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_age},
    {"last-update", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_lastupdate},
    {"ttl", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_ttl},
    {"port-id", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_portid},
    {"port-id-type", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_portidtype},
    {"port-description", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_portdescription},
    {"management-address", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_managementaddress},
    {"management-address-type", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_managementaddresstype},
};

constexpr oq_child custom_tlvs_children[] = {
    {"tlv", ymap_oq_oclldp_openconfiglldp_lvla_lldp_customtlvs_tlv},
};

constexpr oq_child tlv_children[] = {
    {"type", ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_type, key},
    {"oui", ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_oui, key},
    {"oui-subtype", ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_ouisubtype, key},
    {"config", ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_config},
    {"state", ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_state},
};

constexpr oq_child tlv_state_children[] = {
    {"type", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_type},
    {"oui", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_oui},
    {"oui-subtype", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_ouisubtype},
    {"value", ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_value},
};

constexpr oq_child capabilities_children[] = {
    {"capability", ymap_oq_oclldp_openconfiglldp_lvla_lldp_capabilities_capability},
};

constexpr oq_child capability_children[] = {
    {"name", ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_name, key},
    {"config", ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_config},
    {"state", ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_state},
};

constexpr oq_child capability_state_children[] = {
    {"name", ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_name},
    {"enabled", ymap_oq_oclldp_openconfiglldp_lvlc_lldp_state_enabled},
};

constexpr oq_container root{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, root_children,
                            ymap_oq_oclldp_openconfiglldp_lvla_lldp_parse_augments, root_whole};
constexpr oq_container config{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, config_children,
                              ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_parse_augments};
constexpr oq_container state{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, state_children,
                             ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_parse_augments};
constexpr oq_container state_counters{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, state_counters_children,
                                      ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_counters_parse_augments};
constexpr oq_container interfaces{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_interfaces, interfaces_children,
                                  ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_parse_augments};
constexpr oq_list interface {
    ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_interfaces_interface, "/lldp/interfaces/interface",
        interface_children, ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_interface_parse_augments, true
};
constexpr oq_container interface_config{
    ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, interface_config_children,
    ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_config_parse_augments};
constexpr oq_container interface_state{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, interface_state_children,
                                       ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_state_parse_augments};
constexpr oq_container interface_counters{
    ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, interface_counters_children,
    ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_counters_parse_augments};
constexpr oq_container neighbors{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, neighbors_children,
                                 ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_neighbors_parse_augments};
constexpr oq_list neighbor{ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_neighbors_neighbor,
                           "/lldp/interfaces/interface/neighbors/neighbor", neighbor_children,
                           ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbors_neighbor_parse_augments};
constexpr oq_container neighbor_config{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp,
                                       {},
                                       ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_config_parse_augments};
constexpr oq_container neighbor_state{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, neighbor_state_children,
                                      ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_state_parse_augments};
constexpr oq_container custom_tlvs{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_neighbor_customtlvs,
                                   custom_tlvs_children,
                                   ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_customtlvs_parse_augments};
constexpr oq_list tlv{ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_customtlvs_tlv,
                      "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv", tlv_children,
                      ymap_oq_oclldp_openconfiglldp_lvla_lldp_customtlvs_tlv_parse_augments};
constexpr oq_container tlv_config{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp,
                                  {},
                                  ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_config_parse_augments};
constexpr oq_container tlv_state{ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, tlv_state_children,
                                 ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_state_parse_augments};
constexpr oq_container capabilities{
    ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, capabilities_children,
    ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_capabilities_parse_augments};
constexpr oq_list capability{ymap_oq_oclldp_openconfiglldp_duck_map_list,
                             "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability",
                             capability_children,
                             ymap_oq_oclldp_openconfiglldp_lvla_lldp_capabilities_capability_parse_augments};
constexpr oq_container capability_config{
    ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp,
    {},
    ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_config_parse_augments};
constexpr oq_container capability_state{
    ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp, capability_state_children,
    ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_state_parse_augments};

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

// Containers and lists.
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp, invalid_arguments, walk_container(f, root, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config, invalid_arguments, walk_container(f, config, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state, invalid_arguments, walk_container(f, state, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_counters, invalid_arguments, walk_container(f, state_counters, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces, invalid_arguments, walk_container(f, interfaces, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_interface, invalid_arguments, walk_list(f, interface, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_config, invalid_arguments, walk_container(f, interface_config, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_state, invalid_arguments, walk_container(f, interface_state, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_counters, invalid_arguments, walk_container(f, interface_counters, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_neighbors, invalid_arguments, walk_container(f, neighbors, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbors_neighbor, invalid_arguments, walk_list(f, neighbor, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_config, invalid_arguments, walk_container(f, neighbor_config, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_state, invalid_arguments, walk_container(f, neighbor_state, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_customtlvs, invalid_arguments, walk_container(f, custom_tlvs, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_customtlvs_tlv, invalid_arguments, walk_list(f, tlv, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_config, invalid_arguments, walk_container(f, tlv_config, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_state, invalid_arguments, walk_container(f, tlv_state, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_capabilities, invalid_arguments, walk_container(f, capabilities, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capabilities_capability, invalid_arguments, walk_list(f, capability, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_config, invalid_arguments, walk_container(f, capability_config, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_state, invalid_arguments, walk_container(f, capability_state, in, out))

// Hooks for nodes of other modules: none of them may be created.
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_counters_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interfaces_interface_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_config_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_state_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_counters_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_neighbors_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbors_neighbor_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_config_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_state_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_customtlvs_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_customtlvs_tlv_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_config_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_state_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_capabilities_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capabilities_capability_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_config_parse_augments, invalid_arguments, refuse_augment(f, in))
YMAP_DEFINE_WEAK(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_state_parse_augments, invalid_arguments, refuse_augment(f, in))

// Leaves.
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_enabled, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_enabled, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_hellotimer, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_hellotimer, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_suppresstlvadvertisement, invalid_arguments, walk_leaf_list(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_suppresstlvadvertisement, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_systemname, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_systemname, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_systemdescription, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_systemdescription, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_chassisid, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_chassisid, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_chassisidtype, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_chassisidtype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_enabled, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_enabled, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_hellotimer, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_hellotimer, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement, invalid_arguments, walk_leaf_list(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_systemname, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_systemname, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_systemdescription, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_systemdescription, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_chassisid, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_chassisid, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_chassisidtype, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_chassisidtype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_framein, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_framein, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_frameout, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_frameout, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_frameerrorin, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_frameerrorin, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_framediscard, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_framediscard, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_tlvdiscard, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_tlvdiscard, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_tlvunknown, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_tlvunknown, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_lastclear, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_lastclear, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_tlvaccepted, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_tlvaccepted, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_entriesagedout, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_entriesagedout, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_interface_name, invalid_arguments, walk_key_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_interface_name, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_config_name, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_name, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_config_enabled, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_config_enabled, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_name, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_name, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_enabled, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_enabled, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_framein, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_framein, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_frameout, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_frameout, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_frameerrorin, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_frameerrorin, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_framediscard, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_framediscard, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_tlvdiscard, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_tlvdiscard, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_tlvunknown, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_tlvunknown, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_counters_lastclear, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_counters_lastclear, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_counters_frameerrorout, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_counters_frameerrorout, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_neighbor_id, invalid_arguments, walk_key_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_neighbor_id, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_systemname, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_systemname, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_systemdescription, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_systemdescription, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_chassisid, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_chassisid, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_chassisidtype, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_chassisidtype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_id, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_id, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_age, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_age, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_lastupdate, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_lastupdate, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_ttl, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_ttl, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_portid, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_portid, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_portidtype, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_portidtype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_portdescription, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_portdescription, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_managementaddress, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_managementaddress, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_managementaddresstype, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_managementaddresstype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_type, invalid_arguments, walk_key_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_tlv_type, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_oui, invalid_arguments, walk_key_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_tlv_oui, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_tlv_ouisubtype, invalid_arguments, walk_key_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_tlv_ouisubtype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_type, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_duck_map_leaf, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_oui, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_oui, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_ouisubtype, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_ouisubtype, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_state_value, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_value, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvla_lldp_capability_name, invalid_arguments, walk_key_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_capability_name, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlb_lldp_state_name, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_name, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_lvlc_lldp_state_enabled, invalid_arguments, walk_leaf(f, ymap_oq_oclldp_openconfiglldp_leaf_lvlc_lldp_state_enabled, in, out))

// clang-format on
