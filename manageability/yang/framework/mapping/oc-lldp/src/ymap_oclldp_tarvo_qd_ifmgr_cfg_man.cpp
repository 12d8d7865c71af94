// The hand-written callbacks of native interface configuration: whether LLDP is on for each interface.
#include <cstring>
#include <initializer_list>

#include "oc_copy.h"

namespace oclldp {
namespace {

constexpr char native_entry[] = "/interface-configurations/interface-configuration";
constexpr char oc_entry[] = "/lldp/interfaces/interface";

// The interface manager says for certain that it does not know the interface.
bool definitely_absent(frame &f, const char *ifname) {
    char spelled[IMC_IFENTRY_SIZE] = {};
    convert_ifname_ifentry(spelled, ifname);
    uint32_t handle = 0;
    uint32_t entry_status = 0;
    uint32_t answered = 0;
    imc_find_request request{};
    request.handle = &handle;
    request.status = &entry_status;
    const terrno copied =
        yfw_strncpy_s(f.site.function, request.name, sizeof request.name, spelled, sizeof request.name);
    if (copied != YMAP_OK) {
        YMAP_TRACE(f, "yfw_strncpy_s failed with error : %s\n", terr_strerror(copied));
        return true;
    }
    const terrno found = imc_interface_find(yfw_ocifmgr_im_conn, 1, &request, 0, &answered);
    if (found == YMAP_OK && entry_status == IMC_STATUS_NO_SUCH_INTERFACE) {
        YMAP_TRACE(f, "imc_interface_find failed for int : %s\n", ifname);
        return true;
    }
    // A failed look-up counts as present, on purpose.
    YMAP_TRACE(f, "imc_interface_find succeded for int : %s\n", ifname);
    return false;
}

int interface_exists(frame &f, const char *ifname) {
    if (ifname == nullptr) {
        YMAP_TRACE(f, "NULL ifname passed");
        return 0;
    }
    return definitely_absent(f, ifname) ? 0 : 1;
}

bool is_supported(yfw_map_ctx ctx, const char *name) {
    if (yfw_oclldp_util_is_ifhandle_exist(const_cast<char *>(name), ctx) == 0)
        return false;
    if (platform_supports_lldp_over_mgmt() == 0 && std::strstr(name, "Mgmt") != nullptr)
        return false;
    for (const char *part : {"Optics", "Coherent", "macsec"})
        if (std::strstr(name, part) != nullptr)
            return false;
    return true;
}

struct native_leaf {
    bool found = false;
    const char *value = nullptr;

