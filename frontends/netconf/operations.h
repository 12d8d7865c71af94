// The operations of the protocol.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_H

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frontends/netconf/datastores.h"
#include "frontends/netconf/monitoring.h"
#include "frontends/netconf/protocol_modules.h"
#include "frontends/netconf/subscription.h"
#include "frontends/netconf/xml.h"

namespace yfw::netconf {

// What is to happen to sessions after the reply was sent.
struct Aftermath {
    bool close = false;                                         // the caller's own
    std::optional<uint32_t> kill;                               // another one
    std::shared_ptr<const Subscription> subscription = nullptr; // of the caller's, from now on
};

// Everything is borrowed. Safe for several threads.
struct Server {
    const yang::Schemas &schemas;
    host::Engine &engine;
    Datastores &datastores;
    const ProtocolModules &modules;
    Monitoring &monitoring;
    const events::EventStream &events;
    std::function<bool(uint32_t)> is_session;
};

// The capabilities that the server has; exactly what it offers.
std::vector<std::string> capabilities(const ProtocolModules &modules);

// Performs the operation and returns what goes into the <rpc-reply>. Throws RpcError or Error.
std::string perform(const Server &server, const Caller &caller, const Element &operation, Aftermath &aftermath);

} // namespace yfw::netconf

#endif
