// Writes native values to OpenConfig leaves.
#ifndef OCLLDP_OC_COPY_H
#define OCLLDP_OC_COPY_H

#include "namespaces.h"
#include "request_scope.h"

namespace oclldp {

// Adds an OpenConfig leaf with a value.
inline terrno write(frame &f, node *out, const char *path, const char *value) {
    return add(f, out, path, oc_ns, value);
}

// Copies the native value to one OpenConfig leaf.
inline terrno copy(frame &f, const node *in, node *out, const char *path) {
    return write(f, out, path, in->value);
}

// Marks the value of an added leaf as an identity of the types module. The output tree owns the copy of the
// namespace. The framework may have given back a node that carries one already; without memory it keeps that.
inline void qualify_identity(node *added) {
    if (added == nullptr)
        return;
    char *ns = yfw_strdup(oc_types_ns, "YFW OCLLDP NS");
    if (ns == nullptr)
        return;
    if ((added->framework_flags & YFW_FW_HAS_VALUE_NS) != 0 && added->value_ns != nullptr)
        qdos_named_free(added->value_ns);
    added->value_ns = ns;
    added->framework_flags |= YFW_FW_HAS_VALUE_NS;
}

// Writes a configuration leaf when the answer is to contain configuration.
inline terrno write_config(frame &f, node *out, const char *path, const char *value) {
    return wants_config_copy(f.ctx) ? write(f, out, path, value) : YMAP_OK;
}

inline terrno copy_config(frame &f, const node *in, node *out, const char *path) {
    return write_config(f, out, path, in->value);
}

} // namespace oclldp

#endif
