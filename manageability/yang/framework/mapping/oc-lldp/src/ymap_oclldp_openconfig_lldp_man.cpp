// The hand-written callbacks of OpenConfig LLDP requests: global settings and their system database look-ups.
// Interfaces, neighbors and state follow in ymap_oclldp_openconfig_lldp_interfaces_man.cpp.
#include <cstdlib>
#include <cstring>

#include <unistd.h>

#include "namespaces.h"
#include "request_scope.h"
#include "sysdb_library.h"

// ---- system database ------------------------------------------------------------------------------------

namespace {

constexpr char gl_lldp_path[] = "/cfg/gl/lldp/";
uint8_t sysdb_lib_present = 0; // never reset

} // namespace

bool oclldp::sysdb_library_present() {
    if (sysdb_lib_present == 0 && access("/pkg/lib/libsysdb.so", R_OK) == 0)
        sysdb_lib_present = 1;
    return sysdb_lib_present != 0;
}

terrno ymap_bind_lldp_gl_sysdb(void) {
    if (!oclldp::sysdb_library_present())
        return YMAP_ERR_SYSDB_UNAVAILABLE;
    return _sysdb_bind(&oc_lldp_sysdb_conn, gl_lldp_path, 0);
}

void ymap_free_lldp_gl_sysdb_bind(void) {
    if (oc_lldp_sysdb_conn == 0)
        return;
    if (oclldp::sysdb_library_present())
        _sysdb_unbind(oc_lldp_sysdb_conn);
    oc_lldp_sysdb_conn = 0;
}

terrno ymap_check_global_lldp_status(void) {
    if (oc_lldp_sysdb_conn != 0)
        return YMAP_OK; // an existing binding counts as enabled, on purpose
    if (const terrno status = ymap_bind_lldp_gl_sysdb(); status != YMAP_OK)
        return status;
    const void *data = nullptr;
    uint32_t count = 1;
    if (const terrno status = sysdb_item_get(oc_lldp_sysdb_conn, "enable", &data, &count); status != YMAP_OK)
        return status;
    if (data == nullptr)
        return YMAP_OK;
    int32_t enable = 0;
    std::memcpy(&enable, data, sizeof enable);
    return enable == 1 ? 0 : 1;
}

uint32_t ymap_get_ocllp_lldp_enable(yfw_map_ctx ctx) {
    const char *requested = nullptr;
    yfw_map_get_node_info(ctx, "/lldp/config", "enabled", &requested);
    if (requested != nullptr && std::strcmp(requested, "true") == 0)
        return 1;
    ymap_free_lldp_gl_sysdb_bind();
    if (ymap_check_global_lldp_status() == YMAP_OK)
        return 1;
    ymap_free_lldp_gl_sysdb_bind();
    return 0;
}

// ---- global settings ------------------------------------------------------------------------------------

