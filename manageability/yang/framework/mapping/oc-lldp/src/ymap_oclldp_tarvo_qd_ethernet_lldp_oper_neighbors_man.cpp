// The hand-written callbacks of native LLDP neighbors: entries, chassis and port id types, capabilities and
// custom TLVs.
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "neighbor_copy.h"

namespace oclldp {
namespace {

constexpr size_t text_size = 256;

constexpr char native_detail[] = "/lldp/nodes/node/neighbors/details/detail";
constexpr char native_neighbor[] = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor";

// ---- neighbor entries -----------------------------------------------------------------------------------

// The placeholder for a device without a name is shown without its brackets.
const char *shown_device(frame &f, const char *device) {
    return equal(f, device, "[DISABLED]") ? "DISABLED" : device;
}

// The neighbor's interface; left empty when the request is for a different one.
void take_interface(frame &f, const char *name, char (&interface)[text_size]) {
    if (oclldp_get_with_int_key != 1) {
        yfw_strncpy_s(f.site.function, interface, text_size, name, text_size - 1);
    } else if (oclldp_gl_int_name[0] == '\0') {
        YMAP_TRACE(f, "oclldp_get_with_int_key is %doclldp_gl_int_name len is zero", oclldp_get_with_int_key);
    } else if (equal(f, name, oclldp_gl_int_name)) {
        yfw_strncpy_s(f.site.function, interface, text_size, name, text_size - 1);
        YMAP_TRACE(f, "Match found and oclldp_int_name %s", interface);
    } else {
        YMAP_TRACE(f, "strcmp failed for oclldp_gl_int_name %s", oclldp_gl_int_name);
    }
}

void id_from_device(frame &f, const char *device, const char *port, char (&id)[text_size]) {
    const char *shown = shown_device(f, device);
    if (port != nullptr)
        std::snprintf(id, text_size, "%s#%s", shown, port);
    else
        std::snprintf(id, text_size, "%s", shown);
    YMAP_TRACE(f, "oclldp_dev_id constructed is %s", id);
}

// Whether the part of the requested id after its first "#" is the port. The device part is not compared, on
// purpose: the request has already narrowed the response to that device.
bool port_part_matches(frame &f, const char *port) {
    char *copy = yfw_strdup(gl_neigh_dev_id, "YFW_OCLLDP_NS");
    if (copy == nullptr)
        return false;
    const char *hash = std::strchr(copy, '#');
    const bool matches = equal(f, hash != nullptr ? hash + 1 : "", port);
    qdos_named_free(copy);
    return matches;
}

void id_from_request(frame &f, const char *port, char (&id)[text_size]) {
    if (gl_neigh_dev_id != nullptr) {
        if (port == nullptr || port_part_matches(f, port))
            yfw_strncpy_s(f.site.function, id, text_size, gl_neigh_dev_id, text_size - 1);
        YMAP_TRACE(f, "oclldp_dev_id %s gl_neigh_dev_id %s", id, gl_neigh_dev_id);
    }
}

terrno stitch(frame &f, node *out, const char *interface, const char *id) {
    yfw_map_stitch record;
    std::memset(&record, 0, sizeof record);
    record.parent = out;
    record.kind_a = 1;
    record.kind_b = 2;
    std::snprintf(record.ns, sizeof record.ns, "%s", oc_ns);
    std::snprintf(record.keyed_path, sizeof record.keyed_path,
                  "/lldp/interfaces/interface[name=%s]/neighbors/neighbor[id=%s]/", interface, id);
    std::snprintf(record.list_path, sizeof record.list_path, "/lldp/interfaces/interface/neighbors/neighbor");
    const terrno status = yfw_map_stitch_list_to_list(f.ctx, &record);
    oclldp_is_neigh_list_mapped = 1; // even when stitching failed
    YMAP_TRACE(f, "Stich succeded for intf_name %s id %soclldp_is_neigh_list_mapped %d", interface, id,
               oclldp_is_neigh_list_mapped);
    return status;
}

terrno stitch_neighbor(frame &f, node *out, const char *interface, const char *device, const char *port) {
    char id[text_size] = {};
    if (is_get_with_key == 1)
        id_from_request(f, port, id);
    else
        id_from_device(f, device, port, id);
    terrno status = YMAP_OK;
    if (id[0] != '\0')
        status = stitch(f, out, interface, id);
    else
        YMAP_TRACE(f, "Construct oclldp_dev_id failed");
    if (is_stitched() && gl_neigh_dev_id != nullptr) {
        std::free(gl_neigh_dev_id); // a keyed request matches one entry at most
        gl_neigh_dev_id = nullptr;
    }
    return status;
}

terrno map_neighbor(frame &f, node *out) {
    const char *name = nullptr;
    const char *device = nullptr;
    const char *port = nullptr;
    yfw_map_get_node_info(f.ctx, native_detail, "interface-name", &name);
    yfw_map_get_node_info(f.ctx, native_detail, "device-id", &device);
    yfw_map_get_node_info(f.ctx, native_neighbor, "port-id-detail", &port);
    if (name == nullptr || f.ctx->req_ctx == nullptr) {
        YMAP_ERROR(f, "intf_name or ctx->req_ctx is NULL, return here");
        return YMAP_ERR_MAP_FAILED;
    }
    oclldp_is_neigh_list_mapped = 0;
    char interface[text_size] = {};
    take_interface(f, name, interface);
    if (!is_read(f.ctx) || device == nullptr || interface[0] == '\0')
        return YMAP_OK;
    return stitch_neighbor(f, out, interface, device, port);
}

terrno map_state_id(frame &f, const node *in, node *out) {
    if (!is_stitched()) {
        YMAP_TRACE(f, "Neighhbor list not stitched, ignore");
        return YMAP_OK;
    }
    const char *port = nullptr;
    yfw_map_get_node_info(f.ctx, native_neighbor, "port-id-detail", &port);
    char device[text_size] = {};
    if (in->value != nullptr)
        yfw_strncpy_s(f.site.function, device, sizeof device, in->value, sizeof device - 1);
    if (!is_read(f.ctx) || device[0] == '\0' || port == nullptr)
        return YMAP_OK;
    char id[text_size] = {}; // the same size as the entry's key
    if (std::snprintf(id, sizeof id, "%s#%s", shown_device(f, device), port) < 0)
        id[0] = '\0';
    YMAP_TRACE(f, "OC Device Id %s lldp_dev_id %s ne_port_det %s", id, device, port);
    if (id[0] == '\0') {
        YMAP_TRACE(f, "Failed to frame OC lldp peer state/id");
        return YMAP_OK;
    }
    return write(f, out, "/lldp/interfaces/interface/neighbors/neighbor/state/id", id);
}

// ---- chassis and port id types --------------------------------------------------------------------------

// By subtype number minus one (IEEE 802.1AB clauses 8.5.2.2 and 8.5.3.2).
constexpr const char *chassis_id_types[] = {
    "CHASSIS_COMPONENT", "INTERFACE_ALIAS", "PORT_COMPONENT", "MAC_ADDRESS",
    "NETWORK_ADDRESS",   "INTERFACE_NAME",  "LOCAL"};
constexpr const char *port_id_types[] = {
    "INTERFACE_ALIAS", "PORT_COMPONENT",   "MAC_ADDRESS", "NETWORK_ADDRESS",
    "INTERFACE_NAME",  "AGENT_CIRCUIT_ID", "LOCAL"};

const char *type_name(const char *const (&names)[7], const char *subtype) {
    const uint32_t index =
        static_cast<uint32_t>(std::strtol(subtype != nullptr ? subtype : "", nullptr, 10)) - 1;
    return index < std::size(names) ? names[index] : nullptr;
}

terrno map_chassis_id_type(frame &f, const node *in, node *out, const char *path) {
    char name[OCLLDP_CHASSIS_TEXT_SIZE] = {};
    if (ymap_chassis_id_subtype_mapping_util(f.ctx, in, name) != YMAP_OK) {
        YMAP_ERROR_AT(f, slot_bad_chassis_id_type, "Invalid Chassis id type");
        return YMAP_ERR_MAP_FAILED;
    }
    YMAP_TRACE_AT(f, slot_chassis_id_type, "OCLLDP: chassis_type_name %s", name);
    return write(f, out, path, name);
}

terrno skip_unstitched(frame &f) {
    YMAP_TRACE_AT(f, slot_unstitched, "Neighbor list not mapped, skip");
    return YMAP_OK;
}

terrno map_neighbor_chassis_id_type(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return skip_unstitched(f);
    return map_chassis_id_type(f, in, out,
                               "/lldp/interfaces/interface/neighbors/neighbor/state/chassis-id-type");
}

terrno map_port_id_type(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return skip_unstitched(f);
    const char *name = type_name(port_id_types, in->value);
    if (name == nullptr) {
        YMAP_TRACE(f, "Invalid port id subtype");
        return YMAP_ERR_MAP_FAILED;
    }
    YMAP_TRACE(f, "OCLLDP: Port_type_name %s", name);
    return write(f, out, "/lldp/interfaces/interface/neighbors/neighbor/state/port-id-type", name);
}

terrno map_hold_time(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return skip_unstitched(f);
    return copy(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/ttl");
}

// ---- capabilities ---------------------------------------------------------------------------------------

struct capability_row {
    char code;
    const char *name;
};

constexpr capability_row capability_rows[] = {
    {'O', "OTHER"},  {'P', "REPEATER"},  {'B', "MAC_BRIDGE"},           {'W', "WLAN_ACCESS_POINT"},
    {'R', "ROUTER"}, {'T', "TELEPHONE"}, {'C', "DCOS_IS_CABLE_DEVICE"}, {'S', "STATION_ONLY"}, // sic
};

terrno append_capability(frame &f, uint32_t capabilities, char *name, int32_t index) {
    // An index equal to the number of capabilities passes, on purpose.
    if (num_lldp_caps < index) {
        YMAP_ERROR(f, "Value of i exceeds max lldp caps count");
        return YMAP_ERR_MAP_FAILED;
    }
    if ((capabilities & (1u << (static_cast<uint32_t>(index) % 32u))) == 0)
        return YMAP_OK;
    const char *code = index >= 0 && index < OCLLDP_CAPABILITIES ? lldp_cap_codes[index] : "";
    for (const capability_row &row : capability_rows)
        if (row.code == code[0])
            yfw_strcat_s(f.site.function, name, OCLLDP_CAPABILITY_TEXT_SIZE, row.name);
    YMAP_TRACE(f, "OCLLDP cap_name %s", name);
    return YMAP_OK;
}

using capability_text = char[OCLLDP_CAPABILITY_TEXT_SIZE];

void write_capability_name(frame &f, node *out, const char *name) {
    add(f, out, "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability", oc_ns, nullptr,
        {.list_entry = 1, .flags = 1});
    node *added = nullptr;
    add(f, out, "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability/name", oc_ns, name,
        {.slot = &added, .list_entry = 1, .flags = 1});
    qualify_identity(added);
    added = nullptr;
    add(f, out, "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability/state/name", oc_ns, name,
        {.slot = &added, .list_entry = 1});
    qualify_identity(added);
}

// `enabled` keeps the previous capability's text where the names differ.
void enabled_text(frame &f, uint32_t enabled_bits, int32_t index, const char *name, char (&enabled)[50]) {
    capability_text enabled_name = {};
    oclldp_get_ne_cap_name(f.ctx, enabled_bits, enabled_name, index);
    if (enabled_name[0] == '\0')
        std::snprintf(enabled, sizeof enabled, "false");
    else if (equal(f, enabled_name, name))
        std::snprintf(enabled, sizeof enabled, "true");
    else
        YMAP_TRACE(f, "OCLLDP yfw_strcmp_s failed foren_cap_name %s cap_name %s", enabled_name, name);
}

terrno write_enabled(frame &f, node *out, const char *enabled) {
    YMAP_TRACE(f, "OCLLDP cap enabled value %s", enabled);
    return write(f, out, "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability/state/enabled",
                 enabled);
}

bool is_wanted(frame &f, const char *name, const char *filter) {
    if (filter == nullptr)
        return true;
    if (!equal(f, filter, name))
        return false;
    YMAP_TRACE(f, "OCLLDP Match found Cap_name %s", name);
    return true;
}

// Returns the status of the last enabled leaf, or `status` when no capability is wanted.
terrno write_capabilities(frame &f, node *out, uint32_t system_bits, uint32_t enabled_bits, const char *filter,
                          terrno status) {
    char enabled[50] = {};
    for (int32_t i = 0; i < num_lldp_caps; i++) {
        capability_text name = {};
        oclldp_get_ne_cap_name(f.ctx, system_bits, name, i);
        if (name[0] == '\0')
            continue;
        YMAP_TRACE(f, "OCLLDP: Peer capability name %s", name);
        if (!is_wanted(f, name, filter))
            continue;
        write_capability_name(f, out, name);
        enabled_text(f, enabled_bits, i, name, enabled);
        status = write_enabled(f, out, enabled);
    }
    return status;
}

terrno map_capabilities(frame &f, node *out) {
    const char *combined = nullptr;
    terrno status = yfw_map_get_node_info(f.ctx, "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib",
                                          "combined-capabilities", &combined);
    if (combined == nullptr) {
        YMAP_ERROR(f, "OCLLDP: NULL combined capability from peer");
        return status;
    }
    const auto both = static_cast<uint32_t>(std::strtol(combined, nullptr, 10));
    yfw_req_ctx *request = f.ctx->req_ctx;
    const char *filter = request != nullptr ? static_cast<const char *>(request->common_data_ptr) : nullptr;
    if (both >> 16 != 0)
        status = write_capabilities(f, out, both >> 16, both & 0xffff, filter, status);
    if (request != nullptr) {
        std::free(request->common_data_ptr);
        request->common_data_ptr = nullptr;
    }
    return status;
}

terrno map_capabilities_if_stitched(frame &f, const node *in, node *out) {
    return is_stitched() ? ymap_oc_enabled_capabilities_man(f.ctx, in, out) : YMAP_OK;
}

// ---- custom TLVs ----------------------------------------------------------------------------------------

#define CUSTOM_TLV "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv"

terrno map_custom_tlv(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return skip_unstitched(f);
    return add(f, out, CUSTOM_TLV, oc_ns, nullptr, {.source = is_delete(in) ? in : nullptr, .list_entry = 1});
}

terrno map_oui(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return YMAP_OK;
    write(f, out, CUSTOM_TLV "/type", "127"); // organizationally specific, IEEE 802.1AB clause 8.6
    copy(f, in, out, CUSTOM_TLV "/oui");
    write(f, out, CUSTOM_TLV "/state/type", "127");
    const terrno status = copy(f, in, out, CUSTOM_TLV "/state/oui");
    YMAP_TRACE(f, "OCLLDP type/OUI %s keys & values mapped", in->value);
    return status;
}

terrno map_oui_subtype(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return YMAP_OK;
    copy(f, in, out, CUSTOM_TLV "/oui-subtype");
    return copy(f, in, out, CUSTOM_TLV "/state/oui-subtype");
}

// RFC 4648 section 4. Returns heap text, or NULL when out of memory.
char *base64(const char *bytes, size_t length, size_t encoded_length) {
    static constexpr char alphabet[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    char *text = static_cast<char *>(std::calloc(encoded_length + 1, 1));
    if (text == nullptr)
        return nullptr;
    char *next = text;
    const auto byte = [&](size_t i) { return i < length ? static_cast<unsigned char>(bytes[i]) : 0u; };
    for (size_t i = 0; i < length; i += 3) {
        const unsigned three = byte(i) << 16 | byte(i + 1) << 8 | byte(i + 2);
        *next++ = alphabet[three >> 18];
        *next++ = alphabet[three >> 12 & 63];
        *next++ = i + 1 < length ? alphabet[three >> 6 & 63] : '=';
        *next++ = i + 2 < length ? alphabet[three & 63] : '=';
    }
    return text;
}

terrno map_tlv_value(frame &f, const node *in, node *out) {
    if (!is_stitched())
        return YMAP_OK;
    const size_t length = in->value != nullptr ? std::strlen(in->value) : 0;
    const size_t encoded_length = 4 * ((length + 2) / 3);
    char *encoded = length != 0 ? base64(in->value, length, encoded_length) : nullptr;
    if (encoded != nullptr)
        YMAP_TRACE(f, "OCLLDP encoded data %s input data %sinput_len %zu out_len %zu", encoded, in->value,
                   length, encoded_length);
    const terrno status = write(f, out, CUSTOM_TLV "/state/value", encoded);
    std::free(encoded);
    return status;
}

} // namespace
} // namespace oclldp

using namespace oclldp;

terrno ymap_chassis_id_subtype_mapping_util(yfw_map_ctx ctx, const node *leaf, char *name) {
    YMAP_SITE("terrno ", ymap_chassis_id_subtype_mapping_util,
              "(yfw_map_ctx, const struct tidl_yfw_datatree *, char *)");
    return in_frame(site, ctx, leaf != nullptr && name != nullptr, null_nodes::null_arguments,
                    [&](frame &f) -> terrno {
                        const char *found = type_name(chassis_id_types, leaf->value);
                        if (found == nullptr) {
                            YMAP_TRACE(f, "Invalid chassis id subtype");
                            return YMAP_ERR_MAP_FAILED;
                        }
                        std::snprintf(name, OCLLDP_CHASSIS_TEXT_SIZE, "%s", found);
                        return YMAP_OK;
                    });
}

terrno oclldp_get_ne_cap_name(yfw_map_ctx ctx, uint32_t capabilities, char *name, int32_t index) {
    YMAP_SITE("terrno ", oclldp_get_ne_cap_name, "(yfw_map_ctx, uint32_t, char *, int32_t)");
    return in_frame(site, ctx, name != nullptr, null_nodes::null_arguments,
                    [&](frame &f) { return append_capability(f, capabilities, name, index); });
}

// clang-format off

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_detail_lldpneighbor, invalid_arguments, map_neighbor(f, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_deviceid, invalid_arguments, map_state_id(f, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_holdtime, invalid_arguments, map_hold_time(f, in, out))

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpinfo_chassisidsubtype, invalid_arguments, map_chassis_id_type(f, in, out, "/lldp/state/chassis-id-type"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_chassisidsubtype, invalid_arguments, map_neighbor_chassis_id_type(f, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_portidsubtype, invalid_arguments, map_port_id_type(f, in, out))

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_combinedcapabilities, invalid_arguments, map_capabilities_if_stitched(f, in, out))
YMAP_DEFINE(ymap_oc_enabled_capabilities_man, invalid_arguments, map_capabilities(f, out))
YMAP_DEFINE(ymap_oc_enabled_capabilities_man_cb, invalid_arguments, YMAP_OK)

YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_list_lvla_lldp_orgdeftlvlist_lldporgdeftlventry, invalid_arguments, map_custom_tlv(f, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldporgdeftlventry_oui, null_arguments, map_oui(f, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldporgdeftlventry_tlvsubtype, invalid_arguments, map_oui_subtype(f, in, out))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldporgdeftlventry_tlvvalue, invalid_arguments, map_tlv_value(f, in, out))

// clang-format on
