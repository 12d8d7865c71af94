// Reports failures of the commit store to users.
#ifndef YFW_DEVICE_STORE_ERRORS_H
#define YFW_DEVICE_STORE_ERRORS_H

#include "base/error.h"
#include "commits/commit_log.h"

namespace yfw::device {

// Runs `work` and converts the store's errors to Error.
template <class Work> auto in_store(Work &&work) {
    try {
        return work();
    } catch (const commits::StoreError &error) {
        throw Error(ErrorTag::operation_failed, "", error.what());
    }
}

} // namespace yfw::device

#endif
