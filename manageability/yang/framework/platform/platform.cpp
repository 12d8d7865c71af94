#include "platform/platform.h"

#include "yfw_map.h"

namespace yfw::platform {

constinit std::atomic<Platform *> Platform::current_{nullptr};

Platform *Platform::current() noexcept {
    return current_.load(std::memory_order_acquire);
}

Platform::~Platform() {
    // A platform destroyed inside its scope must not be called any more.
    Platform *self = this;
    current_.compare_exchange_strong(self, nullptr);
}

Platform::Scope::Scope(Platform &platform) noexcept : previous_(current_.exchange(&platform)) {}

Platform::Scope::~Scope() {
    current_.store(previous_, std::memory_order_release);
}

} // namespace yfw::platform

using yfw::platform::Platform;

extern "C" int platform_get_router_type(void) {
    const Platform *platform = Platform::current();
    return platform == nullptr ? 0 : platform->settings().router_type;
}

extern "C" int platform_supports_lldp_over_mgmt(void) {
    const Platform *platform = Platform::current();
    return platform != nullptr && platform->settings().lldp_over_mgmt ? 1 : 0;
}
