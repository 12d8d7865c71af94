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
// namespace.
inline void qualify_identity(node *added) {
    if (added == nullptr)
        return;
    added->value_ns = yfw_strdup(oc_types_ns, "YFW OCLLDP NS");
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
