// What both directions know of the state that this mapping answers.
#ifndef OCEXTRA_STATE_H
#define OCEXTRA_STATE_H

#include "mapping/oc-lldp/src/tree.h"

namespace ocextra {

// A TLV that can be suppressed: its container below the native /lldp/tlv-select, and its OpenConfig identity.
struct tlv_row {
    const char *native;
    const char *identity;
};

inline constexpr tlv_row tlv_rows[] = {
    {"system-name", "SYSTEM_NAME"},
    {"port-description", "PORT_DESCRIPTION"},
    {"system-description", "SYSTEM_DESCRIPTION"},
    {"system-capabilities", "SYSTEM_CAPABILITIES"},
    {"management-address", "MANAGEMENT_ADDRESS"},
};

// Whether the request is a read whose answer is to contain state.
inline bool reads_state(yfw_map_ctx ctx) {
    return oclldp::is_get(ctx) && ctx->req_ctx->request->req_content != YFW_CONTENT_CONFIG;
}

// The child of this name and namespace; NULL when there is none, or no parent.
inline const oclldp::node *child_of(const oclldp::node *parent, const char *ns, const char *name) {
    if (parent != nullptr)
        for (const oclldp::node &child : oclldp::children_of(parent))
            if (oclldp::match(child.name, name) && oclldp::match(child.ns, ns))
                return &child;
    return nullptr;
}

} // namespace ocextra

#endif
