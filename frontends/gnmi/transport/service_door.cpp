#include "frontends/gnmi/transport/service_door.h"

#include "base/interruption.h"
#include "frontends/gnmi/operations/capabilities.h"
#include "frontends/gnmi/operations/get_operation.h"
#include "frontends/gnmi/operations/set_operation.h"
#include "frontends/gnmi/transport/status.h"

namespace yfw::gnmi {
namespace {

// Runs the work of an RPC that has not been cancelled, up to the step at which it is. Once the server ends, all
// are.
grpc::Status outcome_of(const grpc::CallbackServerContext &context, const std::function<void()> &work) {
    return status_of([&] {
        const Interruptible interruptible([&context] { return context.IsCancelled(); });
        end_if_interrupted();
        work();
    });
}

} // namespace

// Who sends it is found out in the lane of quick jobs, so that a slow check of a password holds up no edit. A
// certificate has been checked already: who reads with one waits for a worker only once.
grpc::ServerUnaryReactor *ServiceDoor::answer(grpc::CallbackServerContext *context, const Rpc &rpc,
                                              std::function<void(const Caller &)> work) {
    grpc::ServerUnaryReactor *reactor = context->DefaultReactor();
    const Credentials credentials = credentials_of(*context);
    const std::string turn = credentials.certified.value_or(credentials.user);
    const auto finish = [this, reactor, rpc, credentials](const grpc::Status &status) {
        if (!status.ok())
            log_.refused(credentials, rpc.name, status);
        else if (rpc.writes)
            log_.done(credentials, rpc.name);
        reactor->Finish(status);
    };
    const auto user = [this, credentials] { return authentication_.user_of(credentials).caller; };
    if (credentials.certified.has_value() && !rpc.writes) {
        workers_.add(rpc.lane, turn, [context, user, finish, work = std::move(work)] {
            finish(outcome_of(*context, [&] { work(user()); }));
            return WorkerPool::Finish();
        });
        return reactor;
    }
    workers_.add(Lane::quick, turn, [this, context, rpc, turn, user, finish, work = std::move(work)] {
        Caller caller;
        const grpc::Status known = status_of([&] { caller = user(); });
        if (!known.ok()) {
            finish(known);
            return WorkerPool::Finish();
        }
        workers_.add(rpc.lane, turn, [context, caller, finish, work] {
            finish(outcome_of(*context, [&] { work(caller); }));
            return WorkerPool::Finish();
        });
        return WorkerPool::Finish();
    });
    return reactor;
}

grpc::ServerUnaryReactor *ServiceDoor::Capabilities(grpc::CallbackServerContext *context,
                                                    const ::gnmi::CapabilityRequest *request,
                                                    ::gnmi::CapabilityResponse *response) {
    return answer(context, {"Capabilities", Lane::quick},
                  [this, request, response](const Caller &) { *response = capabilities(target_, *request); });
}

grpc::ServerUnaryReactor *ServiceDoor::Get(grpc::CallbackServerContext *context,
                                           const ::gnmi::GetRequest *request, ::gnmi::GetResponse *response) {
    return answer(context, {"Get", Lane::costly}, [this, request, response](const Caller &caller) {
        *response = get(target_, caller, *request);
    });
}

grpc::ServerUnaryReactor *ServiceDoor::Set(grpc::CallbackServerContext *context,
                                           const ::gnmi::SetRequest *request, ::gnmi::SetResponse *response) {
    return answer(context, {"Set", Lane::edit, true}, [this, request, response](const Caller &caller) {
        *response = set(target_, caller, *request);
    });
}

SubscribeReactorBase *ServiceDoor::Subscribe(grpc::CallbackServerContext *context) {
    return SubscribeReactor::start({target_, publisher_, authentication_, log_, workers_}, *context);
}

} // namespace yfw::gnmi
