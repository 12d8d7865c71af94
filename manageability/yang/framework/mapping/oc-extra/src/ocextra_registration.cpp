// The registration of the mapping tree.
#include "mapping/oc-extra/include/ocextra_plugin.h"
#include "mapping/oc-lldp/src/namespaces.h"

void yfw_map_reg_ocextra_cfg(yfw_map_registration *record) {
    const auto set = [](char(&text)[YFW_REG_TEXT_SIZE], const char *value) {
        yfw_strncpy_s("yfw_map_reg_ocextra_cfg", text, sizeof text, value, sizeof text - 1);
    };
    set(record->tree_name, "OC lldp extra config tree");
    set(record->native_ns, oclldp::cfg_ns);
    set(record->oc_ns, oclldp::oc_ns);
    set(record->native_top, "lldp");
    set(record->oc_top, "lldp");
    record->oc_to_native = ymap_oq_ocextra_openconfiglldp_lvla_lldp;
    record->native_to_oc = ymap_qo_ocextra_tarvoqdethernetlldpcfg_lvla_lldp;
    record->flag_a = 0;
    record->flag_b = 0;
    record->disable_capability = nullptr;
}
