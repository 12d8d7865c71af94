// An element of an XML document.
#ifndef YFW_XML_ELEMENT_H
#define YFW_XML_ELEMENT_H

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

struct _xmlNode;

namespace yfw::xml {

// Namespaces by prefix, excluding the default namespace.
using Prefixes = std::map<std::string, std::string, std::less<>>;

// Borrows from its document, which must outlive it.
class Element {
public:
    explicit Element(const _xmlNode *node) : node_(node) {}

    std::string_view name() const;
    // Empty for an element without a namespace.
    std::string_view ns() const;
    bool is(std::string_view wanted_ns, std::string_view wanted_name) const {
        return ns() == wanted_ns && name() == wanted_name;
    }

    // Its own text, without that of its children.
    std::string character_data() const;
    // The same, trimmed of white space.
    std::string text() const;

    struct Attribute {
        std::string_view name;
        std::string_view prefix;
        std::string_view ns;
        std::string value;
    };
    // Without namespace declarations.
    std::vector<Attribute> attributes() const;
    // By local name, in any namespace.
    std::optional<std::string> attribute(std::string_view name) const;

    // The prefixes in scope.
    Prefixes prefixes() const;
    // The namespace of a prefix; nothing for an undeclared one. The empty prefix is the default namespace.
    std::optional<std::string> namespace_of(std::string_view prefix) const;

    std::vector<Element> children() const;
    // The first child of this name in the element's own namespace.
    std::optional<Element> child(std::string_view name) const;

    // The element and its subtree as a separate document.
    std::string print() const;

private:
    const _xmlNode *node_;
};

} // namespace yfw::xml

#endif
