// Settings of a device that differ from its configuration, and that a read of it does not tell.
#ifndef YFW_DEVICE_UNTOLD_DRIFT_H
#define YFW_DEVICE_UNTOLD_DRIFT_H

#include <set>
#include <string>
#include <vector>

#include "device/drift.h"
#include "host/native_paths.h"
#include "sources/native_target.h"

namespace yfw::device {

// Those of the pending settings that are not behind the drift that was found, by their native paths. `found`:
// the paths of that drift; `edits`: the native edits that its leaves are mapped to. A setting of a native list
// entry is behind it when a leaf of an OpenConfig entry with one of its keys is.
std::vector<Drift> untold_drift(const std::vector<sources::PendingSetting> &pending,
                                const std::set<std::string> &found, const std::vector<host::NativePath> &edits);

} // namespace yfw::device

#endif