    bool is_true() const { return found && value != nullptr && std::strcmp(value, "true") == 0; }
};

native_leaf query(yfw_map_ctx ctx, const node *entry, const char *path) {
    yfw_map_xpath_query query;
    std::memset(&query, 0, sizeof query);
    query.operation = 4;
    query.operation_kind = 3;
    std::snprintf(query.ns, sizeof query.ns, "%s", cfg_ns);
    std::snprintf(query.xpath, sizeof query.xpath, "%s", path);
    query.start = entry;
    const bool found = yfw_map_tree_xpath_operations(ctx, &query) == YMAP_OK;
    return {found, query.value};
}

enum class enabled_setting { unknown, off, on };

enabled_setting read_enable(frame &f, const node *entry) {
    const native_leaf enable = query(f.ctx, entry, "/lldp/enable");
    if (!enable.found) {
        YMAP_TRACE(f, "OC_LLDP: /lldp/enable node  not found");
        return enabled_setting::unknown;
    }
    if (!has_text(enable.value))
        return enabled_setting::unknown;
    if (enable.is_true()) {
        YMAP_TRACE(f, "OC_LLDP: /lldp/enable is true");
        return enabled_setting::on;
    }
    YMAP_TRACE(f, "OC_LLDP: /lldp/enable is false");
    return enabled_setting::off;
}

// LLDP is off when both directions are disabled, whatever "enable" says; one direction alone changes nothing.
bool both_directions_disabled(frame &f, const node *entry) {
    const native_leaf transmit = query(f.ctx, entry, "/lldp/transmit/disable");
    if (!transmit.found)
        YMAP_TRACE(f, "OC_LLDP: /lldp/transmit/disable node  not found");
    if (transmit.is_true())
        YMAP_TRACE(f, "OC_LLDP: /lldp/tr/dis is true");
    const native_leaf receive = query(f.ctx, entry, "/lldp/receive/disable");
    if (!receive.found)
        YMAP_TRACE(f, "OC_LLDP: /lldp/receive/disable node  not found");
    if (!receive.is_true() || !transmit.is_true())
        return false;
    YMAP_TRACE(f, "OC_LLDP: /lldp/rx/dis is true");
    return true;
}

void write_deleted_entry(frame &f, const node *entry, node *out, node **slot) {
    add(f, out, oc_entry, oc_ns, nullptr, {.source = entry, .slot = slot, .list_entry = 1});
    yfw_map_copy_trim_path_list_ctx(f.ctx, oc_entry);
}

void write_entry(frame &f, node *out, node **slot, const char *name, enabled_setting enabled) {
    yfw_map_search_or_add_list(f.ctx, out, slot, oc_entry, name, "name", oc_ns);
    write(f, out, "/lldp/interfaces/interface/config/name", name);
    write(f, out, "/lldp/interfaces/interface/config/enabled",
          enabled == enabled_setting::on ? "true" : "false");
}

terrno map_interface(frame &f, const node *entry, node *out) {
    yfw_req_ctx *request = f.ctx->req_ctx;
    if (request == nullptr)
        return YMAP_ERR_MAP_FAILED;
    const char *name = nullptr;
    const terrno name_status = yfw_map_get_node_info(f.ctx, native_entry, "interface-name", &name);
    if (name == nullptr)
        return YMAP_ERR_UNSUPPORTED_TAG;
    if (!is_supported(f.ctx, name)) {
        YMAP_TRACE(f, "OC_LLDP: interface not supported");
        return name_status;
    }
    enabled_setting enabled = read_enable(f, entry);
    if (both_directions_disabled(f, entry))
        enabled = enabled_setting::off;
    node **slot = &request->output_list.current_list_node;
    if (is_delete(entry))
        write_deleted_entry(f, entry, out, slot);
    else if (enabled != enabled_setting::unknown && wants_config_copy(f.ctx))
        write_entry(f, out, slot, name, enabled);
    return YMAP_OK;
}

// Reads the name and writes nothing: the entry's callback has already written it.
terrno check_interface_name(frame &f) {
    const char *name = nullptr;
    const terrno status = yfw_map_get_node_info(f.ctx, native_entry, "interface-name", &name);
    return name != nullptr ? status : YMAP_ERR_UNSUPPORTED_TAG;
}

} // namespace
} // namespace oclldp

using namespace oclldp;

int yfw_oclldp_util_is_ifhandle_exist(char *ifname, yfw_map_ctx ctx) {
    YMAP_SITE("int ", yfw_oclldp_util_is_ifhandle_exist, "(char *, yfw_map_ctx)");
    int exists = 0;
    in_frame(site, ctx, true, null_nodes::accepted, [&](frame &f) {
        exists = interface_exists(f, ifname);
        return YMAP_OK;
    });
    return exists;
}

// The only callback that answers a NULL context with a status.
terrno ymap_qo_oclldp_ifmgr_intconfig_man(YMAP_CALLBACK_ARGUMENTS) {
    YMAP_SITE("terrno ", ymap_qo_oclldp_ifmgr_intconfig_man, YMAP_CALLBACK_TYPES);
    if (ctx == nullptr)
        return YMAP_ERR_MAP_FAILED;
    return in_frame(site, ctx, in != nullptr && out != nullptr, null_nodes::invalid_arguments,
                    [&](frame &f) { return map_interface(f, in, out); });
}

YMAP_DEFINE(ymap_qo_oclldp_intconfig_intname_man, null_arguments, check_interface_name(f))
