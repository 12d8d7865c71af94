// A device that answers what a test tells it to.
#ifndef PLATFORM_TEST_FAKE_DEVICE_H
#define PLATFORM_TEST_FAKE_DEVICE_H

#include <functional>
#include <optional>
#include <set>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "platform/device_view.h"

namespace yfw::platform::test {

class FakeDevice : public DeviceView {
public:
    std::optional<bool> global_enabled;
    std::set<std::string, std::less<>> configured; // interfaces with LLDP configuration
    std::set<std::string, std::less<>> interfaces;
    bool broken = false; // every query throws

    std::optional<bool> enabled_globally() const override {
        fail_when_broken();
        return global_enabled;
    }

    std::vector<std::string> configured_interfaces() const override {
        fail_when_broken();
        return {configured.begin(), configured.end()};
    }

    bool interface_exists(std::string_view display_name) const override {
        fail_when_broken();
        return interfaces.contains(display_name);
    }

private:
    void fail_when_broken() const {
        if (broken) {
            throw std::runtime_error("device does not answer");
        }
    }
};

} // namespace yfw::platform::test

#endif
