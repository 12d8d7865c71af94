#include "frontends/gnmi/transport/service_door.h"

#include "frontends/gnmi/operations/capabilities.h"
#include "frontends/gnmi/operations/get_operation.h"
#include "frontends/gnmi/operations/set_operation.h"
#include "frontends/gnmi/transport/status.h"

namespace yfw::gnmi {

// Who sends it is found out in the lane of quick jobs, so that a slow check of a password holds up no edit.
grpc::ServerUnaryReactor *ServiceDoor::answer(grpc::CallbackServerContext *context, Lane lane,
                                              std::function<void(const Caller &)> work) {
    grpc::ServerUnaryReactor *reactor = context->DefaultReactor();
    const Credentials credentials = credentials_of(*context);
    const std::string turn = credentials.certified.value_or(credentials.user);
    workers_.add(Lane::quick, turn, [this, reactor, lane, turn, credentials, work = std::move(work)] {
        Caller caller;
        const grpc::Status known = status_of([&] { caller = authentication_.user_of(credentials).caller; });
        if (!known.ok()) {
            reactor->Finish(known);
            return WorkerPool::Finish();
        }
        workers_.add(lane, turn, [reactor, caller, work] {
            reactor->Finish(status_of([&] { work(caller); }));
            return WorkerPool::Finish();
        });
        return WorkerPool::Finish();
    });
    return reactor;
}

grpc::ServerUnaryReactor *ServiceDoor::Capabilities(grpc::CallbackServerContext *context,
                                                    const ::gnmi::CapabilityRequest *request,
                                                    ::gnmi::CapabilityResponse *response) {
    return answer(context, Lane::quick,
                  [this, request, response](const Caller &) { *response = capabilities(target_, *request); });
}

grpc::ServerUnaryReactor *ServiceDoor::Get(grpc::CallbackServerContext *context,
                                           const ::gnmi::GetRequest *request, ::gnmi::GetResponse *response) {
    return answer(context, Lane::costly, [this, request, response](const Caller &caller) {
        *response = get(target_, caller, *request);
    });
}

grpc::ServerUnaryReactor *ServiceDoor::Set(grpc::CallbackServerContext *context,
                                           const ::gnmi::SetRequest *request, ::gnmi::SetResponse *response) {
    return answer(context, Lane::edit, [this, request, response](const Caller &caller) {
        *response = set(target_, caller, *request);
    });
}

SubscribeReactorBase *ServiceDoor::Subscribe(grpc::CallbackServerContext *context) {
    return SubscribeReactor::start({target_, publisher_, authentication_, workers_}, *context);
}

} // namespace yfw::gnmi
