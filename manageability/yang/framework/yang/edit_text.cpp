// Edits as documents: in XML with NETCONF's operation attribute, in JSON with the same as an annotation.
#include "base/error.h"
#include "base/utf8.h"
#include "xml/document.h"
#include "xml/text.h"
#include "xml/utf16.h"
#include "yang/edit_element.h"

namespace yfw::yang {
namespace {

EditElement element_of(const ly_ctx *context, const std::string &document) {
    const size_t begin = document.starts_with(byte_order_mark) ? byte_order_mark.size() : 0;
    const size_t first = document.find_first_not_of(" \t\r\n", begin);
    if (first != std::string::npos && document[first] == '<')
        return edit_element_from(context, xml::Document(document).root());
    if (first != std::string::npos && document[first] == '{')
        return edit_element_from_json(context, document);
    throw Error(ErrorTag::invalid_value, "", "the edit is neither an XML nor a JSON document");
}

bool says_nothing(const EditNode &node) {
    return node.operation == Operation::none && node.value.has_value() && !node.is_key();
}

// A node without an operation only leads to those below it, so none is printed: where the document is applied
// again, it is merged.
void append_node(std::string &xml, const EditNode &node, bool top, size_t depth) {
    if (says_nothing(node))
        return;
    xml.append(2 * depth, ' ').append("<").append(node.node->name);
    if (top)
        xml.append(" xmlns=\"")
            .append(node.node->module->ns)
            .append("\" xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"");
    if (!node.is_key() && node.operation != Operation::none)
        xml.append(" nc:operation=\"").append(to_string(node.operation)).append("\"");
    if (!node.value.has_value() && node.children.empty()) {
        xml += "/>\n";
        return;
    }
    xml += ">";
    if (node.value.has_value()) {
        xml::append_escaped(xml, *node.value);
    } else {
        xml += "\n";
        for (const EditNode &child : node.children)
            append_node(xml, child, false, depth + 1);
        xml.append(2 * depth, ' ');
    }
    xml.append("</").append(node.node->name).append(">\n");
}

} // namespace

EditNode parse_edit(const Schemas &schemas, const std::string &document, Operation default_operation) {
    try {
        const std::string text = xml::from_utf16(document).value_or(document);
        return read_edit(schemas, element_of(schemas.context(), text), default_operation);
    } catch (const xml::DocumentError &error) {
        throw Error(ErrorTag::invalid_value, "", error.what());
    }
}

std::string print_edit(const EditNode &root) {
    std::string xml;
    append_node(xml, root, true, 0);
    return xml;
}

} // namespace yfw::yang
