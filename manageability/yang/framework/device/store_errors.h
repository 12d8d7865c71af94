// Failures of the store of commits, as users are told of them.
#ifndef YFW_DEVICE_STORE_ERRORS_H
#define YFW_DEVICE_STORE_ERRORS_H

#include "base/error.h"
#include "commits/commit_log.h"

namespace yfw::device {

// Runs what may fail in the store, so that its failure reaches the user like any other.
template <class Work> auto in_store(Work &&work) {
    try {
        return work();
    } catch (const commits::StoreError &error) {
        throw Error(ErrorTag::operation_failed, "", error.what());
    }
}

} // namespace yfw::device

#endif
