#include "frontends/netconf/messages/xml.h"

#include "frontends/netconf/messages/rpc_error.h"

namespace yfw::netconf {
namespace {

xml::Document parsed(const std::string &text) {
    try {
        return xml::Document(text);
    } catch (const xml::DocumentError &error) {
        throw RpcError("rpc", "malformed-message", error.what());
    }
}

} // namespace

// A root without a prefix either declares its namespace as the default or deliberately has none.
Document::Document(const std::string &text) : xml::Document(parsed(text)) {
    if (!root().ns().empty())
        adopt(base_ns);
}

} // namespace yfw::netconf
