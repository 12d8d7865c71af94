#include "host/operation_name.h"

namespace yfw::host {

const char *operation_name(const NativePath &path) {
    switch (path.operation) {
    case YFW_OP_REPLACE:
        return "replace";
    case YFW_OP_CREATE:
        return "create";
    case YFW_OP_DELETE:
        return "delete";
    case YFW_OP_REMOVE:
        return "remove";
    default:
        return "merge";
    }
}

} // namespace yfw::host
