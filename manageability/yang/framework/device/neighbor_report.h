// Reports changes of the entries that the mapping's notification covers, in OpenConfig terms.
#ifndef YFW_DEVICE_NEIGHBOR_REPORT_H
#define YFW_DEVICE_NEIGHBOR_REPORT_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "device/managed_device.h"

namespace yfw::device {

std::string_view to_string(sources::NeighborChange change);

struct NeighborReport {
    sources::NeighborChange change = sources::NeighborChange::updated;
    yang::DataTree answer;              // the neighbor as a read would return it, from the top down
    const lyd_node *neighbor = nullptr; // its entry in the answer

    // The entry's path, without the module name.
    std::string path() const;
    // The first key of each list down to the entry, outermost first.
    std::vector<std::string> keys() const;
};

// Maps a changed neighbor in the same way as a read does. Borrows the device. Immutable: any thread may call
// report(), which waits while the mapping serves another request.
class NeighborReporter {
public:
    // Throws Error when the schemas lack the entry that the mapping describes.
    explicit NeighborReporter(ManagedDevice &device);

    // Nothing when the mapping finds no neighbor in the event, or does not report changes. Throws Error.
    std::optional<NeighborReport> report(sources::NeighborEvent event) const;

private:
    ManagedDevice &device_;
    const lysc_node *entry_ = nullptr; // NULL: the mapping does not report changes
    host::ReadRequest wanted_;
};

} // namespace yfw::device

#endif
