// The device that a request is about: its native data, and what the platform asks of it.
#ifndef YFW_HOST_DEVICE_SNAPSHOT_H
#define YFW_HOST_DEVICE_SNAPSHOT_H

#include <optional>
#include <string>
#include <unordered_set>
#include <vector>

#include "platform/device_view.h"
#include "sources/native_source.h"
#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::host {

// Native data at one moment. Borrows the schemas.
class DeviceSnapshot final : public platform::DeviceView {
public:
    DeviceSnapshot(const yang::Schemas &schemas, sources::Snapshot native)
        : schemas_(schemas), native_(std::move(native)) {}

    // The data below a native top node; NULL when the device has none.
    const lyd_node *top(const lysc_node *schema) const;

    std::optional<bool> global_lldp_enabled() const override;
    std::vector<std::string> interfaces_with_lldp_configuration() const override;
    // An interface exists when it is configured as active or when it has operational data.
    bool interface_exists(std::string_view display_name) const override;

private:
    void collect_interfaces() const;

    const yang::Schemas &schemas_;
    sources::Snapshot native_;
    mutable std::optional<std::unordered_set<std::string>> interfaces_; // filled when first asked for
};

} // namespace yfw::host

#endif
