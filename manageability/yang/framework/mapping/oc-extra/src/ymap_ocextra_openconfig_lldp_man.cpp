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

terrno walk_top(frame &f, const node *in, node *out) {
    if (!reads_state(f.ctx))
        return YMAP_OK;
    if (children_missing(in))
        return no_subtrees(f);
    const node *state = is_whole(in) ? in : child_of(in, oc_ns, "state");
    return state != nullptr ? ymap_oq_ocextra_openconfiglldp_lvla_lldp_state(f.ctx, state, out) : YMAP_OK;
}

terrno walk_state(frame &f, const node *in, node *out) {
    if (children_missing(in))
        return no_subtrees(f);
    if (selects(in, "enabled"))
        if (const terrno status = ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_enabled(f.ctx, in, out);
            status != YMAP_OK)
            return status;
    return selects(in, "suppress-tlv-advertisement")
               ? ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement(f.ctx, in, out)
               : YMAP_OK;
}

terrno ask(frame &f, node *out, const char *path) {
    return add(f, out, path, cfg_ns, nullptr);
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

} // namespace
} // namespace ocextra

using namespace ocextra;

// clang-format off

YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp, invalid_arguments, walk_top(f, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state, invalid_arguments, walk_state(f, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_enabled, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled(f.ctx, in, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_lvla_lldp_state_suppresstlvadvertisement, invalid_arguments, ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement(f.ctx, in, out))

YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled, invalid_arguments, ask_for_enabled(f, out))
YMAP_DEFINE(ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement, invalid_arguments, ask_for_suppressed(f, out))

// clang-format on
