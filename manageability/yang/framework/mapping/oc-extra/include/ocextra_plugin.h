/* What the mapping beside OpenConfig LLDP exports. It adds what the LLDP mapping leaves open: whether LLDP is
 * on when nothing is configured, the device's time to live, every TLV that is suppressed, all management
 * addresses of a neighbor, and the capability of a cable device under its published name. It maps reads only.
 *
 * Callbacks assert that the context is not NULL, answer NULL nodes with YMAP_ERR_INVALID_ARGS and borrow their
 * nodes for the call. Compiles as C11 and as C++20. */
#ifndef OCEXTRA_PLUGIN_H
#define OCEXTRA_PLUGIN_H

#include "oclldp_callbacks.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Fill the framework's records of the two mapping trees. */
YMAP_EXPORT void yfw_map_reg_ocextra_cfg(struct yfw_map_registration *record);
YMAP_EXPORT void yfw_map_reg_ocextra_oper(struct yfw_map_registration *record);

/* OpenConfig requests: the walkers of the root, of the containers and lists down to what is answered, and of
 * the leaves. Each takes its node, or a node that stands for it because it is selected whole. */
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_enabled);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_ttl);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_interfaces);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_interfaces_interface);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_interface_neighbors);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbors_neighbor);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbor_mgmtaddresses);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddresses_mgmtaddress);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddress_address);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddress_state);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_address);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_interfacenumber);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbor_capabilities);
/* The callbacks: which native paths hold what is asked for. */
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_ttl);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_list_lvla_lldp_neighbors_neighbor);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_mgmtaddress_address);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_address);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_interfacenumber);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_cont_lvla_lldp_neighbor_capabilities);

/* Native responses: the root of LLDP configuration and a leaf of it; the root of operational data, an
 * announcement of a neighbor, an address in it, and its capabilities. */
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpcfg_lvla_lldp);
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpcfg_leaf_lvla_lldp_holdtime);
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpoper_lvla_lldp);
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpoper_list_lvla_lldp_detail_lldpneighbor);
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpoper_list_lvla_lldp_networkaddresses_lldpaddrentry);
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_combinedcapabilities);

#ifdef __cplusplus
}
#endif

#endif
