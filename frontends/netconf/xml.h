// Messages as trees of elements, before any model is asked.
#ifndef YFW_FRONTENDS_NETCONF_XML_H
#define YFW_FRONTENDS_NETCONF_XML_H

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "yang/data_tree.h"

namespace yfw::netconf {

inline constexpr std::string_view base_ns = "urn:ietf:params:xml:ns:netconf:base:1.0";

using Prefixes = std::map<std::string, std::string, std::less<>>;

// An element of a document, which must outlive it.
class Element {
public:
    explicit Element(const lyd_node *node) : node_(reinterpret_cast<const lyd_node_opaq *>(node)) {}

    std::string_view name() const { return node_->name.name; }
    std::string_view ns() const { return node_->name.module_ns != nullptr ? node_->name.module_ns : ""; }
    bool is(std::string_view wanted_ns, std::string_view wanted_name) const {
        return ns() == wanted_ns && name() == wanted_name;
    }

    // As part of a filter: one without a namespace of its own, empty or inherited from NETCONF, stands for any
    // (RFC 6241 section 6.2.1 leaves that to the server).
    bool takes_namespace(std::string_view wanted) const {
        return ns() == wanted || ns().empty() || ns() == base_ns;
    }

    // Character data without the white space around it.
    std::string text() const;

    struct Attribute {
        std::string_view name;
        std::string_view prefix;
        std::string_view ns;
        std::string_view value;
    };
    std::vector<Attribute> attributes() const;
    // By its local name, in any namespace.
    std::optional<std::string> attribute(std::string_view name) const;

    // The prefixes that the values of its attributes use, with their namespaces.
    Prefixes prefixes() const;

    std::vector<Element> children() const;
    // The first child by that name in the element's own namespace.
    std::optional<Element> child(std::string_view name) const;

    // The element with all below it, as a document of its own.
    std::string print() const;

private:
    const lyd_node_opaq *node_;
};

// One XML document with one root. A document with a DOCTYPE, or deeper or with more attributes than any message
// has reason to have, is refused before it is parsed.
class Document {
public:
    static constexpr size_t deepest = 128;
    // Each takes some hundred bytes of memory.
    static constexpr size_t most_elements = 500000;
    // Of an element with those around it, declarations of namespaces counted.
    static constexpr size_t most_attributes = 1000;

    // Throws RpcError "malformed-message".
    explicit Document(const std::string &text);

    Element root() const { return Element(root_); }

private:
    yang::DataTree tree_;
    const lyd_node *root_ = nullptr;
};

} // namespace yfw::netconf

#endif
