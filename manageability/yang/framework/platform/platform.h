// The platform in use: its settings, its system database and its interface manager. The C functions that
// a plug-in calls work on the one that a Platform::Scope has made current.
#ifndef PLATFORM_PLATFORM_H
#define PLATFORM_PLATFORM_H

#include <atomic>

#include "platform/device_view.h"
#include "platform/interface_manager.h"
#include "platform/sysdb.h"

namespace yfw::platform {

struct Settings {
    const DeviceView *device = nullptr; // borrowed; without one the device's calls fail
    bool library_present = true;        // whether the system database's library is installed
    int router_type = 0;                // on type 7 LLDP is on without being configured
    bool lldp_over_mgmt = true;         // whether LLDP may run on management interfaces
};

// To be called from one thread at a time, like the plug-in. May outlive many requests; the settings may
// change between them.
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

    // The platform in use, or nullptr. Safe to call at any time, before main too.
    static Platform *current() noexcept;

    // Makes a platform the one in use, in the whole process, until the end of the scope; then the one
    // before it is again. Scopes nest.
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
