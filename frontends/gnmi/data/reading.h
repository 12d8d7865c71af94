// Reads what patterns select of a device.
#ifndef YFW_FRONTENDS_GNMI_DATA_READING_H
#define YFW_FRONTENDS_GNMI_DATA_READING_H

#include <memory>
#include <vector>

#include "device/service.h"
#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/paths/path_pattern.h"

namespace yfw::gnmi {

// At least what the patterns select, of one moment, and nothing that the rules (NULL: none) hide. A
// configuration leaf that a pattern names has its default where it is in use. Throws Error.
std::shared_ptr<const Snapshot> read_snapshot(device::Service &service, const access::UserRules *rules,
                                              const std::vector<PathPattern> &patterns,
                                              host::Content content = host::Content::all);

} // namespace yfw::gnmi

#endif
