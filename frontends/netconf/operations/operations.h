// The operations of the protocol.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_OPERATIONS_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "device/service.h"
#include "frontends/netconf/events/subscription.h"
#include "frontends/netconf/messages/xml.h"
#include "frontends/netconf/server_data/monitoring.h"
#include "frontends/netconf/server_data/protocol_modules.h"

namespace yfw::netconf {

// What is to happen to sessions after the reply was sent.
struct Aftermath {
    bool close = false;                                         // the caller's own
    std::optional<uint32_t> kill;                               // another one
    std::shared_ptr<const Subscription> subscription = nullptr; // of the caller's, from now on
};

using device::Datastore;

struct Caller : device::Caller {
    bool is_subscribed = false;
};

// Everything is borrowed. Safe for several threads.
struct Server {
    device::Service &service;
    const ProtocolModules &modules;
    Monitoring &monitoring;
    const EventStream &events;
    std::function<bool(uint32_t)> is_session;

    const yang::Schemas &schemas() const { return service.device().schemas(); }
    device::ManagedDevice &device() const { return service.device(); }
    device::Datastores &datastores() const { return service.datastores(); }
};

// The capabilities that the server has; exactly what it offers.
std::vector<std::string> capabilities(const ProtocolModules &modules);

// Performs the operation and returns what goes into the <rpc-reply>. Throws RpcError or Error.
std::string perform(const Server &server, const Caller &caller, const Element &operation, Aftermath &aftermath);

} // namespace yfw::netconf

#endif
