// Edits as documents: NETCONF's operation attributes on XML, the same annotation in JSON.
#include <cstring>

#include "base/error.h"
#include "yang/edit.h"
#include "yang/yang_text.h"

namespace yfw::yang {
namespace {

// ---- reading --------------------------------------------------------------------------------------------

LYD_FORMAT format_of(const std::string &document) {
    const size_t first = document.find_first_not_of(" \t\r\n\xef\xbb\xbf");
    if (first != std::string::npos && document[first] == '<')
        return LYD_XML;
    if (first != std::string::npos && document[first] == '{')
        return LYD_JSON;
    throw Error(ErrorTag::invalid_value, "", "the edit is neither an XML nor a JSON document");
}

std::string place_of(const lyd_node *node) {
    char *path = lyd_path(node, LYD_PATH_STD, nullptr, 0);
    const std::string text = path != nullptr ? path : "";
    std::free(path);
    return text;
}

Operation operation_word(const lyd_node *node, const char *word) {
    const std::optional<Operation> operation = operation_from(word);
    if (!operation.has_value())
        throw Error(ErrorTag::bad_attribute, place_of(node),
                    "\"" + std::string(word) + "\" is no edit operation")
            .about("operation");
    return *operation;
}

std::optional<Operation> own_operation(const lyd_node *node) {
    if (node->schema == nullptr) {
        const auto *opaque = reinterpret_cast<const lyd_node_opaq *>(node);
        for (const lyd_attr *attribute = opaque->attr; attribute != nullptr; attribute = attribute->next)
            if (std::strcmp(attribute->name.name, "operation") == 0)
                return operation_word(node, attribute->value);
        return std::nullopt;
    }
    for (const lyd_meta *meta = node->meta; meta != nullptr; meta = meta->next)
        if (std::strcmp(meta->name, "operation") == 0)
            return operation_word(node, lyd_get_meta_value(meta));
    return std::nullopt;
}

// A key that an entry of this list lacks; NULL when it has them all, or is no list.
const lysc_node *missing_key(const lysc_node *list, const lyd_node *entry) {
    const bool is_list = list->nodetype == LYS_LIST;
    for (const lysc_node *key = is_list ? lysc_node_child(list) : nullptr; key != nullptr && lysc_is_key(key);
         key = key->next) {
        const lyd_node *child = lyd_child(entry);
        while (child != nullptr && std::strcmp(LYD_NAME(child), key->name) != 0)
            child = child->next;
        if (child == nullptr)
            return key;
    }
    return nullptr;
}

// A node that the model does not take: a foreign name, or a value out of its type.
[[noreturn]] void refuse(const lysc_node *parent, const lyd_node *node) {
    const auto *opaque = reinterpret_cast<const lyd_node_opaq *>(node);
    const char *ns = opaque->format == LY_VALUE_XML ? opaque->name.module_ns : nullptr;
    if (ns != nullptr && ly_ctx_get_module_implemented_ns(LYD_CTX(node), ns) == nullptr)
        throw Error(ErrorTag::unknown_namespace, place_of(node),
                    "no model has the namespace \"" + std::string(ns) + "\"")
            .about(ns);
    if (parent != nullptr && schema_child(parent, opaque->name.name) == nullptr)
        throw Error(ErrorTag::unknown_element, place_of(node),
                    "unknown node \"" + std::string(opaque->name.name) + "\"");
    if (const lysc_node *key =
            parent != nullptr ? missing_key(schema_child(parent, opaque->name.name), node) : nullptr)
        throw Error(ErrorTag::missing_element, place_of(node),
                    "an entry is edited by its key: <" + std::string(key->name) + "> is missing")
            .about(key->name);
    lyd_parse_opaq_error(node);
    throw Error(ErrorTag::invalid_value, place_of(node), take_yang_error(LYD_CTX(node)));
}

// A leaf may be taken away without its value.
const lysc_node *leaf_to_take_away(const lysc_node *parent, const lyd_node *node, Operation operation) {
    const auto *opaque = reinterpret_cast<const lyd_node_opaq *>(node);
    const lysc_node *schema = schema_child(parent, opaque->name.name);
    const bool leaf = schema != nullptr && (schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
    if (!leaf || lysc_is_key(schema) || !takes_away(operation) || *opaque->value != '\0')
        refuse(parent, node);
    return schema;
}

// Whether the leaf is marked as one that has its default value (RFC 6243 section 4.5.2): that is set by taking
// the leaf away.
bool is_tagged_default(const lyd_node *leaf) {
    if ((leaf->flags & LYD_DEFAULT) == 0)
        return false;
    if (!lyd_is_default(leaf))
        throw Error(ErrorTag::invalid_value, place_of(leaf), "is marked as the default value, and is not that");
    return true;
}

EditNode read_node(const lysc_node *parent, const lyd_node *from, Operation inherited) {
    EditNode to;
    to.operation = own_operation(from).value_or(inherited);
    if (from->schema == nullptr) {
        to.node = leaf_to_take_away(parent, from, to.operation);
        return to;
    }
    to.node = from->schema;
    if (to.is_key()) {
        if (takes_away(own_operation(from).value_or(Operation::none)))
            throw Error(ErrorTag::bad_element, place_of(from), "a key cannot be deleted: delete its entry");
        to.operation = Operation::none;
    }
    if ((from->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
        to.value = lyd_get_value(from);
    if (to.value.has_value() && is_tagged_default(from)) {
        to.value.reset();
        to.operation = Operation::remove;
    }
    if (to.value.has_value() && !is_yang_text(to.value->c_str())) // JSON can escape every character
        throw Error(ErrorTag::invalid_value, place_of(from), "holds characters that no YANG string may hold");
    // What stands below a replaced node is its new content.
    const Operation below = to.operation == Operation::replace ? Operation::merge : to.operation;
    for (const lyd_node *child = lyd_child(from); child != nullptr; child = child->next)
        to.children.push_back(read_node(to.node, child, below));
    return to;
}

// A leaf's value out of its type leaves the leaf opaque; an enumeration that fails is the operation attribute.
[[noreturn]] void refuse_document(const std::string &reason) {
    const bool is_operation = reason.rfind("Invalid enumeration value", 0) == 0;
    throw Error(is_operation ? ErrorTag::bad_attribute : ErrorTag::invalid_value, "",
                is_operation ? reason + " It is no edit operation." : reason);
}

// ---- writing --------------------------------------------------------------------------------------------

void append_escaped(std::string &xml, std::string_view text) {
    for (const char c : text) {
        if (c == '&')
            xml += "&amp;";
        else if (c == '<')
            xml += "&lt;";
        else if (c == '>')
            xml += "&gt;";
        else
            xml += c;
    }
}

void append_node(std::string &xml, const EditNode &node, bool top, size_t depth) {
    xml.append(2 * depth, ' ').append("<").append(node.node->name);
    if (top)
        xml.append(" xmlns=\"")
            .append(node.node->module->ns)
            .append("\" xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\"");
    if (!node.is_key())
        xml.append(" nc:operation=\"").append(to_string(node.operation)).append("\"");
    if (!node.value.has_value() && node.children.empty()) {
        xml += "/>\n";
        return;
    }
    xml += ">";
    if (node.value.has_value()) {
        append_escaped(xml, *node.value);
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
    lyd_node *parsed = nullptr;
    const LY_ERR status = lyd_parse_data_mem(schemas.context(), document.c_str(), format_of(document),
                                             LYD_PARSE_ONLY | LYD_PARSE_OPAQ, 0, &parsed);
    const DataTree data(parsed);
    if (status != LY_SUCCESS)
        refuse_document(take_yang_error(schemas.context()));
    if (data == nullptr)
        throw Error(ErrorTag::missing_element, "", "the edit is empty");
    for (const lyd_node *top = data.get(); top != nullptr; top = top->next) {
        if (top->schema == nullptr)
            refuse(nullptr, top);
        if (top->schema != schemas.openconfig_root())
            throw Error(ErrorTag::unknown_element, place_of(top), "only the OpenConfig /lldp can be edited");
    }
    return read_node(nullptr, data.get(), default_operation);
}

std::string print_edit(const EditNode &root) {
    std::string xml;
    append_node(xml, root, true, 0);
    return xml;
}

} // namespace yfw::yang
