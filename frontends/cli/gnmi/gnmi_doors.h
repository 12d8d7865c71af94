// The gNMI server as the options of `yfw serve` describe it.
#ifndef YFW_FRONTENDS_CLI_GNMI_GNMI_DOORS_H
#define YFW_FRONTENDS_CLI_GNMI_GNMI_DOORS_H

#include <memory>

#include "frontends/cli/serving/gnmi_door.h"

namespace yfw::cli {

// Over TLS, or in plaintext if that is asked for.
class TlsDoors final : public GnmiDoors {
public:
    void check(const GnmiOptions &options) const override;
    std::unique_ptr<GnmiDoor> open(const GnmiOptions &options, access::AccessGroups groups,
                                   device::Service &service) const override;
};

} // namespace yfw::cli

#endif
