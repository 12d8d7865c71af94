// The RPC Set.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_SET_OPERATION_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_SET_OPERATION_H

#include "frontends/gnmi/operations/target.h"

namespace yfw::gnmi {

// Makes all changes of the request in one commit, or none. Throws Refusal.
::gnmi::SetResponse set(const Target &target, const Caller &caller, const ::gnmi::SetRequest &request);

} // namespace yfw::gnmi

#endif
