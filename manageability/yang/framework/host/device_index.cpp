#include "host/device_index.h"

#include <algorithm>

namespace yfw::host {
namespace {

constexpr size_t most_outlines = 8;

} // namespace

const std::unordered_set<std::string> &
DeviceIndex::interfaces(const std::function<std::unordered_set<std::string>()> &find) {
    if (!interfaces_.has_value())
        interfaces_ = find();
    return *interfaces_;
}

const Outline &DeviceIndex::outline(OutlineRequest request, const std::function<Outline()> &make) {
    const auto known = std::find_if(outlines_.begin(), outlines_.end(),
                                    [&](const auto &outline) { return outline.first == request; });
    if (known != outlines_.end()) {
        outlines_.splice(outlines_.begin(), outlines_, known);
        return outlines_.front().second;
    }
    Outline made = make();
    if (outlines_.size() == most_outlines)
        outlines_.pop_back();
    return outlines_.emplace_front(std::move(request), std::move(made)).second;
}

std::shared_ptr<DeviceIndex> KeptDeviceIndex::of(const sources::Snapshot &native) {
    const bool has_same_configuration =
        native.configuration.has_value() == configuration_.has_value() &&
        (!configuration_.has_value() || configuration_->lock() == *native.configuration);
    if (index_ != nullptr && data_.lock() == native.data && has_same_configuration)
        return index_;
    data_ = native.data;
    configuration_ = native.configuration;
    index_ = std::make_shared<DeviceIndex>();
    return index_;
}

} // namespace yfw::host
