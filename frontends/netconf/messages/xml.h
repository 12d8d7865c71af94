// Messages as trees of elements, before they are checked against a model.
#ifndef YFW_FRONTENDS_NETCONF_MESSAGES_XML_H
#define YFW_FRONTENDS_NETCONF_MESSAGES_XML_H

#include <string>
#include <string_view>

#include "xml/document.h"

namespace yfw::netconf {

using xml::Element;
using xml::Prefixes;

inline constexpr std::string_view base_ns = "urn:ietf:params:xml:ns:netconf:base:1.0";

// A message. Clients that write <nc:rpc> often leave elements inside it without a namespace, <config> above
// all: these are taken to be in the base NETCONF namespace.
class Document : public xml::Document {
public:
    static constexpr size_t deepest = xml::Limits{}.depth;
    static constexpr size_t most_elements = xml::Limits{}.elements;
    static constexpr size_t most_attributes = xml::Limits{}.attributes;

    // Throws RpcError "malformed-message".
    explicit Document(const std::string &text);
};

} // namespace yfw::netconf

#endif
