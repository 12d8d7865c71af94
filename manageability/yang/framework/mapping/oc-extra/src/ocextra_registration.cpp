// The registration of the mapping trees.
#include "mapping/oc-extra/include/ocextra_plugin.h"
#include "mapping/oc-lldp/src/namespaces.h"

namespace {

void fill(yfw_map_registration &record, const char *function, const char *name, const char *native_ns,
          yfw_map_callback native_to_oc) {
    const auto set = [&](char(&text)[YFW_REG_TEXT_SIZE], const char *value) {
        yfw_strncpy_s(function, text, sizeof text, value, sizeof text - 1);
    };
    set(record.tree_name, name);
    set(record.native_ns, native_ns);
    set(record.oc_ns, oclldp::oc_ns);
    set(record.native_top, "lldp");
    set(record.oc_top, "lldp");
    record.oc_to_native = ymap_oq_ocextra_openconfiglldp_lvla_lldp;
    record.native_to_oc = native_to_oc;
    record.flag_a = 0;
    record.flag_b = 0;
    record.disable_capability = nullptr;
}

} // namespace

void yfw_map_reg_ocextra_cfg(yfw_map_registration *record) {
    fill(*record, "yfw_map_reg_ocextra_cfg", "OC lldp extra config tree", oclldp::cfg_ns,
         ymap_qo_ocextra_tarvoqdethernetlldpcfg_lvla_lldp);
}

void yfw_map_reg_ocextra_oper(yfw_map_registration *record) {
    fill(*record, "yfw_map_reg_ocextra_oper", "OC lldp extra oper tree", oclldp::oper_ns,
         ymap_qo_ocextra_tarvoqdethernetlldpoper_lvla_lldp);
}
