// The current platform: its settings, its system database and its interface manager. The C functions that a
// plug-in calls use the platform that a Platform::Scope has made current.
#ifndef PLATFORM_PLATFORM_H
#define PLATFORM_PLATFORM_H

#include <atomic>

#include "platform/device_view.h"
#include "platform/interface_manager.h"
#include "platform/sysdb.h"

namespace yfw::platform {

struct Settings {
    const DeviceView *device = nullptr; // borrowed; without a device, its calls fail
    bool library_present = true;        // whether the system database's library is installed
    int router_type = 0;                // on type 7, LLDP is on even when it is not configured
    bool lldp_over_mgmt = true;         // whether LLDP may run on management interfaces
};

// Call from one thread at a time, like the plug-in. May outlive many requests; the settings may change between
// requests.
class Platform {
public:
    explicit Platform(Settings settings = {}) : settings_(settings) {}
    ~Platform();
    Platform(const Platform &) = delete;
    Platform &operator=(const Platform &) = delete;

    Settings &settings() { return settings_; }
    const Settings &settings() const { return settings_; }
    SystemDatabase &system_database() { return system_database_; }
    InterfaceManager &interface_manager() { return interface_manager_; }

    // The current platform, or nullptr. Safe to call at any time, even before main.
    static Platform *current() noexcept;

    // Makes a platform current for the whole process until the end of the scope, then restores the previous
    // one. Scopes nest.
    class Scope {
    public:
        explicit Scope(Platform &platform) noexcept;
        ~Scope();
        Scope(const Scope &) = delete;
        Scope &operator=(const Scope &) = delete;

    private:
        Platform *previous_;
    };

private:
    static std::atomic<Platform *> current_;

    Settings settings_;
    SystemDatabase system_database_;
    InterfaceManager interface_manager_;
};

} // namespace yfw::platform

#endif
