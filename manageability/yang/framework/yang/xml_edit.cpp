// Edits in XML.
#include "yang/edit_element.h"

namespace yfw::yang {
namespace {

constexpr std::string_view netconf_ns = "urn:ietf:params:xml:ns:netconf:base:1.0";
constexpr std::string_view defaults_ns = "urn:ietf:params:xml:ns:netconf:default:1.0";
constexpr std::string_view xml_ns = "http://www.w3.org/XML/1998/namespace";

const lys_module *module_of(const ly_ctx *context, const std::string &ns) {
    return ns.empty() ? nullptr : ly_ctx_get_module_implemented_ns(context, ns.c_str());
}

// A value may be an identity whose prefix the document declares; the module's name replaces the prefix. Nothing
// for text without a declared prefix.
std::optional<std::string> with_module_name(const ly_ctx *context, const xml::Element &element,
                                            const std::string &text) {
    const size_t colon = text.find(':');
    const auto ns = colon == std::string::npos ? std::nullopt : element.namespace_of(text.substr(0, colon));
    const lys_module *module = ns.has_value() ? module_of(context, *ns) : nullptr;
    return module != nullptr ? std::optional(module->name + text.substr(colon)) : std::nullopt;
}

void read_attributes(const xml::Element &from, EditElement &to) {
    for (const xml::Element::Attribute &attribute : from.attributes()) {
        if (attribute.ns == netconf_ns && attribute.name == "operation")
            to.operation = attribute.value;
        else if (attribute.ns == defaults_ns && attribute.name == "default")
            to.default_tag = attribute.value;
        else if (attribute.ns != xml_ns)
            to.unknown_attribute = attribute.name;
    }
}

} // namespace

EditElement edit_element_from(const ly_ctx *context, const xml::Element &element) {
    EditElement made;
    made.name = element.name();
    made.ns = element.ns();
    made.module = module_of(context, made.ns);
    made.text = element.character_data();
    made.as_identity = with_module_name(context, element, *made.text);
    read_attributes(element, made);
    for (const xml::Element &child : element.children())
        made.children.push_back(edit_element_from(context, child));
    return made;
}

} // namespace yfw::yang
