// The walkers of native LLDP operational responses: one level per container or list entry, one row per
// walker.
#include "namespaces.h"
#include "qo_walker.h"

namespace oclldp {
namespace {

// clang-format off

constexpr qo_child lldp_info_children[] = {
    leaf("chassis-id", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_chassisid),
    leaf("chassis-id-sub-type", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_chassisidsubtype),
    leaf("system-name", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_systemname),
    leaf("system-description", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_systemdescription),
};
constexpr qo_level lldp_info{.ns = oper_ns, .children = lldp_info_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_globallldp_lldpinfo_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child global_lldp_children[] = {
    level("lldp-info", lldp_info),
};
constexpr qo_level global_lldp{.ns = oper_ns, .children = global_lldp_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_globallldp_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child address_children[] = {
    leaf("address-type", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_addresstype),
    leaf("ipv4-address", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_ipv4address),
    leaf("ipv6-address", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_ipv6address),
};
constexpr qo_level address{.ns = oper_ns, .children = address_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpaddrentry_address_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child address_entry_children[] = {
    level("address", address),
};
constexpr qo_level address_entry{.ns = oper_ns, .children = address_entry_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_networkaddresses_lldpaddrentry_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdethernetlldpoper_duck_map_list, .list_path = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/network-addresses/lldp-addr-entry", .get_only = true};

constexpr qo_child network_addresses_children[] = {
    level("lldp-addr-entry", address_entry),
};
constexpr qo_level network_addresses{.ns = oper_ns, .children = network_addresses_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_detail_networkaddresses_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child neighbor_detail_children[] = {
    level("network-addresses", network_addresses),
    leaf("port-description", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_portdescription),
    leaf("system-name", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_systemname),
    leaf("system-description", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_systemdescription),
    leaf("enabled-capabilities", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_enabledcapabilities),
    leaf("last-update", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_lastupdate, error_node),
    leaf("age", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_age, error_node),
};
constexpr qo_level neighbor_detail{.ns = oper_ns, .children = neighbor_detail_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpneighbor_detail_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child custom_tlv_children[] = {
    leaf("oui", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldporgdeftlventry_oui),
    leaf("tlv-subtype", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldporgdeftlventry_tlvsubtype),
    leaf("tlv-value", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldporgdeftlventry_tlvvalue),
};
constexpr qo_level custom_tlv{.ns = oper_ns, .children = custom_tlv_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_orgdeftlvlist_lldporgdeftlventry_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_orgdeftlvlist_lldporgdeftlventry, .list_path = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/org-def-tlv-list/lldp-org-def-tlv-entry", .get_only = true};

constexpr qo_child custom_tlv_list_children[] = {
    level("lldp-org-def-tlv-entry", custom_tlv),
};
constexpr qo_level custom_tlv_list{.ns = oper_ns, .children = custom_tlv_list_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_mib_orgdeftlvlist_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp_mib_orgdeftlvlist, .get_only = true};

constexpr qo_child mib_children[] = {
    leaf("combined-capabilities", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_combinedcapabilities, error_node),
    level("org-def-tlv-list", custom_tlv_list),
    leaf("chassis-id-sub-type", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_chassisidsubtype),
    leaf("port-id-sub-type", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_portidsubtype),
};
constexpr qo_level mib{.ns = oper_ns, .children = mib_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpneighbor_mib_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child neighbor_children[] = {
    walker("detail", ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpneighbor_detail),
    level("mib", mib),
    leaf("device-id", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_deviceid),
    leaf("chassis-id", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_chassisid),
    leaf("port-id-detail", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_portiddetail),
    leaf("hold-time", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_holdtime, error_node),
};
constexpr qo_level neighbor{.ns = oper_ns, .children = neighbor_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_detail_lldpneighbor_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_detail_lldpneighbor, .list_path = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor", .get_only = true};

constexpr qo_child neighbors_of_device_children[] = {
    leaf("interface-name", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_interfacename),
    leaf("device-id", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_deviceid),
    walker("lldp-neighbor", ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_detail_lldpneighbor, list_entry),
};
constexpr qo_level neighbors_of_device{.ns = oper_ns, .children = neighbors_of_device_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_details_detail_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_details_detail, .list_path = "/lldp/nodes/node/neighbors/details/detail", .get_only = true};

constexpr qo_child details_children[] = {
    level("detail", neighbors_of_device),
};
constexpr qo_level details{.ns = oper_ns, .children = details_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_neighbors_details_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child neighbors_children[] = {
    level("details", details),
};
constexpr qo_level neighbors{.ns = oper_ns, .children = neighbors_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_node_neighbors_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child interface_stats_children[] = {
    leaf("transmitted-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_transmittedpackets, error_node),
    leaf("discarded-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_discardedpackets, error_node),
    leaf("bad-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_badpackets, error_node),
    leaf("received-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_receivedpackets, error_node),
    leaf("discarded-tl-vs", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_discardedtlvs, error_node),
    leaf("unrecognized-tl-vs", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_unrecognizedtlvs, error_node),
    leaf("transmit-failures", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_transmitfailures, error_node),
    leaf("last-clear", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_lastclear, error_node),
};
constexpr qo_level interface_stats{.ns = oper_ns, .children = interface_stats_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_interface_interfacestats_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp_interface_interfacestats, .get_only = true};

constexpr qo_child interface_children[] = {
    leaf("interface-name", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_interfacename),
    level("interface-stats", interface_stats),
    leaf("interface-name-qd", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_interfacenameqd),
    leaf("tx-enabled", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_txenabled),
    leaf("rx-enabled", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_rxenabled),
};
constexpr qo_level interface{.ns = oper_ns, .children = interface_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_interfaces_interface_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_interfaces_interface, .list_path = "/lldp/nodes/node/interfaces/interface", .get_only = true};

constexpr qo_child interfaces_children[] = {
    walker("interface", ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_interfaces_interface, list_entry),
};
constexpr qo_level interfaces{.ns = oper_ns, .children = interfaces_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_node_interfaces_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp_node_interfaces, .get_only = true};

constexpr qo_child statistics_children[] = {
    leaf("transmitted-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_transmittedpackets),
    leaf("aged-out-entries", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_agedoutentries),
    leaf("discarded-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_discardedpackets),
    leaf("bad-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_badpackets),
    leaf("received-packets", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_receivedpackets),
    leaf("discarded-tl-vs", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_discardedtlvs),
    leaf("unrecognized-tl-vs", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_unrecognizedtlvs),
    leaf("accepted-tl-vs", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_acceptedtlvs, error_node),
    leaf("last-clear", ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_lastclear, error_node),
};
constexpr qo_level statistics{.ns = oper_ns, .children = statistics_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_node_statistics_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child entry_of_node_children[] = {
    level("neighbors", neighbors),
    level("interfaces", interfaces),
    level("statistics", statistics),
};
constexpr qo_level entry_of_node{.ns = oper_ns, .children = entry_of_node_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_nodes_node_parse_augments,
    .list = ymap_qo_oclldp_tarvoqdethernetlldpoper_duck_map_list, .list_path = "/lldp/nodes/node", .get_only = true};

constexpr qo_child nodes_children[] = {
    walker("node", ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_nodes_node, list_entry),
};
constexpr qo_level nodes{.ns = oper_ns, .children = nodes_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_nodes_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

constexpr qo_child root_children[] = {
    level("global-lldp", global_lldp),
    level("nodes", nodes),
};
constexpr qo_level root{.ns = oper_ns, .children = root_children, .augments = ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_parse_augments, .container = ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, .get_only = true};

// clang-format on

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp, invalid_arguments, walk_level(f, root, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_nodes_node, invalid_arguments, walk_level(f, entry_of_node, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_detail_lldpneighbor, invalid_arguments, walk_level(f, neighbor, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpneighbor_detail, invalid_arguments, walk_level(f, neighbor_detail, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_interfaces_interface, invalid_arguments, walk_level(f, interface, in, out))

// Hooks for nodes of other modules: accepted and ignored.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_globallldp_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_globallldp_lldpinfo_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_nodes_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_nodes_node_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_node_neighbors_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_neighbors_details_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_details_detail_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_detail_lldpneighbor_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpneighbor_detail_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_detail_networkaddresses_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_networkaddresses_lldpaddrentry_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpaddrentry_address_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_lldpneighbor_mib_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_mib_orgdeftlvlist_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_orgdeftlvlist_lldporgdeftlventry_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_node_interfaces_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_interfaces_interface_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_interface_interfacestats_parse_augments, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp_node_statistics_parse_augments, invalid_arguments, YMAP_OK)

// clang-format on
