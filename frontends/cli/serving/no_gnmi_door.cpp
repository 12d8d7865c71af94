// In a build without gNMI (YFW_GNMI).
#include "base/error.h"
#include "frontends/cli/serving/gnmi_door.h"

namespace yfw::cli {

struct GnmiDoor::Parts {
    std::string instructions;
};

GnmiDoor::GnmiDoor(const GnmiOptions &options, access::AccessGroups, device::Service &) {
    check(options);
}

GnmiDoor::~GnmiDoor() = default;

const std::string &GnmiDoor::instructions() const {
    return parts_->instructions;
}

void GnmiDoor::check(const GnmiOptions &options) {
    if (options.is_wanted)
        throw Error(ErrorTag::operation_not_supported, "--gnmi", "this build has no gNMI");
}

} // namespace yfw::cli
