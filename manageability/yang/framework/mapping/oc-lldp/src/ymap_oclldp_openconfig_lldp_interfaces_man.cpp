// The hand-written callbacks of OpenConfig LLDP requests: interfaces, neighbors and their state.
#include <cstdlib>
#include <cstring>
#include <initializer_list>

#include "namespaces.h"
#include "request_scope.h"
#include "sysdb_library.h"

namespace oclldp {
namespace {

void forget_interface_key() {
    oclldp_get_with_int_key = 0;
    std::memset(oclldp_gl_int_name, 0, sizeof oclldp_gl_int_name);
}

// ---- interfaces and their list --------------------------------------------------------------------------

terrno request_interfaces(frame &f, const node *in, node *out) {
    YMAP_TRACE(f, "Mapping done for this node");
    if (!is_operational_only(f.ctx))
        return add(f, out, "/interface-configurations", ifmgr_ns, nullptr);
    add(f, out, "/lldp/nodes/node/neighbors/details/detail", oper_ns, nullptr, {.source = in, .list_entry = 1});
    return add(f, out, "/lldp/nodes/node/interfaces", oper_ns, nullptr);
}

terrno map_interfaces(frame &f, const node *in, uint32_t count, node *out) {
    forget_interface_key();
    if (count != 0)
        return request_interfaces(f, in, out);
    YMAP_TRACE(f, "No subtrees");
    if (!is_read(f.ctx) && is_delete(in))
        return oc_to_qd_lldp_interface_delete(f.ctx, in, out);
    return YMAP_OK;
}

terrno map_interface(frame &f, const node *in, node *out) {
    forget_interface_key();
    if (is_delete(in)) {
        delete_interface = 1;
        return YMAP_OK;
    }
    if (is_operational_only(f.ctx))
        return YMAP_OK; // the container has requested it
    return add(f, out, "/interface-configurations/interface-configuration", ifmgr_ns, nullptr,
               {.list_entry = 1});
}

// ---- interface name -------------------------------------------------------------------------------------

constexpr char interface_lldp[] = "/interface-configurations/interface-configuration/lldp";
constexpr char interface_name[] = "/interface-configurations/interface-configuration/interface-name";
constexpr char interface_active[] = "/interface-configurations/interface-configuration/active";

void remember_interface_key(frame &f, const node *in) {
    if (in->value != nullptr) {
        yfw_strncpy_s(f.site.function, oclldp_gl_int_name, sizeof oclldp_gl_int_name, in->value,
                      sizeof oclldp_gl_int_name - 1);
        oclldp_get_with_int_key = 1;
        YMAP_TRACE(f, "Get with key %s oclldp_gl_int_name %s", in->value, oclldp_gl_int_name);
    }
    YMAP_TRACE(f, "GET request with oclldp_get_with_int_key %s",
               oclldp_get_with_int_key == 1 ? "SET" : "NOT-SET");
}

terrno remove_interface_lldp(frame &f, const node *in, node *out) {
    change_operation(in, YFW_OP_REMOVE);
    return add(f, out, interface_lldp, cfg_ns, nullptr, {.source = in, .flags = 1});
}

terrno map_interface_key(frame &f, const node *in, node *out) {
    forget_interface_key();
    terrno status = YMAP_OK;
    if (is_read(f.ctx)) {
        if (is_get(f.ctx) || is_operational_only(f.ctx))
            remember_interface_key(f, in);
        status = add(f, out, interface_name, ifmgr_ns, in->value);
    } else if (!is_delete(in)) {
        add(f, out, interface_active, ifmgr_ns, "act");
        status = add(f, out, interface_name, ifmgr_ns, in->value, {.source = in});
        if (delete_interface == 1) {
            // Deleting an entry removes its LLDP subtree but keeps the native interface.
            status = remove_interface_lldp(f, in, out);
            if (status != YMAP_OK)
                return status;
        }
    }
    delete_interface = 0;
    return status;
}

terrno map_config_name(frame &f, const node *in, node *out) {
    if (is_read(f.ctx))
        return add(f, out, interface_name, ifmgr_ns, in->value);
    return is_delete(in) ? YMAP_OK : add(f, out, interface_name, ifmgr_ns, in->value, {.source = in});
}

// ---- interface enabled ----------------------------------------------------------------------------------

constexpr char interface_enter[] = "/interface-configurations/interface-configuration/lldp/lldp-intf-enter";
constexpr char interface_enable[] = "/interface-configurations/interface-configuration/lldp/enable";
constexpr char transmit_disable[] = "/interface-configurations/interface-configuration/lldp/transmit/disable";
constexpr char receive_disable[] = "/interface-configurations/interface-configuration/lldp/receive/disable";

enum class setting { absent, off, on, other };

setting classify(frame &f, const char *value) {
    if (value == nullptr)
        return setting::absent;
    if (equal(f, value, "false"))
        return setting::off;
    return equal(f, value, "true") ? setting::on : setting::other;
}

bool global_lldp_on() {
    constexpr int router_type_always_on = 7;
    if (platform_get_router_type() == router_type_always_on)
        return true;
    ymap_free_lldp_gl_sysdb_bind();
    const bool on = ymap_check_global_lldp_status() == YMAP_OK;
    ymap_free_lldp_gl_sysdb_bind();
    return on;
}

struct native_edit {
    const char *path;
    const char *value;
};

terrno add_edits(frame &f, const node *in, node *out, std::initializer_list<native_edit> edits) {
    for (const native_edit &edit : edits)
        if (const terrno status = add(f, out, edit.path, cfg_ns, edit.value, {.source = in, .flags = 1});
            status != YMAP_OK)
            return status;
    return YMAP_OK;
}

terrno edit_while_global_on(frame &f, const node *in, node *out, setting wanted, terrno enter_status) {
    switch (wanted) {
    case setting::absent:
        YMAP_TRACE(f, "NULL value as input , ignore gracefully");
        return YMAP_OK;
    case setting::off:
        return add_edits(f, in, out,
                         {{interface_enable, "false"}, {transmit_disable, "true"}, {receive_disable, "true"}});
    case setting::on:
        if (const terrno status = add_edits(f, in, out, {{interface_enable, "true"}}); status != YMAP_OK)
            return status;
        change_operation(in, YFW_OP_REMOVE);
        return add_edits(f, in, out,
                         {{"/interface-configurations/interface-configuration/lldp/transmit", nullptr},
                          {"/interface-configurations/interface-configuration/lldp/receive", nullptr}});
    case setting::other:
        break;
    }
    return enter_status;
}

terrno edit_while_global_off(frame &f, const node *in, node *out, setting wanted) {
    if (wanted == setting::on || wanted == setting::absent)
        return add_edits(f, in, out, {{interface_enable, "true"}});
    add(f, out, interface_enter, cfg_ns, "false", {.flags = 1});
    change_operation(in, YFW_OP_REMOVE);
    return add_edits(f, in, out, {{interface_enable, nullptr}});
}

terrno edit_interface_enabled(frame &f, const node *in, node *out) {
    if (is_delete(in))
        return remove_interface_lldp(f, in, out);
    const bool global_on = global_lldp_on();
    YMAP_TRACE(f, "OC_LLDP: set int lldp enabled node");
    add(f, out, interface_active, ifmgr_ns, "act");
    const terrno enter_status = add(f, out, interface_enter, cfg_ns, "true", {.flags = 1});
    const setting wanted = classify(f, in->value);
    return global_on ? edit_while_global_on(f, in, out, wanted, enter_status)
                     : edit_while_global_off(f, in, out, wanted);
}

terrno read_interface_enabled(frame &f, const node *in, node *out) {
    YMAP_TRACE(f, "OC_LLDP: get-conf int lldp enabled status");
    terrno status = YMAP_OK;
    if (!is_operational_only(f.ctx)) {
        add(f, out, interface_active, ifmgr_ns, "act");
        add(f, out, "/interface-configurations/interface-configuration/shutdown", ifmgr_ns, in->value,
            {.flags = 1});
        add(f, out, interface_enter, cfg_ns, "true", {.flags = 1});
        add(f, out, interface_enable, cfg_ns, in->value, {.flags = 1});
        add(f, out, transmit_disable, cfg_ns, in->value, {.flags = 1});
        status = add(f, out, receive_disable, cfg_ns, in->value, {.flags = 1});
        YMAP_TRACE(f, "OC_LLDP: get-config interface enabledMapped rx-enabled tx-enabled succesfully");
    }
    if (is_get(f.ctx)) {
        add(f, out, "/lldp/nodes/node/interfaces/interface", oper_ns, in->value);
        add(f, out, "/lldp/nodes/node/interfaces/interface/tx-enabled", oper_ns, in->value);
        status = add(f, out, "/lldp/nodes/node/interfaces/interface/rx-enabled", oper_ns, in->value);
        YMAP_TRACE(f, "OC_LLDP: get-oper interface enabledMapped rx-enabled tx-enabled succesfully");
    }
    return status;
}

terrno map_interface_enabled(frame &f, const node *in, node *out) {
    return is_read(f.ctx) ? read_interface_enabled(f, in, out) : edit_interface_enabled(f, in, out);
}

// ---- delete of all interfaces ---------------------------------------------------------------------------

constexpr char active_interfaces[] = "/cfg/if/act/";
constexpr uint32_t search_mode = 4;

struct lldp_interfaces {
    uint64_t connection = 0;
    void *list = nullptr;
    int32_t count = -1;
};

bool find_lldp_interfaces(frame &f, lldp_interfaces &found) {
    terrno status = YMAP_ERR_SYSDB_UNAVAILABLE;
    if (sysdb_library_present())
        status = _sysdb_bind(&found.connection, active_interfaces, search_mode);
    if (status != YMAP_OK) {
        YMAP_ERROR(f, "Unable to bind to Sysdb: path:%s, error:%s", active_interfaces, terr_strerror(status));
        return false;
    }
    status = sysdb_find(found.connection, ".*/lldp/", "", search_mode, &found.count, &found.list);
    if (status != YMAP_OK) {
        YMAP_ERROR(f, "Unable to find items in Sysdb: path:%s, error:%s", active_interfaces,
                   terr_strerror(status));
        return false;
    }
    return true;
}

void release(lldp_interfaces &found) {
    if (found.list != nullptr)
        sysdb_list_free(found.list);
    if (found.connection != 0 && sysdb_library_present())
        _sysdb_unbind(found.connection);
}

// The first component of a system-database path is the interface, whatever its length.
terrno display_name(const char *path, char *display, size_t size) {
    const char *first = path + std::strspn(path, "/");
    const size_t length = std::strcspn(first, "/");
    char *interface = static_cast<char *>(std::calloc(length + 1, 1));
    if (interface == nullptr)
        return YMAP_ERR_NO_MEMORY;
    std::memcpy(interface, first, length);
    imc_display_namestring(interface, display, size);
    std::free(interface);
    return YMAP_OK;
}

terrno delete_interface_lldp(frame &f, const node *in, node *out, const char *display) {
    change_operation(in, YFW_OP_NONE);
    if (const terrno status = add(f, out, "/interface-configurations/interface-configuration/", ifmgr_ns,
                                  nullptr, {.source = in, .list_entry = 1});
        status != YMAP_OK)
        return status;
    if (const terrno status = add(f, out, interface_active, ifmgr_ns, "act", {.source = in}); status != YMAP_OK)
        return status;
    if (const terrno status = add(f, out, interface_name, ifmgr_ns, display, {.source = in}); status != YMAP_OK)
        return status;
    return remove_interface_lldp(f, in, out);
}

// A failing add returns at once and leaks the list and the connection, on purpose. Every other exit, even after
// a failure of the system database, reports the subtree as done; only a lack of memory fails.
terrno delete_interfaces(frame &f, const node *in, node *out) {
    if (yfw_map_do_these_match(in->name, "interface") != 0) {
        YMAP_ERROR(f, "Do not execute LLDP-interface delete logic, tag:%s", in->name);
        return YMAP_OK;
    }
    lldp_interfaces found;
    const int32_t count = find_lldp_interfaces(f, found) ? found.count : 0;
    for (int32_t i = 0; i < count; i++) {
        const char *path = nullptr;
        if (const terrno status = sysdb_list_next(found.list, &path); status != YMAP_OK) {
            YMAP_ERROR(f, "Unable to iterate the sysdb list: error:%s", terr_strerror(status));
            break;
        }
        char display[64] = {};
        if (const terrno status = display_name(path, display, sizeof display); status != YMAP_OK) {
            release(found);
            return status;
        }
        if (const terrno status = delete_interface_lldp(f, in, out, display); status != YMAP_OK)
            return status;
    }
    release(found);
    return YMAP_STS_SUBTREE_DONE;
}

// ---- interface state ------------------------------------------------------------------------------------

terrno request_interface(frame &f, const node *in, node *out) {
    return add(f, out, "/lldp/nodes/node/interfaces/interface", oper_ns, nullptr,
               {.source = in, .list_entry = 1});
}

terrno map_state_name(frame &f, const node *in, node *out) {
    if (!is_read(f.ctx))
        return YMAP_OK;
    const terrno status = request_interface(f, in, out);
    YMAP_TRACE(f, "OC_LLDP: get int lldp state/name status");
    return status;
}

terrno map_state_enabled(frame &f, const node *in, node *out) {
    if (!is_read(f.ctx))
        return YMAP_OK;
    const terrno status = request_interface(f, in, out);
    YMAP_TRACE(f, "OC_LLDP: get int lldp state/enabled status");
    return status;
}

// ---- neighbors ------------------------------------------------------------------------------------------

// The request kind does not matter: an edit other than a delete gets the same paths.
terrno map_neighbor(frame &f, const node *in, node *out) {
    is_get_with_key = 0;
    if (is_delete(in))
        return YMAP_OK;
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor", oper_ns, nullptr, {.list_entry = 1});
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail", oper_ns, nullptr);
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib", oper_ns, nullptr);
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/network-addresses", oper_ns,
        nullptr);
    return add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/port-id-detail", oper_ns,
               in->value);
}

