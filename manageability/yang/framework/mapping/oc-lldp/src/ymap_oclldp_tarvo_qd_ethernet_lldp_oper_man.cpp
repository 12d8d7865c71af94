// The hand-written callbacks of native LLDP operational data: counters, interface state, and the plain leaves
// of a neighbor. Neighbor entries, types, capabilities and custom TLVs follow in
// ymap_oclldp_tarvo_qd_ethernet_lldp_oper_neighbors_man.cpp.
#include <cstdlib>
#include <cstring>
#include <iterator>

#include "neighbor_copy.h"

namespace oclldp {
namespace {

// ---- global counters ------------------------------------------------------------------------------------

// Counts the native nodes in the response; keeps the count when the request does not say.
void count_nodes(yfw_map_ctx ctx) {
    if (ctx->req_ctx == nullptr)
        return;
    for (const yfw_request_subtree &subtree : ctx->req_ctx->subtrees) {
        if (subtree.path == nullptr || yfw_map_do_these_match(subtree.path, "/lldp/nodes") == 0)
            continue;
        gl_subtree_count = subtree.node != nullptr ? static_cast<int32_t>(subtree.node->child_count) : 0;
        return;
    }
}

terrno sum_counter(frame &f, const node *in, node *out, const char *path, size_t index) {
    uint32_t &sum = gl_stats[index];
    uint32_t &counted = stat_count[index];
    if (counted == 0)
        count_nodes(f.ctx);
    sum += static_cast<uint32_t>(std::strtol(in->value != nullptr ? in->value : "", nullptr, 10));
    counted++;
    char text[50] = {};
    // Signed, on purpose: sums of 2^31 and more come out negative.
    std::snprintf(text, sizeof text, "%d", static_cast<int32_t>(sum));
    const terrno status = write(f, out, path, text);
    if (static_cast<int32_t>(counted) >= gl_subtree_count) {
        sum = 0;
        counted = 0;
        gl_subtree_count = 0;
    }
    return status;
}

// The native value is an age in seconds.
terrno map_last_clear(frame &f, const node *in, node *out, const char *path) {
    const auto seconds =
        static_cast<uint32_t>(std::strtoul(in->value != nullptr ? in->value : "", nullptr, 10));
    return write(f, out, path, oclldp_convert_seconds_to_timestamp(seconds));
}

// ---- interface state ------------------------------------------------------------------------------------

constexpr char native_interface[] = "/lldp/nodes/node/interfaces/interface";
constexpr char native_stats[] = "/lldp/nodes/node/interfaces/interface/interface-stats";

struct counter_row {
    const char *native;
    const char *openconfig;
};

// In the order in which the counters are written. This last-clear is the native number of seconds; the
// counter's own callback overwrites it with the timestamp.
constexpr counter_row counter_rows[] = {
    {"received-packets", "/lldp/interfaces/interface/state/counters/frame-in"},
    {"transmitted-packets", "/lldp/interfaces/interface/state/counters/frame-out"},
    {"bad-packets", "/lldp/interfaces/interface/state/counters/frame-error-in"},
    {"discarded-packets", "/lldp/interfaces/interface/state/counters/frame-discard"},
    {"discarded-tl-vs", "/lldp/interfaces/interface/state/counters/tlv-discard"},
    {"unrecognized-tl-vs", "/lldp/interfaces/interface/state/counters/tlv-unknown"},
    {"transmit-failures", "/lldp/interfaces/interface/state/counters/frame-error-out"},
    {"last-clear", "/lldp/interfaces/interface/state/counters/last-clear"},
};

const char *native_value(yfw_map_ctx ctx, const char *path, const char *leaf) {
    const char *value = nullptr;
    yfw_map_get_node_info(ctx, path, leaf, &value);
    return value;
}

bool is_zero(const char *value) {
    return value != nullptr && std::strcmp(value, "0") == 0;
}

terrno write_state(frame &f, node *entry, const char *path, const char *value) {
    return add(f, entry, path, oc_ns, value, {.flags = 32});
}

terrno populate_interface_state(frame &f, node *entry) {
    if (!is_get(f.ctx))
        return YMAP_OK;
    const char *name = native_value(f.ctx, native_interface, "interface-name");
    const char *tx = native_value(f.ctx, native_interface, "tx-enabled");
    const char *rx = native_value(f.ctx, native_interface, "rx-enabled");
    const char *counters[std::size(counter_rows)];
    for (size_t i = 0; i < std::size(counter_rows); i++)
        counters[i] = native_value(f.ctx, native_stats, counter_rows[i].native);
    YMAP_TRACE(f, "OCLLDP: get-oper int enabled reverse map:intf-name %s tx-enabled %s rx-enabled %s", name, tx,
               rx);

    const bool enabled = !(is_zero(tx) && is_zero(rx));
    char text[50] = {};
    std::snprintf(text, sizeof text, "%s", enabled ? "true" : "false");
    YMAP_TRACE(f, "OCLLDP: lldp_enabled %s lldp_en_fl %s", text, enabled ? "true" : "false");

    write_state(f, entry, "/lldp/interfaces/interface/state/name", name);
    write_state(f, entry, "/lldp/interfaces/interface/state/enabled", text);
    terrno status = YMAP_OK;
    for (size_t i = 0; i < std::size(counter_rows); i++)
        status = write_state(f, entry, counter_rows[i].openconfig, counters[i]);
    YMAP_TRACE(f, "OCLLDP: rev map state/enebled set tointf_name %s enabled %s", name, text);
    return status;
}

} // namespace
} // namespace oclldp

