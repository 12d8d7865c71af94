// Native responses: writes the state of the device as a whole. The node in hand may be empty, for a device that
// has no LLDP configuration.
#include <cstring>

#include "mapping/oc-extra/include/ocextra_plugin.h"
#include "mapping/oc-lldp/src/oc_copy.h"
#include "state.h"

using namespace oclldp;

namespace ocextra {
namespace {

const char *value_of(const node *in, const char *name) {
    const node *leaf = child_of(in, cfg_ns, name);
    return leaf != nullptr ? leaf->value : nullptr;
}

bool is_true(const char *value) {
    return value != nullptr && std::strcmp(value, "true") == 0;
}

bool is_suppressed(const node *lldp, const tlv_row &row) {
    return is_true(value_of(child_of(child_of(lldp, cfg_ns, "tlv-select"), cfg_ns, row.native), "disable"));
}

bool suppresses_any(const node *lldp) {
    for (const tlv_row &row : tlv_rows)
        if (is_suppressed(lldp, row))
            return true;
    return false;
}

// The LLDP mapping takes a timer and a suppressed TLV as "on" where the switch itself is not set; so the leaf
// reads the same by itself as in a read of everything.
bool is_on(const node *lldp) {
    if (const char *enable = value_of(lldp, "enable"))
        return is_true(enable);
    return value_of(lldp, "timer") != nullptr || suppresses_any(lldp);
}

terrno write_identity(frame &f, node *out, const char *identity) {
    node *added = nullptr;
    const terrno status = add(f, out, "/lldp/state/suppress-tlv-advertisement", oc_ns, identity,
                              {.slot = &added, .list_entry = 1});
    qualify_identity(added);
    return status;
}

terrno write_state(frame &f, const node *lldp, node *out) {
    if (!reads_state(f.ctx))
        return YMAP_OK;
    if (children_missing(lldp))
        return no_subtrees(f);
    if (const terrno status = write(f, out, "/lldp/state/enabled", is_on(lldp) ? "true" : "false");
        status != YMAP_OK)
        return status;
    if (const node *holdtime = child_of(lldp, cfg_ns, "holdtime"))
        if (const terrno status =
                ymap_qo_ocextra_tarvoqdethernetlldpcfg_leaf_lvla_lldp_holdtime(f.ctx, holdtime, out);
            status != YMAP_OK)
            return status;
    for (const tlv_row &row : tlv_rows)
        if (is_suppressed(lldp, row))
            if (const terrno status = write_identity(f, out, row.identity); status != YMAP_OK)
                return status;
    return YMAP_OK;
}

} // namespace
} // namespace ocextra

using namespace ocextra;

YMAP_DEFINE(ymap_qo_ocextra_tarvoqdethernetlldpcfg_lvla_lldp, invalid_arguments, write_state(f, in, out))
YMAP_DEFINE(ymap_qo_ocextra_tarvoqdethernetlldpcfg_leaf_lvla_lldp_holdtime, invalid_arguments,
            has_text(in->value) ? copy(f, in, out, "/lldp/state/ttl") : YMAP_OK)