terrno remember_neighbor_key(frame &f, const char *id) {
    std::free(gl_neigh_dev_id);
    gl_neigh_dev_id = nullptr;
    is_get_with_key = 0;
    const size_t size = std::strlen(id) + 1;
    gl_neigh_dev_id = static_cast<char *>(std::calloc(size, 1));
    if (gl_neigh_dev_id == nullptr) {
        YMAP_ERROR(f, "gl_neigh_dev_id malloc failed");
        return YMAP_ERR_NO_MEMORY;
    }
    std::snprintf(gl_neigh_dev_id, size, "%s", id);
    return YMAP_OK;
}

void native_device_id(frame &f, const char *device, char *native, size_t size) {
    // The misspelt literal is kept on purpose; only its length is used.
    if (equal(f, device, "DISABLED"))
        yfw_strncpy_s(f.site.function, native, size, "[DISABLED]", std::strlen("[DISBALED]"));
    else
        yfw_strncpy_s(f.site.function, native, size, device, size - 1);
}

terrno map_neighbor_key(frame &f, const node *in, node *out) {
    if (!is_read(f.ctx) || in->value == nullptr)
        return YMAP_OK;
    if (const terrno status = remember_neighbor_key(f, in->value); status != YMAP_OK)
        return status;
    char *copy = yfw_strdup(in->value, "YFW_OCLLDP_NS");
    if (copy == nullptr)
        return YMAP_OK;
    char *rest = nullptr;
    const char *device = strtok_r(copy, "#", &rest);
    if (device == nullptr)
        device = "";
    char native[256] = {};
    native_device_id(f, device, native, sizeof native);
    YMAP_TRACE(f, "dev_id %s dev_id_in %s qd_dev_id %s", rest, device, native);
    is_get_with_key = 1;
    strtok_r(nullptr, "#", &rest);
    const terrno status = add(f, out, "/lldp/nodes/node/neighbors/details/detail/device-id", oper_ns, native);
    std::free(copy);
    return status;
}