using namespace oclldp;

terrno ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(yfw_map_ctx ctx, const node *in, node *out,
                                                            const char *path, int32_t index) {
    YMAP_SITE(
        "terrno ", ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util,
        "(yfw_map_ctx, const struct tidl_yfw_datatree *, struct tidl_yfw_datatree *, const char *, int32_t)");
    const bool usable = in != nullptr && out != nullptr && index >= 0 && index < OCLLDP_COUNTERS;
    return in_frame(site, ctx, usable, null_nodes::null_arguments,
                    [&](frame &f) { return sum_counter(f, in, out, path, static_cast<size_t>(index)); });
}

// clang-format off

// Global counters, summed over the nodes; the index is the counter's place in the sums.
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_transmittedpackets, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/frame-out", 0))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_agedoutentries, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/entries-aged-out", 1))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_discardedpackets, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/frame-discard", 2))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_badpackets, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/frame-error-in", 3))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_receivedpackets, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/frame-in", 4))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_discardedtlvs, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/tlv-discard", 5))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_unrecognizedtlvs, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/tlv-unknown", 6))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_acceptedtlvs, null_arguments, ymap_qo_oclldp_tarvoqdethernetlldpoper_statsics_util(f.ctx, in, out, "/lldp/state/counters/tlv-accepted", 7))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_statistics_lastclear, null_arguments, map_last_clear(f, in, out, "/lldp/state/counters/last-clear"))

// Interfaces.
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_interfacestats_lastclear, invalid_arguments, map_last_clear(f, in, out, "/lldp/interfaces/interface/state/counters/last-clear"))
YMAP_DEFINE(oclldp_interface_state_container_populate_man_cb, null_arguments, populate_interface_state(f, out))
YMAP_DEFINE(ymap_qd_lldp_tx_operman_cb, null_arguments, YMAP_OK)

// Neighbor leaves copied to OpenConfig once the neighbor's entry is there.
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_addresstype, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/management-address-type"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_ipv4address, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/management-address"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_address_ipv6address, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/management-address"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_portdescription, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/port-description"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_systemname, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/system-name"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_systemdescription, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/system-description"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_lastupdate, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/last-update"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_detail_age, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/age"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_chassisid, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/chassis-id"))
YMAP_DEFINE(ymap_qo_oclldp_tarvoqdethernetlldpoper_leaf_lvla_lldp_lldpneighbor_portiddetail, invalid_arguments, copy_if_stitched(f, in, out, "/lldp/interfaces/interface/neighbors/neighbor/state/port-id"))

// clang-format on
