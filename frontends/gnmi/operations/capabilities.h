// What this target can do.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_CAPABILITIES_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_CAPABILITIES_H

#include "frontends/gnmi/operations/target.h"

namespace yfw::gnmi {

// Throws Refusal.
::gnmi::CapabilityResponse capabilities(const Target &target, const ::gnmi::CapabilityRequest &request);

} // namespace yfw::gnmi

#endif