// ---- custom TLVs and capabilities -----------------------------------------------------------------------

terrno map_tlv_type_key(frame &f, const node *in) {
    constexpr uint32_t organizationally_specific = 127; // IEEE 802.1AB clause 8.6
    if (!is_read(f.ctx) || in->value == nullptr)
        return YMAP_OK;
    if (static_cast<uint32_t>(std::strtol(in->value, nullptr, 10)) == organizationally_specific)
        return YMAP_OK; // the list has requested the native entry
    YMAP_ERROR(f, "Invalid key type value");
    return YMAP_ERR_INVALID_ARGS;
}

terrno remember_capability_key(frame &f, const char *name) {
    constexpr size_t size = 255;
    yfw_req_ctx *request = f.ctx->req_ctx;
    std::free(request->common_data_ptr);
    request->common_data_ptr = nullptr;
    request->common_data_ptr = std::calloc(1, size);
    if (request->common_data_ptr == nullptr) {
        YMAP_ERROR(f, "ctx->req_ctx->common_data_ptr is NULL");
        return YMAP_ERR_NO_MEMORY;
    }
    yfw_strncpy_s(f.site.function, static_cast<char *>(request->common_data_ptr), size, name, size);
    return YMAP_OK;
}

terrno map_capability_key(frame &f, const node *in, node *out) {
    if (!is_read(f.ctx))
        return YMAP_OK;
    if (in->value != nullptr)
        if (const terrno status = remember_capability_key(f, in->value); status != YMAP_OK)
            return status;
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/system-capabilities", oper_ns,
        nullptr);
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/enabled-capabilities", oper_ns,
        nullptr);
    return add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib/combined-capabilities",
               oper_ns, nullptr);
}

