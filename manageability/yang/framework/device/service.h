// A device as servers offer it: one for all doors of a process.
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

// The device with its datastores, what may be done with them, and who is told. Safe for several threads.
class Service {
public:
    // Borrows the device, which is committed to as soon as a server before this one left a commit unconfirmed:
    // it is taken back. `rules`: beside the groups of users. Throws Error, also for a device that cannot be
    // committed to.
    explicit Service(ManagedDevice &device, std::optional<access::Nacm> rules = std::nullopt);
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    ManagedDevice &device() { return device_; }
    Datastores &datastores() { return datastores_; }
    events::Hub &events() { return events_; }

    // Those that concern a user, by name and by the names of the groups that the machine has them in; NULL when
    // everything is permitted that the groups permit.
    std::shared_ptr<const access::UserRules> rules_of(const std::string &user,
                                                      const std::vector<std::string> &groups) const;

    // No server offers it any more: nobody will confirm what was not confirmed so far. Throws Error.
    void end() { datastores_.take_back_unconfirmed(); }

private:
    ManagedDevice &device_;
    std::optional<access::Nacm> rules_;
    events::Hub events_;
    Datastores datastores_;
};

} // namespace yfw::device

#endif
