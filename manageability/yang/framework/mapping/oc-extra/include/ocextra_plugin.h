/* What the mapping beside OpenConfig LLDP exports. It adds to the state of the device as a whole what the LLDP
 * mapping leaves open: whether LLDP is on when nothing is configured, and every TLV that is suppressed. It maps
 * reads only.
 *
 * Callbacks assert that the context is not NULL, answer NULL nodes with YMAP_ERR_INVALID_ARGS and borrow their
 * nodes for the call. Compiles as C11 and as C++20. */
#ifndef OCEXTRA_PLUGIN_H
#define OCEXTRA_PLUGIN_H

#include "oclldp_callbacks.h"

#ifdef __cplusplus
extern "C" {
#endif

/* Fills the framework's record of the one mapping tree. */
YMAP_EXPORT void yfw_map_reg_ocextra_cfg(struct yfw_map_registration *record);

/* OpenConfig requests: the walkers of the root, of the container /lldp/state and of two leaves below it. Each takes
 * its node, or a node that stands for it because it is selected whole. */
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_enabled);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement);
/* The leaves' callbacks. */
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled);
YMAP_CALLBACK(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement);

/* Native responses: the root of LLDP configuration. */
YMAP_CALLBACK(ymap_qo_ocextra_tarvoqdethernetlldpcfg_lvla_lldp);

#ifdef __cplusplus
}
#endif

#endif
