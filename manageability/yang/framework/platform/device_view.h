// What the platform knows about the device's configuration and interfaces.
#ifndef PLATFORM_DEVICE_VIEW_H
#define PLATFORM_DEVICE_VIEW_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace yfw::platform {

// Implemented by the owner of the native data. Queried anew for every call, so answers may change between
// calls. An exception becomes an error status of that call.
class DeviceView {
public:
    virtual ~DeviceView() = default;

    // Whether global LLDP is configured on or off; nothing when it is not configured.
    virtual std::optional<bool> enabled_globally() const = 0;

    // The display names, sorted, of the interfaces with LLDP configuration.
    virtual std::vector<std::string> configured_interfaces() const = 0;

    virtual bool interface_exists(std::string_view display_name) const = 0;

protected:
    DeviceView() = default;
    DeviceView(const DeviceView &) = default;
    DeviceView &operator=(const DeviceView &) = default;
};

} // namespace yfw::platform

#endif
