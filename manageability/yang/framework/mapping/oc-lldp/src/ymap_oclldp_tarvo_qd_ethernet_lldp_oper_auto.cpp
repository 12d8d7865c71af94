// The generated node callbacks of native LLDP operational data: one row per node. A strong definition of the
// same name replaces a row: that of a neighbor's leaf, of a counter, or of anything else that is not a plain
// copy.
#include "neighbor_copy.h"

namespace oclldp {
namespace {

// Finds or creates the interface entry by name; it becomes the list's current entry.
terrno map_interface(frame &f, const node *in, node *out) {
    constexpr char path[] = "/lldp/interfaces/interface";
    const char *name = nullptr;
    yfw_map_get_node_info(f.ctx, "/lldp/nodes/node/interfaces/interface", "interface-name", &name);
    yfw_req_ctx *request = f.ctx->req_ctx;
    if (name == nullptr || request == nullptr)
        return YMAP_ERR_MAP_FAILED;
    node **slot = &request->output_list.current_list_node;
    if (is_delete(in)) {
        const terrno status = add(f, out, path, oc_ns, nullptr, {.source = in, .slot = slot, .list_entry = 1});
        return status != YMAP_OK ? status : yfw_map_copy_trim_path_list_ctx(f.ctx, path);
    }
    const terrno status = yfw_map_search_or_add_list(f.ctx, out, slot, path, name, "name", oc_ns);
    if (status != YMAP_OK)
        return status;
    return oclldp_interface_state_container_populate_man_cb(f.ctx, in, *slot);
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

// Nodes with nothing to map.
YMAP_DEFINE_WEAK_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp, accepted, YMAP_OK)
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_duck_map_list, accepted, YMAP_OK)
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_duck_map_leaf, accepted, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_details_detail, accepted, YMAP_OK)
YMAP_DEFINE_WEAK_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp_interface_interfacestats, invalid_arguments, YMAP_OK)

// The keys used to stitch neighbors, and a name that OpenConfig does not have.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_interfacename, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_deviceid, invalid_arguments, YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_interfacenameqd, invalid_arguments, YMAP_OK)

// Containers and lists.
YMAP_DEFINE_WEAK_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp_node_interfaces, invalid_arguments, whole_container(f, count, out, oc_ns, "/lldp/interfaces"))
YMAP_DEFINE_WEAK_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpoper_cont_lvla_lldp_mib_orgdeftlvlist, invalid_arguments, is_stitched() ? whole_container(f, count, out, oc_ns, "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs") : YMAP_OK)
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_interfaces_interface, invalid_arguments, map_interface(f, in, out))

// Leaves that hand-written callbacks map.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_enabledcapabilities, invalid_arguments, ymap_oc_enabled_capabilities_man_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_txenabled, invalid_arguments, ymap_qd_lldp_tx_operman_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_rxenabled, invalid_arguments, ymap_qd_lldp_tx_operman_cb(f.ctx, in, out)) // the tx callback, on purpose

// Leaves copied to OpenConfig.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_chassisid, invalid_arguments, copy(f, in, out, "/lldp/state/chassis-id"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_chassisidsubtype, invalid_arguments, copy(f, in, out, "/lldp/state/chassis-id-type"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_systemname, invalid_arguments, copy(f, in, out, "/lldp/state/system-name"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_systemdescription, invalid_arguments, copy(f, in, out, "/lldp/state/system-description"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interface_interfacename, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/name"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_addresstype, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/management-address-type"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_ipv4address, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/management-address"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_ipv6address, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/management-address"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_portdescription, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/port-description"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_systemname, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/system-name"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_systemdescription, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/system-description"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_lastupdate, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/last-update"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_age, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/age"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_chassisidsubtype, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/chassis-id-type"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_portidsubtype, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/port-id-type"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_deviceid, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/id"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_chassisid, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/chassis-id"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_portiddetail, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/port-id"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_holdtime, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/ttl"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_receivedpackets, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/frame-in"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_transmittedpackets, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/frame-out"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_badpackets, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/frame-error-in"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_discardedpackets, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/frame-discard"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_discardedtlvs, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/tlv-discard"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_unrecognizedtlvs, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/tlv-unknown"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_transmitfailures, invalid_arguments, copy(f, in, out, "/lldp/interfaces/interface/state/counters/frame-error-out"))

// clang-format on
