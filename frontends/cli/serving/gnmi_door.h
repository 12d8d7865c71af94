// The gNMI server of `yfw serve`.
#ifndef YFW_FRONTENDS_CLI_SERVING_GNMI_DOOR_H
#define YFW_FRONTENDS_CLI_SERVING_GNMI_DOOR_H

#include <memory>
#include <string>

#include "device/access/groups.h"
#include "device/service.h"

namespace yfw::cli {

struct GnmiOptions {
    bool is_wanted = false;
    std::string address; // empty: any free port of the loopback address
    std::string certificate;
    std::string key;
    std::string client_ca;
    bool is_insecure = false;
};

// Serves gNMI as long as it exists.
class GnmiDoor {
public:
    virtual ~GnmiDoor() = default;

    // What to tell the user: where it listens, and how to connect.
    virtual const std::string &instructions() const = 0;
};

// What a program that serves gNMI has, and one that does not serve it need not load. Not thread-safe.
class GnmiDoors {
public:
    virtual ~GnmiDoors() = default;

    // Throws Error for options that contradict each other.
    virtual void check(const GnmiOptions &options) const = 0;

    // Borrows the service. Without a certificate, and unless it is to be insecure, it makes throw-away ones for
    // the current user. Throws Error.
    virtual std::unique_ptr<GnmiDoor> open(const GnmiOptions &options, access::AccessGroups groups,
                                           device::Service &service) const = 0;
};

} // namespace yfw::cli

#endif
