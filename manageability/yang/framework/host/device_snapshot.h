// The device a request concerns: its native data, and the answers to the platform's questions.
#ifndef YFW_HOST_DEVICE_SNAPSHOT_H
#define YFW_HOST_DEVICE_SNAPSHOT_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/device_index.h"
#include "host/device_questions.h"
#include "platform/device_view.h"
#include "sources/native_source.h"
#include "yang/instance_tree.h"

namespace yfw::host {

// Native data at one moment. Borrows the questions.
class DeviceSnapshot final : public platform::DeviceView {
public:
    // `index`: that of the native data.
    DeviceSnapshot(const DeviceQuestions &questions, sources::Snapshot native,
                   std::shared_ptr<DeviceIndex> index = std::make_shared<DeviceIndex>())
        : questions_(questions), native_(std::move(native)), index_(std::move(index)) {}

    // The data below a native top node; NULL when the device has none.
    const yang::InstanceNode *top(const lysc_node *schema) const;

    DeviceIndex &index() const { return *index_; }

    std::optional<bool> enabled_globally() const override;
    std::vector<std::string> configured_interfaces() const override;
    bool interface_exists(std::string_view display_name) const override;

private:
    template <class Visit> void for_each(const lysc_node *schema, Visit &&visit) const;
    std::vector<std::string> names(const DeviceQuestions::Entries &entries) const;

    const DeviceQuestions &questions_;
    sources::Snapshot native_;
    std::shared_ptr<DeviceIndex> index_;
};

} // namespace yfw::host

#endif