namespace oclldp {
namespace {

terrno map_enabled(frame &f, const node *in, node *out) {
    if (is_read(f.ctx))
        return add(f, out, "/lldp/enable", cfg_ns, in->value);
    if (is_delete(in)) {
        ymap_free_lldp_gl_sysdb_bind();
        return add(f, out, "/lldp", cfg_ns, nullptr, {.source = in});
    }
    if (in->value != nullptr && std::strcmp(in->value, "false") == 0) {
        // Switching LLDP off removes the whole native configuration, on purpose.
        ymap_free_lldp_gl_sysdb_bind();
        change_operation(in, YFW_OP_REMOVE);
        return add(f, out, "/lldp", cfg_ns, nullptr, {.source = in});
    }
    return add(f, out, "/lldp/enable", cfg_ns, in->value != nullptr ? in->value : "true", {.source = in});
}

// The native model accepts settings only while LLDP is on.
terrno enable_if_off(frame &f, const node *in, node *out) {
    if (ymap_get_ocllp_lldp_enable(f.ctx) != 0)
        return YMAP_OK;
    return add(f, out, "/lldp/enable", cfg_ns, "true", {.source = in});
}

const char *unchanged(yfw_map_ctx, const node *in, node *) {
    return in->value;
}

const char *native_spelling(yfw_map_ctx ctx, const node *in, node *out) {
    return oc2qd_lldp_str(ctx, in, out);
}

// `convert` returns the native value of the leaf, or NULL for none.
terrno map_setting(frame &f, const node *in, node *out, const char *path, decltype(unchanged) *convert) {
    if (is_read(f.ctx))
        return add(f, out, path, cfg_ns, convert(f.ctx, in, out));
    if (is_delete(in))
        return add(f, out, path, cfg_ns, nullptr, {.source = in});
    if (const terrno status = enable_if_off(f, in, out); status != YMAP_OK)
        return status;
    return add(f, out, path, cfg_ns, convert(f.ctx, in, out), {.source = in});
}

// The native range of the timer, 5 to 65534 seconds.
bool timer_in_range(const char *text) {
    const auto value = static_cast<uint32_t>(std::strtol(text, nullptr, 10));
    return value - 5u <= 65529u;
}

terrno map_hello_timer(frame &f, const node *in, node *out) {
    // Only a delete is checked against the range, on purpose: the native model checks edited values itself.
    if (!is_read(f.ctx) && is_delete(in) && in->value != nullptr && !timer_in_range(in->value)) {
        YMAP_ERROR(f, "Out of Range values");
        return YMAP_ERR_MAP_FAILED;
    }
    return map_setting(f, in, out, "/lldp/timer", unchanged);
}

// ---- suppressed TLVs ------------------------------------------------------------------------------------

struct tlv_row {
    const char *openconfig;
    const char *native;
};

constexpr tlv_row tlv_rows[] = {
    {"SYSTEM_NAME", "/lldp/tlv-select/system-name/disable"},
    {"PORT_DESCRIPTION", "/lldp/tlv-select/port-description/disable"},
    {"SYSTEM_DESCRIPTION", "/lldp/tlv-select/system-description/disable"},
    {"SYSTEM_CAPABILITIES", "/lldp/tlv-select/system-capabilities/disable"},
    {"MANAGEMENT_ADDRESS", "/lldp/tlv-select/management-address/disable"},
};

constexpr char tlv_select_enter[] = "/lldp/tlv-select/tlv-select-enter";

const char *native_tlv(const char *openconfig) {
    for (const tlv_row &row : tlv_rows)
        if (std::strcmp(openconfig, row.openconfig) == 0)
            return row.native;
    return nullptr;
}

terrno refuse_tlv(frame &f) {
    if (yfw_req_ctx *request = f.ctx->req_ctx) {
        char message[255];
        std::snprintf(message, sizeof message, "Invalid argument passed for tlv");
        request->err_node_name = yfw_strdup(message, "YFW_MAP"); // the previous value leaks, on purpose
    }
    YMAP_ERROR(f, "Invalid or Not-supported value");
    return YMAP_ERR_INVALID_VALUE;
}

terrno read_suppressed_tlvs(frame &f, const node *in, node *out) {
    terrno status = YMAP_OK;
    for (const tlv_row &row : tlv_rows)
        status = add(f, out, row.native, cfg_ns, in->value);
    return status;
}

terrno delete_suppressed_tlv(frame &f, const node *in, node *out, const char *tlv) {
    add(f, out, tlv_select_enter, cfg_ns, "true");
    if (*tlv == '\0')
        return add(f, out, "/lldp/tlv-select", cfg_ns, nullptr, {.source = in, .list_entry = 1, .flags = 1});
    const char *path = native_tlv(tlv);
    return path != nullptr ? add(f, out, path, cfg_ns, nullptr, {.source = in}) : refuse_tlv(f);
}

terrno suppress_tlv(frame &f, const node *in, node *out, const char *tlv) {
    add(f, out, tlv_select_enter, cfg_ns, "true", {.source = in});
    if (*tlv == '\0') // an empty entry maps to the system name, on purpose
        return add(f, out, tlv_rows[0].native, cfg_ns, in->value, {.source = in});
    const char *path = native_tlv(tlv);
    if (path == nullptr)
        return refuse_tlv(f);
    const terrno status = add(f, out, path, cfg_ns, "true", {.source = in});
    // Unlike with the other settings, LLDP is switched on after the leaf.
    return ymap_get_ocllp_lldp_enable(f.ctx) != 0 ? status
                                                  : add(f, out, "/lldp/enable", cfg_ns, "true", {.source = in});
}

terrno map_suppressed_tlv(frame &f, const node *in, node *out) {
    char tlv[256] = {};
    if (in->value != nullptr)
        yfw_strncpy_s(f.site.function, tlv, sizeof tlv, in->value, sizeof tlv - 1);
    if (is_read(f.ctx))
        return read_suppressed_tlvs(f, in, out);
    return is_delete(in) ? delete_suppressed_tlv(f, in, out, tlv) : suppress_tlv(f, in, out, tlv);
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_enabled, null_arguments, map_enabled(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_hellotimer, null_arguments, map_hello_timer(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_systemname, invalid_arguments, map_setting(f, in, out, "/lldp/system-name", unchanged))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_systemdescription, invalid_arguments, map_setting(f, in, out, "/lldp/system-description", unchanged))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_chassisid, invalid_arguments, map_setting(f, in, out, "/lldp/chassis-id", unchanged))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_chassisidtype, invalid_arguments, map_setting(f, in, out, "/lldp/chassis-id-type", native_spelling))
YMAP_DEFINE(ymap_oc_lldp_suppresstlvadv_manual_cb, null_arguments, map_suppressed_tlv(f, in, out))

// clang-format on
