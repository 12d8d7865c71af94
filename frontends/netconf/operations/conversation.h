// Messages and their replies, independent of the transport.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_CONVERSATION_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_CONVERSATION_H

#include <optional>
#include <string>

#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/operations/cost.h"
#include "frontends/netconf/operations/operations.h"

namespace yfw::netconf {

// The server's <hello> (RFC 6241 section 8.1).
std::string server_hello(const ProtocolModules &modules, uint32_t session);

// Reads a client's <hello>; returns whether the client also speaks base:1.1. Throws RpcError when it is not a
// <hello>, or when there is no common base version.
bool client_speaks_base_1_1(const std::string &hello);

struct Reply {
    std::string head; // with which it begins; empty: there is no reply
    Spool content;
    std::string tail;
    Aftermath aftermath;
    bool is_bad = false;     // the message was not a valid <rpc>
    bool is_error = false;   // it holds an <rpc-error>
    std::string operation{}; // its name, as the client wrote it; empty when there is none
    std::string error{};     // the tag, path and message of an error

    std::string text() const { return head + content.text() + tail; }
};

// A message, parsed. Never throws because of a client's input.
class Request {
public:
    explicit Request(const std::string &message);

    // Of answering it. A malformed one costs nothing more.
    Cost cost(const Server &server) const;

private:
    friend Reply answer(const Server &server, const Caller &caller, const Request &request);

    std::optional<Document> document_;
    std::optional<RpcError> error_; // when it is no <rpc>
};

// The <rpc-reply> to a request or to a message. Never throws because of a client's input.
Reply answer(const Server &server, const Caller &caller, const Request &request);
Reply answer(const Server &server, const Caller &caller, const std::string &message);

} // namespace yfw::netconf

#endif
