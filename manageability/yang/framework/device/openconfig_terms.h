// Native errors in OpenConfig terms.
#ifndef YFW_DEVICE_OPENCONFIG_TERMS_H
#define YFW_DEVICE_OPENCONFIG_TERMS_H

#include <string>
#include <vector>

#include "base/error.h"
#include "host/native_paths.h"

namespace yfw::device {

// The error about a native node as one about the OpenConfig node that it was mapped from; the same error when
// that is not known.
Error in_openconfig_terms(const Error &error, const std::vector<host::NativePath> &edits);

// Runs `work` and converts its errors so.
template <class Work> auto with_openconfig_errors(const std::vector<host::NativePath> &edits, Work &&work) {
    try {
        return work();
    } catch (const Error &error) {
        throw in_openconfig_terms(error, edits);
    }
}

} // namespace yfw::device

#endif
