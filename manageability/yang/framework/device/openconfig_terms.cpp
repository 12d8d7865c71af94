#include "device/openconfig_terms.h"

#include <algorithm>

namespace yfw::device {
namespace {

// Strips module names and keys from a data path.
std::string schema_path(const std::string &path) {
    std::string plain;
    for (size_t i = 0; i < path.size(); i++) {
        if (path[i] == '[')
            i = std::min(path.find("']", i), path.size() - 2) + 1;
        else if (path[i] == ':')
            plain.resize(plain.rfind('/') + 1);
        else
            plain += path[i];
    }
    return plain;
}

} // namespace

Error in_openconfig_terms(const Error &error, const std::vector<host::NativePath> &edits) {
    const std::string path = schema_path(error.path());
    for (const host::NativePath &edit : edits)
        if (edit.path == path && !edit.origin.empty())
            return Error(error.tag(), edit.origin, error.path() + ": " + error.what(), error.status());
    return error;
}

} // namespace yfw::device
