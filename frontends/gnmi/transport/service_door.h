// The RPCs of the service.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_SERVICE_DOOR_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_SERVICE_DOOR_H

#include <functional>

#include <gnmi.grpc.pb.h>

#include "base/worker_pool.h"
#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/transport/authentication.h"
#include "frontends/gnmi/transport/request_log.h"
#include "frontends/gnmi/transport/subscribe_reactor.h"

namespace yfw::gnmi {

// Streams send messages that are serialized already.
using GnmiServiceBase = ::gnmi::gNMI::WithCallbackMethod_Capabilities<
    ::gnmi::gNMI::WithCallbackMethod_Get<::gnmi::gNMI::WithCallbackMethod_Set<
        ::gnmi::gNMI::WithRawCallbackMethod_Subscribe<::gnmi::gNMI::Service>>>>;

// Hands each request to a worker: gRPC's own threads only move messages. Borrows everything.
class ServiceDoor final : public GnmiServiceBase {
public:
    ServiceDoor(const Target &target, const Authentication &authentication, Publisher &publisher,
                const RequestLog &log, WorkerPool &workers)
        : target_(target), authentication_(authentication), publisher_(publisher), log_(log),
          workers_(workers) {}

    grpc::ServerUnaryReactor *Capabilities(grpc::CallbackServerContext *context,
                                           const ::gnmi::CapabilityRequest *request,
                                           ::gnmi::CapabilityResponse *response) override;
    grpc::ServerUnaryReactor *Get(grpc::CallbackServerContext *context, const ::gnmi::GetRequest *request,
                                  ::gnmi::GetResponse *response) override;
    grpc::ServerUnaryReactor *Set(grpc::CallbackServerContext *context, const ::gnmi::SetRequest *request,
                                  ::gnmi::SetResponse *response) override;
    SubscribeReactorBase *Subscribe(grpc::CallbackServerContext *context) override;

private:
    struct Rpc {
        const char *name;
        Lane lane;
        bool writes = false;
    };
    grpc::ServerUnaryReactor *answer(grpc::CallbackServerContext *context, const Rpc &rpc,
                                     std::function<void(const Caller &)> work);

    const Target &target_;
    const Authentication &authentication_;
    Publisher &publisher_;
    const RequestLog &log_;
    WorkerPool &workers_;
};

} // namespace yfw::gnmi

#endif
