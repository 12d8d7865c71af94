// What requests have looked up in a device's native data, kept as long as the data stays the same.
#ifndef YFW_HOST_DEVICE_INDEX_H
#define YFW_HOST_DEVICE_INDEX_H

#include <functional>
#include <list>
#include <memory>
#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "host/entry_index.h"
#include "host/outline.h"
#include "host/request.h"
#include "sources/native_source.h"

namespace yfw::host {

// What an outline depends on besides the data.
struct OutlineRequest {
    const void *mapping; // only compared
    Content content;
    Selection selection;
    std::vector<const lysc_node *> native; // what is selected of the native data
    bool operator==(const OutlineRequest &) const = default;
};

// Borrows the native data. One thread at a time.
class DeviceIndex {
public:
    EntryIndex &entries() { return entries_; }

    // The names of all interfaces; `find` is called the first time.
    const std::unordered_set<std::string> &
    interfaces(const std::function<std::unordered_set<std::string>()> &find);

    // The outline for a request, made by `make` unless it was asked for recently. Valid until the next call.
    const Outline &outline(OutlineRequest request, const std::function<Outline()> &make);

private:
    EntryIndex entries_;
    std::optional<std::unordered_set<std::string>> interfaces_;
    std::list<std::pair<OutlineRequest, Outline>> outlines_; // asked for last, first
};

// Keeps the index of the data that was asked for last.
class KeptDeviceIndex {
public:
    std::shared_ptr<DeviceIndex> of(const sources::Snapshot &native);

private:
    std::weak_ptr<const yang::InstanceForest> data_;
    std::optional<std::weak_ptr<const yang::InstanceForest>> configuration_;
    std::shared_ptr<DeviceIndex> index_;
};

} // namespace yfw::host

#endif
