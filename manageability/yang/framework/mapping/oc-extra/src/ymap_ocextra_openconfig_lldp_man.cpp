// OpenConfig requests: which native paths hold the state that is asked for. Edits, and reads of configuration,
// ask for nothing.
#include <algorithm>
#include <cstdio>

#include "mapping/oc-extra/include/ocextra_plugin.h"
#include "mapping/oc-lldp/src/namespaces.h"
#include "state.h"

using namespace oclldp;

namespace ocextra {
namespace {

// A leaf with a value only narrows what is selected beside it, but it has to be read for that.
bool only_narrows(const node &child) {
    return (child.node_flags & YFW_NODE_HAS_VALUE) != 0;
}

// A node is selected whole unless something below it is selected.
bool is_whole(const node *in) {
    const child_view children = children_of(in);
    return std::all_of(children.begin(), children.end(), only_narrows);
}

bool selects(const node *in, const char *name) {
    return is_whole(in) || child_of(in, oc_ns, name) != nullptr;
}

// A node that is answered, and its walker.
struct child_row {
    const char *name;
    yfw_map_callback walker;
};

// Every selected child; a node that is selected whole stands for its children.
template <size_t count> terrno walk(frame &f, const node *in, node *out, const child_row (&rows)[count]) {
    if (children_missing(in))
        return no_subtrees(f);
    const bool whole = is_whole(in);
    for (const child_row &row : rows) {
        const node *child = child_of(in, oc_ns, row.name);
        if (child == nullptr && !whole)
            continue;
        if (const terrno status = row.walker(f.ctx, child != nullptr ? child : in, out); status != YMAP_OK)
            return status;
    }
    return YMAP_OK;
}

terrno ask(frame &f, node *out, const char *path, const char *ns = cfg_ns) {
    return add(f, out, path, ns, nullptr);
}

terrno ask_for_suppressed(frame &f, node *out) {
    for (const tlv_row &row : tlv_rows) {
        char path[100];
        std::snprintf(path, sizeof path, "/lldp/tlv-select/%s/disable", row.native);
        if (const terrno status = ask(f, out, path); status != YMAP_OK)
            return status;
    }
    return YMAP_OK;
}

// A timer and a suppressed TLV imply that LLDP is on.
terrno ask_for_enabled(frame &f, node *out) {
    for (const char *path : {"/lldp/enable", "/lldp/timer"})
        if (const terrno status = ask(f, out, path); status != YMAP_OK)
            return status;
    return ask_for_suppressed(f, out);
}

#define ANNOUNCEMENT "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor"
#define ADDRESS_ENTRY ANNOUNCEMENT "/detail/network-addresses/lldp-addr-entry"

terrno ask_for_address(frame &f, node *out) {
    for (const char *path : {ADDRESS_ENTRY "/address/address-type", ADDRESS_ENTRY "/address/ipv4-address",
                             ADDRESS_ENTRY "/address/ipv6-address"})
        if (const terrno status = ask(f, out, path, oper_ns); status != YMAP_OK)
            return status;
    return YMAP_OK;
}

// The number belongs to an entry that has the address as its key.
terrno ask_for_interface_number(frame &f, node *out) {
    if (const terrno status = ask_for_address(f, out); status != YMAP_OK)
        return status;
    return ask(f, out, ADDRESS_ENTRY "/if-num", oper_ns);
}

constexpr child_row state_rows[] = {
    {"enabled", ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_enabled},
    {"ttl", ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_ttl},
    {"suppress-tlv-advertisement", ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement},
};
constexpr child_row address_state_rows[] = {
    {"address", ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_address},
    {"interface-number", ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_interfacenumber},
};
constexpr child_row address_rows[] = {
    {"address", ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddress_address},
    {"state", ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddress_state},
};
constexpr child_row addresses_rows[] = {
    {"mgmt-address", ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddresses_mgmtaddress},
};
constexpr child_row neighbor_rows[] = {
    {"mgmt-addresses", ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbor_mgmtaddresses},
    {"capabilities", ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbor_capabilities},
};
constexpr child_row neighbors_rows[] = {
    {"neighbor", ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbors_neighbor},
};
constexpr child_row interface_rows[] = {
    {"neighbors", ymap_oq_ocextra_openconfiglldp_lvla_lldp_interface_neighbors},
};
constexpr child_row interfaces_rows[] = {
    {"interface", ymap_oq_ocextra_openconfiglldp_lvla_lldp_interfaces_interface},
};
constexpr child_row top_rows[] = {
    {"state", ymap_oq_ocextra_openconfiglldp_lvla_lldp_state},
    {"interfaces", ymap_oq_ocextra_openconfiglldp_lvla_lldp_interfaces},
};

terrno walk_top(frame &f, const node *in, node *out) {
    return reads_state(f.ctx) ? walk(f, in, out, top_rows) : YMAP_OK;
}

// What else a neighbor has is the LLDP mapping's, and needs nothing from here.
terrno walk_neighbor(frame &f, const node *in, node *out) {
    if (!children_missing(in) && !selects(in, "mgmt-addresses") && !selects(in, "capabilities"))
        return YMAP_OK;
    if (const terrno status = ymap_oq_ocextra_openconfiglldp_list_lvla_lldp_neighbors_neighbor(f.ctx, in, out);
        status != YMAP_OK)
        return status;
    return walk(f, in, out, neighbor_rows);
}

} // namespace
} // namespace ocextra

using namespace ocextra;

// clang-format off

YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp, invalid_arguments, walk_top(f, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state, invalid_arguments, walk(f, in, out, state_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_enabled, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled(f.ctx, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_ttl, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_ttl(f.ctx, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement(f.ctx, in, out))

YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_interfaces, invalid_arguments, walk(f, in, out, interfaces_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_interfaces_interface, invalid_arguments, walk(f, in, out, interface_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_interface_neighbors, invalid_arguments, walk(f, in, out, neighbors_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbors_neighbor, invalid_arguments, walk_neighbor(f, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbor_mgmtaddresses, invalid_arguments, walk(f, in, out, addresses_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddresses_mgmtaddress, invalid_arguments, walk(f, in, out, address_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddress_address, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_mgmtaddress_address(f.ctx, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_mgmtaddress_state, invalid_arguments, walk(f, in, out, address_state_rows))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_address, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_address(f.ctx, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_interfacenumber, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_interfacenumber(f.ctx, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_neighbor_capabilities, invalid_arguments, ymap_oq_ocextra_openconfiglldp_cont_lvla_lldp_neighbor_capabilities(f.ctx, in, out))

YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled, invalid_arguments, ask_for_enabled(f, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_ttl, invalid_arguments, ask(f, out, "/lldp/holdtime"))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement, invalid_arguments, ask_for_suppressed(f, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_list_lvla_lldp_neighbors_neighbor, invalid_arguments, ask(f, out, ANNOUNCEMENT "/port-id-detail", oper_ns))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_mgmtaddress_address, invalid_arguments, ask_for_address(f, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_address, invalid_arguments, ask_for_address(f, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_interfacenumber, invalid_arguments, ask_for_interface_number(f, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_cont_lvla_lldp_neighbor_capabilities, invalid_arguments, ask(f, out, ANNOUNCEMENT "/mib/combined-capabilities", oper_ns))

// clang-format on
