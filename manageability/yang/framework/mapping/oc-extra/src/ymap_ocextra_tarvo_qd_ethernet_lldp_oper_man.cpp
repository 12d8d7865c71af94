// Native responses: writes what neighbors announced and the LLDP mapping leaves out. A neighbor has the entry
// that the LLDP mapping gives it, so that the host makes one of the two.
#include <cstdlib>
#include <cstring>

#include "mapping/oc-extra/include/ocextra_plugin.h"
#include "mapping/oc-lldp/src/oc_copy.h"
#include "mapping/oc-lldp/src/qo_walker.h"
#include "state.h"

#define NATIVE_DETAIL "/lldp/nodes/node/neighbors/details/detail"
#define NATIVE_NEIGHBOR NATIVE_DETAIL "/lldp-neighbor"
#define NEIGHBOR "/lldp/interfaces/interface/neighbors/neighbor"

using namespace oclldp;

namespace ocextra {
namespace {

constexpr size_t text_size = 256; // as in the LLDP mapping, which cuts longer names and ids

// ---- neighbor entries -----------------------------------------------------------------------------------

terrno stitch(frame &f, node *out, const char *name, const char *id) {
    char interface[text_size] = {};
    yfw_strncpy_s(f.site.function, interface, text_size, name, text_size - 1);
    yfw_map_stitch record;
    std::memset(&record, 0, sizeof record);
    record.parent = out;
    record.kind_a = 1;
    record.kind_b = 2;
    std::snprintf(record.ns, sizeof record.ns, "%s", oc_ns);
    std::snprintf(record.keyed_path, sizeof record.keyed_path,
                  "/lldp/interfaces/interface[name=%s]/neighbors/neighbor[id=%s]/", interface, id);
    std::snprintf(record.list_path, sizeof record.list_path, NEIGHBOR);
    return yfw_map_stitch_list_to_list(f.ctx, &record);
}

// The id is the device, and its port where that is known. The placeholder for a device without a name is shown
// without its brackets.
terrno stitch_announcement(frame &f, node *out) {
    const char *name = nullptr;
    const char *device = nullptr;
    const char *port = nullptr;
    yfw_map_get_node_info(f.ctx, NATIVE_DETAIL, "interface-name", &name);
    yfw_map_get_node_info(f.ctx, NATIVE_DETAIL, "device-id", &device);
    yfw_map_get_node_info(f.ctx, NATIVE_NEIGHBOR, "port-id-detail", &port);
    if (name == nullptr || *name == '\0' || device == nullptr)
        return YMAP_STS_SUBTREE_DONE;
    char id[text_size] = {};
    std::snprintf(id, text_size, "%s%s%s", match(device, "[DISABLED]") ? "DISABLED" : device,
                  port != nullptr ? "#" : "", port != nullptr ? port : "");
    return id[0] != '\0' ? stitch(f, out, name, id) : terrno{YMAP_STS_SUBTREE_DONE};
}

// ---- management addresses -------------------------------------------------------------------------------

#define MGMT_ADDRESS NEIGHBOR "/mgmt-addresses/mgmt-address"

const char *text_of(const node *parent, const char *name) {
    const node *leaf = child_of(parent, oper_ns, name);
    return leaf != nullptr && has_text(leaf->value) ? leaf->value : nullptr;
}

// The address of the family that the entry names; the one that is there when it names none.
const char *address_of(const node *entry) {
    const node *address = child_of(entry, oper_ns, "address");
    const char *type = text_of(address, "address-type");
    const char *ipv4 = text_of(address, "ipv4-address");
    const char *ipv6 = text_of(address, "ipv6-address");
    const bool is_ipv6 = type != nullptr && match(type, "ipv6");
    return (is_ipv6 || ipv4 == nullptr) && ipv6 != nullptr ? ipv6 : ipv4;
}

terrno write_address(frame &f, const node *entry, node *out) {
    const char *address = address_of(entry);
    if (address == nullptr)
        return YMAP_OK;
    if (const terrno status = add(f, out, MGMT_ADDRESS, oc_ns, nullptr, {.list_entry = 1}); status != YMAP_OK)
        return status;
    for (const char *path : {MGMT_ADDRESS "/address", MGMT_ADDRESS "/state/address"})
        if (const terrno status = write(f, out, path, address); status != YMAP_OK)
            return status;
    const char *number = text_of(entry, "if-num");
    return number != nullptr ? write(f, out, MGMT_ADDRESS "/state/interface-number", number) : YMAP_OK;
}

// ---- the cable device -----------------------------------------------------------------------------------

#define CAPABILITY NEIGHBOR "/capabilities/capability"

// IEEE 802.1AB clause 8.5.8.1: what the neighbor has in the upper half of the number, what it uses in the lower
// one.
constexpr unsigned long cable_device = 1UL << 6;

terrno write_identity(frame &f, node *out, const char *path) {
    node *added = nullptr;
    const terrno status = add(f, out, path, oc_ns, "DOCSIS_CABLE_DEVICE", {.slot = &added});
    qualify_identity(added);
    return status;
}

// The LLDP mapping spells this one as no module does.
terrno write_cable_device(frame &f, const node *combined, node *out) {
    const unsigned long both = has_text(combined->value) ? std::strtoul(combined->value, nullptr, 10) : 0;
    if ((both >> 16 & cable_device) == 0)
        return YMAP_OK;
    if (const terrno status = add(f, out, CAPABILITY, oc_ns, nullptr, {.list_entry = 1}); status != YMAP_OK)
        return status;
    for (const char *path : {CAPABILITY "/name", CAPABILITY "/state/name"})
        if (const terrno status = write_identity(f, out, path); status != YMAP_OK)
            return status;
    return write(f, out, CAPABILITY "/state/enabled", (both & cable_device) != 0 ? "true" : "false");
}

// ---- the way there --------------------------------------------------------------------------------------

terrno pass(yfw_map_ctx, const node *, node *) {
    return YMAP_OK;
}

terrno pass_container(yfw_map_ctx, const node *, uint32_t, node *) {
    return YMAP_OK;
}

constexpr qo_level container_of(std::span<const qo_child> children) {
    return {
        .ns = oper_ns, .children = children, .augments = pass, .container = pass_container, .get_only = true};
}

constexpr qo_level list_of(std::span<const qo_child> children, const char *path,
                           yfw_map_callback callback = pass) {
    return {.ns = oper_ns,
            .children = children,
            .augments = pass,
            .list = callback,
            .list_path = path,
            .get_only = true};
}

// clang-format off

constexpr qo_level address_entry = list_of({}, NATIVE_NEIGHBOR "/detail/network-addresses/lldp-addr-entry", ymap_qo_ocextra_tarvoqdethernetlldpoper_list_lvla_lldp_networkaddresses_lldpaddrentry);
constexpr qo_child addresses_children[] = {level("lldp-addr-entry", address_entry)};
constexpr qo_level addresses = container_of(addresses_children);
constexpr qo_child neighbor_detail_children[] = {level("network-addresses", addresses)};
constexpr qo_level neighbor_detail = container_of(neighbor_detail_children);
constexpr qo_child mib_children[] = {leaf("combined-capabilities", ymap_qo_ocextra_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_combinedcapabilities)};
constexpr qo_level mib = container_of(mib_children);
constexpr qo_child neighbor_children[] = {level("detail", neighbor_detail), level("mib", mib)};
constexpr qo_level neighbor = list_of(neighbor_children, NATIVE_NEIGHBOR, ymap_qo_ocextra_tarvoqdethernetlldpoper_list_lvla_lldp_detail_lldpneighbor);
constexpr qo_child device_children[] = {level("lldp-neighbor", neighbor)};
constexpr qo_level device = list_of(device_children, NATIVE_DETAIL);
constexpr qo_child details_children[] = {level("detail", device)};
constexpr qo_level details = container_of(details_children);
constexpr qo_child neighbors_children[] = {level("details", details)};
constexpr qo_level neighbors = container_of(neighbors_children);
constexpr qo_child card_children[] = {level("neighbors", neighbors)};
constexpr qo_level card = list_of(card_children, "/lldp/nodes/node");
constexpr qo_child nodes_children[] = {level("node", card)};
constexpr qo_level nodes = container_of(nodes_children);
constexpr qo_child root_children[] = {level("nodes", nodes)};
constexpr qo_level root = container_of(root_children);

// clang-format on

} // namespace
} // namespace ocextra

using namespace ocextra;

// clang-format off

YMAP_DEFINE(ymap_qo_ocextra_tarvoqdethernetlldpoper_lvla_lldp, invalid_arguments, reads_state(f.ctx) ? walk_level(f, root, in, out) : YMAP_OK)
YMAP_DEFINE(ymap_qo_ocextra_tarvoqdethernetlldpoper_list_lvla_lldp_detail_lldpneighbor, invalid_arguments, stitch_announcement(f, out))
YMAP_DEFINE(ymap_qo_ocextra_tarvoqdethernetlldpoper_list_lvla_lldp_networkaddresses_lldpaddrentry, invalid_arguments, write_address(f, in, out))
YMAP_DEFINE(ymap_qo_ocextra_tarvoqdethernetlldpoper_leaf_lvla_lldp_mib_combinedcapabilities, invalid_arguments, write_cable_device(f, in, out))

// clang-format on
