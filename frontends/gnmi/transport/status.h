// Refusals as the statuses of gRPC.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_STATUS_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_STATUS_H

#include <functional>

#include <grpcpp/support/status.h>

#include "frontends/gnmi/messages/refusal.h"

namespace yfw::gnmi {

grpc::Status status_of(const Refusal &refusal);

// Runs the work, and says how it ended. Nothing is thrown.
grpc::Status status_of(const std::function<void()> &work);

} // namespace yfw::gnmi

#endif