terrno map_capability_state(frame &f, const node *in, node *out) {
    if (!is_read(f.ctx))
        return YMAP_OK;
    add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/system-capabilities", oper_ns,
        in->value);
    return add(f, out, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/detail/enabled-capabilities",
               oper_ns, in->value);
}

} // namespace
} // namespace oclldp

using namespace oclldp;

// clang-format off

YMAP_DEFINE_CONTAINER(ymap_oq_oclldp_openconfiglldp_cont_lvla_lldp_interfaces, null_arguments, map_interfaces(f, in, count, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_interfaces_interface, null_arguments, map_interface(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_interface_name, null_arguments, map_interface_key(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_config_name, invalid_arguments, map_config_name(f, in, out))
YMAP_DEFINE(ymap_oc_interface_enabled_man_cb, null_arguments, map_interface_enabled(f, in, out))
YMAP_DEFINE(oc_to_qd_lldp_interface_delete, invalid_arguments, delete_interfaces(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_state_name, invalid_arguments, map_state_name(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_enabled, invalid_arguments, map_state_enabled(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_list_lvla_lldp_neighbors_neighbor, invalid_arguments, map_neighbor(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvla_lldp_neighbor_id, invalid_arguments, map_neighbor_key(f, in, out))
YMAP_DEFINE(ymap_qd_custom_tlv_typekey_man_cb, null_arguments, map_tlv_type_key(f, in))
YMAP_DEFINE(ymap_qd_lldp_neighbor_capabilities_man_cb, null_arguments, map_capability_key(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvlb_lldp_state_name, invalid_arguments, map_capability_state(f, in, out))
YMAP_DEFINE(ymap_oq_oclldp_openconfiglldp_leaf_lvlc_lldp_state_enabled, invalid_arguments, map_capability_state(f, in, out))

// clang-format on
