#include "frontends/netconf/operations/conversation.h"

#include <algorithm>

#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/messages/wire_path.h"

namespace yfw::netconf {
namespace {

constexpr const char *declaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// XML parsers normalize a literal line feed or tab in an attribute to a space (XML section 3.3.3), so print
// character references.
std::string attribute_value(std::string_view value) {
    std::string text;
    for (const char c : escaped(value)) {
        if (c == '\n' || c == '\r' || c == '\t')
            text += "&#" + std::to_string(c) + ";";
        else
            text += c;
    }
    return text;
}

// All attributes of the <rpc>, which RFC 6241 section 4.2 requires in the reply.
std::string echoed_attributes(const Element &rpc) {
    std::string text;
    for (const Element::Attribute &attribute : rpc.attributes()) {
        const std::string name(attribute.name);
        const std::string value = "=\"" + attribute_value(attribute.value) + "\"";
        if (attribute.prefix.empty() || attribute.prefix == "xml") {
            text += " " + (attribute.prefix.empty() ? "" : std::string(attribute.prefix) + ":") + name + value;
            continue;
        }
        const std::string prefix(attribute.prefix);
        const std::string declared = " xmlns:" + prefix + "=\"" + attribute_value(attribute.ns) + "\"";
        if (text.find(declared) == std::string::npos)
            text += declared;
        text += " " + prefix + ":" + name + value;
    }
    return text;
}

void wrap(Reply &reply, const std::string &attributes) {
    reply.head =
        std::string(declaration) + "<rpc-reply xmlns=\"" + std::string(base_ns) + "\"" + attributes + ">";
    reply.tail = "</rpc-reply>";
}

// In no namespace (RFC 6241 section 4.1), or in that of the element.
bool has_message_id(const Element &rpc) {
    const std::vector<Element::Attribute> attributes = rpc.attributes();
    return std::any_of(attributes.begin(), attributes.end(), [&](const Element::Attribute &attribute) {
        return attribute.name == "message-id" && (attribute.ns.empty() || attribute.ns == base_ns);
    });
}

Element operation_of(const Element &rpc) {
    if (!has_message_id(rpc))
        throw RpcError("rpc", "missing-attribute", "an <rpc> must have a message-id")
            .with_info("<bad-attribute>message-id</bad-attribute><bad-element>rpc</bad-element>");
    const std::vector<Element> operations = rpc.children();
    if (operations.empty())
        throw RpcError("rpc", "missing-element", "an <rpc> must contain an operation")
            .with_info("<bad-element>rpc</bad-element>");
    if (!rpc.text().empty())
        throw RpcError("rpc", "bad-element", "an <rpc> must not contain text")
            .with_info("<bad-element>rpc</bad-element>");
    if (operations.size() > 1)
        throw RpcError("rpc", "bad-element", "an <rpc> must contain a single operation")
            .with_info(bad_name("bad-element", operations[1].name()));
    return operations.front();
}

// The top container that a path begins with.
const lysc_node *top_of(const Server &server, const std::string &path) {
    const lysc_node *rules = server.modules.access_rules_root();
    return rules != nullptr && is_within(path, rules) ? rules : server.schemas().openconfig_root();
}

Spool told(const Server &server, const RpcError &error, Reply &reply) {
    reply.is_error = true;
    reply.is_bad = error.type == "rpc"; // an error in the messages layer (RFC 6022)
    reply.error = error.tag + (error.path.empty() ? "" : " " + error.path) + ": " + error.what();
    return std::string_view(print_error(error, top_of(server, error.path)));
}

Spool perform_or_tell(const Server &server, const Caller &caller, const Element &rpc, Reply &reply) {
    try {
        const Element operation = operation_of(rpc);
        reply.operation = operation.name();
        return perform(server, caller, operation, reply.aftermath);
    } catch (const RpcError &error) {
        return told(server, error, reply);
    } catch (const Error &error) {
        return told(server, rpc_error_of(error, top_of(server, error.path())), reply);
    } catch (const std::bad_alloc &) {
        return told(server, RpcError("application", "resource-denied", "out of memory"), reply);
    } catch (const std::exception &error) {
        return told(server, RpcError("application", "operation-failed", error.what()), reply);
    }
}

// Clients of base:1.0 do not know the tag, and must not get it (RFC 6241 appendix A): their session just ends.
Reply malformed(const Server &server, const Caller &caller, const RpcError &error) {
    Reply reply;
    reply.content = told(server, error, reply);
    if (caller.speaks_base_1_1)
        wrap(reply, "");
    reply.aftermath.close = true; // the messages that follow cannot be trusted either
    reply.is_bad = true;
    return reply;
}

} // namespace

std::string server_hello(const ProtocolModules &modules, uint32_t session) {
    std::string xml = std::string(declaration) + "<hello xmlns=\"" + std::string(base_ns) + "\"><capabilities>";
    for (const std::string &capability : capabilities(modules))
        xml += "<capability>" + escaped(capability) + "</capability>";
    return xml + "</capabilities><session-id>" + std::to_string(session) + "</session-id></hello>";
}

namespace {

// Its only <capabilities>.
Element capabilities_of(const Element &hello) {
    std::optional<Element> found;
    for (const Element &child : hello.children()) {
        if (!child.is(base_ns, "capabilities"))
            continue;
        if (found.has_value())
            throw RpcError("protocol", "malformed-message", "a <hello> must have a single <capabilities>");
        found = child;
    }
    if (!hello.is(base_ns, "hello") || !found.has_value())
        throw RpcError("protocol", "malformed-message", "expected a <hello> with capabilities");
    return *found;
}

} // namespace

bool client_speaks_base_1_1(const std::string &hello) {
    const Document document(hello);
    const Element root = document.root();
    const Element list = capabilities_of(root);
    if (root.child("session-id"))
        throw RpcError("protocol", "malformed-message", "a client's <hello> must not have a session-id");
    bool speaks_1_0 = false;
    bool speaks_1_1 = false;
    for (const Element &capability : list.children()) {
        const std::string uri = capability.text();
        const std::string base = uri.substr(0, uri.find('?')); // parameters follow (RFC 6241 section 8)
        speaks_1_0 = speaks_1_0 || base == "urn:ietf:params:netconf:base:1.0";
        speaks_1_1 = speaks_1_1 || base == "urn:ietf:params:netconf:base:1.1";
    }
    if (!speaks_1_0 && !speaks_1_1)
        throw RpcError("protocol", "operation-not-supported", "no base version in common");
    return speaks_1_1;
}

Request::Request(const std::string &message) {
    try {
        document_.emplace(message);
        if (!document_->root().is(base_ns, "rpc"))
            error_ = RpcError("rpc", "malformed-message", "expected an <rpc>");
    } catch (const RpcError &error) {
        error_ = error;
    }
}

Cost Request::cost(const Server &server) const {
    if (error_.has_value())
        return Cost::low;
    const std::vector<Element> operations = document_->root().children();
    return operations.empty() ? Cost::low : cost_of(server, operations.front());
}

Reply answer(const Server &server, const Caller &caller, const Request &request) {
    if (request.error_.has_value())
        return malformed(server, caller, *request.error_);
    const Element rpc = request.document_->root();
    Reply reply;
    reply.content = perform_or_tell(server, caller, rpc, reply);
    wrap(reply, echoed_attributes(rpc));
    return reply;
}

Reply answer(const Server &server, const Caller &caller, const std::string &message) {
    return answer(server, caller, Request(message));
}

} // namespace yfw::netconf
