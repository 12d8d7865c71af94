// The RPC Get.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_GET_OPERATION_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_GET_OPERATION_H

#include <cstddef>

#include "frontends/gnmi/operations/target.h"

namespace yfw::gnmi {

// What clients accept unless they are told otherwise.
constexpr size_t largest_response = 4 << 20;

// Reads all paths of the request at one moment. Throws Refusal.
::gnmi::GetResponse get(const Target &target, const Caller &caller, const ::gnmi::GetRequest &request);

} // namespace yfw::gnmi

#endif
