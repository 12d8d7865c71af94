// The module state and the registration of the three mapping trees.
#include "namespaces.h"
#include "oclldp_plugin.h"

uint64_t oc_lldp_sysdb_conn = 0;
char oclldp_gl_int_name[OCLLDP_INTERFACE_NAME_SIZE] = {};
int32_t oclldp_get_with_int_key = 0;
int32_t is_get_with_key = 0;
char *gl_neigh_dev_id = nullptr;
int32_t delete_interface = 0;
int32_t oclldp_is_neigh_list_mapped = 0;
uint32_t gl_stats[OCLLDP_COUNTERS] = {};
uint32_t stat_count[OCLLDP_COUNTERS] = {};
int32_t gl_subtree_count = 0;
int32_t num_lldp_caps = OCLLDP_CAPABILITIES;
const char *lldp_cap_codes[OCLLDP_CAPABILITIES] = {"O", "P", "B", "W", "R", "T", "C", "S"};
char oc_lldp_str_buf[OCLLDP_STR_SLOTS * OCLLDP_STR_SLOT_SIZE] = {};
int32_t oc_lldp_str_buf_index = 0;

namespace {

struct mapping_tree {
    const char *name;
    const char *native_ns;
    const char *native_top;
    yfw_map_callback native_root;
    uint32_t flag_b;
    yfw_map_disable_capability_callback disable_capability;
};

// The OpenConfig side is the same for all trees.
void fill(yfw_map_registration &record, const char *caller, const mapping_tree &tree) {
    constexpr size_t size = YFW_REG_TEXT_SIZE;
    yfw_strncpy_s(caller, record.native_ns, size, tree.native_ns, size - 1);
    yfw_strncpy_s(caller, record.oc_ns, size, oclldp::oc_ns, size - 1);
    yfw_strncpy_s(caller, record.tree_name, size, tree.name, size - 1);
    yfw_strncpy_s(caller, record.native_top, size, tree.native_top, size - 1);
    yfw_strncpy_s(caller, record.oc_top, size, "lldp", size - 1);
    record.oc_to_native = ymap_oq_oclldp_openconfiglldp_lvla_lldp;
    record.native_to_oc = tree.native_root;
    record.flag_a = 0;
    record.flag_b = tree.flag_b;
    record.disable_capability = tree.disable_capability;
}

} // namespace

void yfw_map_reg_oclldp_cfg(yfw_map_registration *record) {
    fill(*record, __func__,
         {"OC lldp config tree", oclldp::cfg_ns, "lldp", ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp, 0,
          nullptr});
}

void yfw_map_reg_oclldp_oper(yfw_map_registration *record) {
    fill(*record, __func__,
         {"OC lldp oper tree", oclldp::oper_ns, "lldp", ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp, 0,
          nullptr});
}

void yfw_map_reg_oclldp_ifmgr(yfw_map_registration *record) {
    fill(*record, __func__,
         {"OC lldp ifmgr tree", oclldp::ifmgr_ns, "interface-configurations",
          ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations, 1, yfw_map_lldp_disable_cabability_cb});
}

uint32_t yfw_map_lldp_disable_cabability_cb(void) {
    return 1;
}
