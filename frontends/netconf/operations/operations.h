// The operations of the protocol.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_OPERATIONS_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "base/spool.h"
#include "device/service.h"
#include "frontends/netconf/events/subscription.h"
#include "frontends/netconf/messages/xml.h"
#include "frontends/netconf/server_data/monitoring.h"
#include "frontends/netconf/server_data/protocol_modules.h"

namespace yfw::netconf {

// What to do with sessions once the reply has been sent.
struct Aftermath {
    bool close = false;                                         // the caller's own session
    std::optional<uint32_t> kill;                               // another session
    std::shared_ptr<const Subscription> subscription = nullptr; // the caller's new subscription
};

using device::Datastore;

struct Caller : device::Caller {
    bool is_subscribed = false;
    bool speaks_base_1_1 = true;
};

// What requests are answered with, shared by all threads that answer them. The references are borrowed, and
// is_session may be called from any thread.
struct Server {
    device::Service &service;
    const ProtocolModules &modules;
    Monitoring &monitoring;
    const EventStream &events;
    std::function<bool(uint32_t)> is_session; // whether a session with this id exists

    const yang::Schemas &schemas() const { return service.device().schemas(); }
    device::ManagedDevice &device() const { return service.device(); }
    device::Datastores &datastores() const { return service.datastores(); }
};

// The server's capabilities.
std::vector<std::string> capabilities(const ProtocolModules &modules);

// Performs the operation and returns the content of the <rpc-reply>. Throws RpcError or Error.
Spool perform(const Server &server, const Caller &caller, const Element &operation, Aftermath &aftermath);

} // namespace yfw::netconf

#endif
