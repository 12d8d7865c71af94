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

// Serves gNMI as long as it exists. Borrows the service.
class GnmiDoor {
public:
    // Without a certificate, and unless it is to be insecure, it makes throw-away ones for the current user.
    // Throws Error, also where the program was built without gNMI.
    GnmiDoor(const GnmiOptions &options, access::AccessGroups groups, device::Service &service);
    ~GnmiDoor();
    GnmiDoor(const GnmiDoor &) = delete;
    GnmiDoor &operator=(const GnmiDoor &) = delete;

    // What to tell the user: where it listens, and how to connect.
    const std::string &instructions() const;

    // Throws Error for options that contradict each other, or that this build cannot honor.
    static void check(const GnmiOptions &options);

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace yfw::cli

#endif
