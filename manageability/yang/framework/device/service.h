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
    // not support commits, and "in-use" when another process serves it. `recovery_user`: the rules do not
    // apply to this user, who has recovery sessions (RFC 8341); empty: there is none.
    explicit Service(ManagedDevice &device, std::optional<access::Nacm> rules = std::nullopt,
                     std::string recovery_user = {});
    Service(const Service &) = delete;
    Service &operator=(const Service &) = delete;

    ManagedDevice &device() { return device_; }
    Datastores &datastores() { return datastores_; }
    events::Hub &events() { return events_; }

    // The rules for a user, given by name and by the names of the user's groups on this machine; NULL when the
    // group permissions alone decide. Never blocks for long.
    std::shared_ptr<const access::UserRules> rules_of(const std::string &user,
                                                      const std::vector<std::string> &groups) const;

    // The access rules; NULL when there are none. Edit them with edit().
    const access::Nacm *rules() const { return rules_.has_value() ? &*rules_ : nullptr; }
    // Changes whenever the rules of users may have.
    uint64_t rules_version() const { return rules_.has_value() ? rules_->version() : 0; }

    // Applies both edits or neither. `only_test`: validates them without applying them. Throws Error, also for
    // an edit of the access rules that would change those of the candidate, which has none.
    void edit(const Caller &caller, Datastore target, const Edits &edits, bool only_test);
    // Checks that edits of the running configuration would be valid. Throws Error.
    void validate(const Edits &edits);

    // Call once, when no server offers the device any more: rolls back an unconfirmed commit, which nobody can
    // confirm now. Throws Error.
    void end() { datastores_.take_back_unconfirmed(); }

private:
    ManagedDevice &device_;
    std::optional<access::Nacm> rules_;
    const std::string recovery_user_;
    events::Hub events_;
    Datastores datastores_;
};

} // namespace yfw::device

#endif
