// The generated node callbacks of native LLDP configuration: one row per node. A strong definition of the
// same name replaces a row.
#include "oc_copy.h"

namespace oclldp {
namespace {

// The state leaf is also written for a read of configuration and state; the last add gives the status.
terrno copy_config_and_state(frame &f, const node *in, node *out, const char *config, const char *state) {
    const terrno status = copy_config(f, in, out, config);
    return is_get(f.ctx) ? copy(f, in, out, state) : status;
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

// Nodes with nothing to map.
YMAP_DEFINE_CONTAINER_DUCK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_DEFINE_DUCK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_list)
YMAP_DEFINE_DUCK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)

YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_systemname, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_portdescription, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_systemdescription, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_systemcapabilities, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_tlvselect_managementaddress, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvlb_lldp, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_transmit, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS_CONTAINER(ymap_qo_oclldp_tarvoqdethernetlldpcfg_cont_lvla_lldp_receive, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_container)
YMAP_ALIAS(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_holdtime, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)
YMAP_ALIAS(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_reinit, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)
YMAP_ALIAS(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_extendedshowwidth, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)
YMAP_ALIAS(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_enablesubintf, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)
YMAP_ALIAS(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_lldpintfenter, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)
YMAP_ALIAS(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_tlvselect_tlvselectenter, ymap_qo_oclldp_tarvoqdethernetlldpcfg_duck_map_leaf)

// Leaves copied to OpenConfig.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_enable, invalid_arguments, copy_config_and_state(f, in, out, "/lldp/config/enabled", "/lldp/state/enabled"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_timer, invalid_arguments, copy_config_and_state(f, in, out, "/lldp/config/hello-timer", "/lldp/state/hello-timer"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemname, invalid_arguments, copy_config(f, in, out, "/lldp/config/system-name"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemdescription, invalid_arguments, copy_config(f, in, out, "/lldp/config/system-description"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_chassisid, invalid_arguments, copy_config(f, in, out, "/lldp/config/chassis-id"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_chassisidtype, invalid_arguments, copy_config(f, in, out, "/lldp/config/chassis-id-type"))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvlb_lldp_enable, invalid_arguments, copy_config(f, in, out, "/lldp/interfaces/interface/config/enabled"))

// Leaves that hand-written callbacks map.
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemname_disable, invalid_arguments, ymap_qd_lldp_tlvselect_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_portdescription_disable, invalid_arguments, ymap_qd_lldp_tlvselect_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemdescription_disable, invalid_arguments, ymap_qd_lldp_tlvselect_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemcapabilities_disable, invalid_arguments, ymap_qd_lldp_tlvselect_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_managementaddress_disable, invalid_arguments, ymap_qd_lldp_tlvselect_manual_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_transmit_disable, invalid_arguments, ymap_qd_lldp_tx_man_cb(f.ctx, in, out))
YMAP_DEFINE_WEAK(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_receive_disable, invalid_arguments, ymap_qd_lldp_rx_man_cb(f.ctx, in, out))

// clang-format on
