// A device as offered by servers: one object for all front ends of a process.
#ifndef YFW_DEVICE_SERVICE_H
#define YFW_DEVICE_SERVICE_H

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

#include "device/access/nacm.h"
#include "device/datastores.h"
#include "device/events/hub.h"
#include "device/managed_device.h"

namespace yfw::device {

// The device with its datastores, access control and event observers. Any thread may call any member; what the
// accessors return has its own rules.
class Service {
public:
    // Borrows the device, and serves it alone. If a previous server left a commit unconfirmed, it is rolled
    // back at once. `rules`: apply in addition to the user groups. Throws Error, also for a device that does
    // not support commits, and "in-use" when another process serves it.
    explicit Service(ManagedDevice &device, std::optional<access::Nacm> rules = std::nullopt);
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    ManagedDevice &device() { return device_; }
    Datastores &datastores() { return datastores_; }
    events::Hub &events() { return events_; }

    // The rules for a user, given by name and by the names of the user's groups on this machine; NULL when the
    // group permissions alone decide. They must not outlive the service. Never blocks.
    std::shared_ptr<const access::UserRules> rules_of(const std::string &user,
                                                      const std::vector<std::string> &groups) const;

    // Call once, when no server offers the device any more: rolls back an unconfirmed commit, which nobody can
    // confirm now. Throws Error.
    void end() { datastores_.take_back_unconfirmed(); }

private:
    ManagedDevice &device_;
    std::optional<access::Nacm> rules_;
    events::Hub events_;
    Datastores datastores_;
};

} // namespace yfw::device

#endif
