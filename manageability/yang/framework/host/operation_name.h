// The names of native operations.
#ifndef YFW_HOST_OPERATION_NAME_H
#define YFW_HOST_OPERATION_NAME_H

#include "host/native_paths.h"

namespace yfw::host {

// What an edit does with its native node: "merge", "replace", "create", "delete" or "remove" (RFC 6241
// section 7.2).
const char *operation_name(const NativePath &path);

} // namespace yfw::host

#endif
