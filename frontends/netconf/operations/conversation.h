// Messages and what they are answered with, apart from the transport.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_CONVERSATION_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_CONVERSATION_H

#include <optional>
#include <string>

#include "frontends/netconf/operations/operations.h"

namespace yfw::netconf {

// The server's <hello> (RFC 6241 section 8.1).
std::string server_hello(const ProtocolModules &modules, uint32_t session);

// Reads a client's <hello>: whether it speaks base:1.1 as well. Throws RpcError when it is none, or when the
// two have no base version in common.
bool client_speaks_base_1_1(const std::string &hello);

struct Reply {
    std::string text;
    Aftermath aftermath;
    bool is_bad = false;   // the message was no correct <rpc>
    bool is_error = false; // it holds an <rpc-error>
};

// The <rpc-reply> to a message. Never throws for what a client sends.
Reply answer(const Server &server, const Caller &caller, const std::string &message);

} // namespace yfw::netconf

#endif
