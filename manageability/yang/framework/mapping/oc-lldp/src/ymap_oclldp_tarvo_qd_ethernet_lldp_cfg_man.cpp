// The hand-written callbacks of native LLDP configuration.
#include <cstring>

#include "oc_copy.h"

namespace oclldp {
namespace {

// ---- suppressed TLVs ------------------------------------------------------------------------------------

struct tlv_row {
    const char *native;
    const char *identity;
};

constexpr tlv_row tlv_rows[] = {
    {"/lldp/tlv-select/system-name", "SYSTEM_NAME"},
    {"/lldp/tlv-select/port-description", "PORT_DESCRIPTION"},
    {"/lldp/tlv-select/system-description", "SYSTEM_DESCRIPTION"},
    {"/lldp/tlv-select/system-capabilities", "SYSTEM_CAPABILITIES"},
    {"/lldp/tlv-select/management-address", "MANAGEMENT_ADDRESS"},
};
constexpr size_t tlv_count = sizeof tlv_rows / sizeof tlv_rows[0];

terrno write_suppressed(frame &f, node *out, const char *enabled_path, const char *suppressed_path,
                        const char *identity) {
    write(f, out, enabled_path, "true");
    node *added = nullptr;
    const terrno status = add(f, out, suppressed_path, oc_ns, identity, {.slot = &added, .list_entry = 1});
    qualify_identity(added);
    return status;
}

bool no_copy_wanted(yfw_map_ctx ctx) {
    return !wants_config_copy(ctx) && !is_get(ctx);
}

// Only the identity of the table's last disabled TLV is written, a single value, on purpose.
const char *last_disabled(const char *const (&disabled)[tlv_count]) {
    const char *identity = "";
    for (size_t i = 0; i < tlv_count; i++)
        if (disabled[i] != nullptr && std::strcmp(disabled[i], "true") == 0)
            identity = tlv_rows[i].identity;
    return identity;
}

// Reads all disable leaves again, regardless of which one is being mapped.
terrno map_suppressed_tlvs(frame &f, node *out) {
    char suppressed[250] = {};
    const char *disabled[tlv_count] = {};
    terrno status = YMAP_OK;
    for (size_t i = 0; i < tlv_count; i++)
        status = yfw_map_get_node_info(f.ctx, tlv_rows[i].native, "disable", &disabled[i]);
    if (no_copy_wanted(f.ctx))
        return status;
    std::snprintf(suppressed, sizeof suppressed, "%s", last_disabled(disabled));
    if (suppressed[0] == '\0')
        return status;
    if (wants_config_copy(f.ctx))
        status = write_suppressed(f, out, "/lldp/config/enabled", "/lldp/config/suppress-tlv-advertisement",
                                  suppressed);
    if (is_get(f.ctx))
        status = write_suppressed(f, out, "/lldp/state/enabled", "/lldp/state/suppress-tlv-advertisement",
                                  suppressed);
    return status;
}

// ---- leaves ---------------------------------------------------------------------------------------------

// A configured timer implies that LLDP is enabled.
terrno map_timer(frame &f, const node *in, node *out) {
    terrno status = YMAP_OK;
    if (wants_config_copy(f.ctx)) {
        write(f, out, "/lldp/config/enabled", "true");
        status = copy(f, in, out, "/lldp/config/hello-timer");
    }
    if (is_get(f.ctx)) {
        write(f, out, "/lldp/state/enabled", "true");
        status = copy(f, in, out, "/lldp/state/hello-timer");
    }
    return status;
}

terrno map_chassis_id_type(frame &f, const node *in, node *out) {
    if (!wants_config_copy(f.ctx))
        return YMAP_OK;
    return write(f, out, "/lldp/config/chassis-id-type", qd2oc_lldp_str(f.ctx, in, out));
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

YMAP_DEFINE(ymap_qd_lldp_tlvselect_manual_cb, null_arguments, map_suppressed_tlvs(f, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_timer, invalid_arguments, map_timer(f, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemname, invalid_arguments, copy_config(f, in, out, "/lldp/config/system-name"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_systemdescription, invalid_arguments, copy_config(f, in, out, "/lldp/config/system-description"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_chassisid, invalid_arguments, copy_config(f, in, out, "/lldp/config/chassis-id"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvla_lldp_chassisidtype, invalid_arguments, map_chassis_id_type(f, in, out))

// An interface's LLDP settings are read from the interface tree.
YMAP_DEFINE(ymap_qd_lldp_tx_man_cb, invalid_arguments, YMAP_OK)
YMAP_DEFINE(ymap_qd_lldp_rx_man_cb, invalid_arguments, YMAP_OK)
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpcfg_leaf_lvlb_lldp_enable, invalid_arguments, YMAP_OK)

// clang-format on
