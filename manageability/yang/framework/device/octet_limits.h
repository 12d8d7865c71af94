// Limits on the length of texts in octets, which YANG cannot express.
#ifndef YFW_DEVICE_OCTET_LIMITS_H
#define YFW_DEVICE_OCTET_LIMITS_H

#include <libyang/libyang.h>

namespace yfw::device {

// Holds the values of the tree to the extension max-octets of their leaves. Throws Error (invalid_value, at the
// node).
void check_octets(const lyd_node *data);

} // namespace yfw::device

#endif
