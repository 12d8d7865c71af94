#include <algorithm>
#include <set>

#include "base/error.h"
#include "yang/edit_element.h"
#include "yang/leaf_type.h"
#include "yang/node_kind.h"
#include "yang/not_served.h"
#include "yang/refused_value.h"
#include "yang/yang_text.h"

namespace yfw::yang {
namespace {

using Written = EditElement::Written;

bool is_blank(const std::string &text) {
    return text.find_first_not_of(" \t\r\n") == std::string::npos;
}

// RFC 7951 section 6.
Written written_form_of(const lysc_node *leaf) {
    switch (leaf_type(leaf)->basetype) {
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
        return Written::json_number;
    case LY_TYPE_BOOL:
        return Written::json_boolean;
    case LY_TYPE_EMPTY:
        return Written::json_null;
    default:
        return Written::json_string;
    }
}

std::string_view to_string(Written written) {
    return written == Written::json_number    ? "a JSON number"
           : written == Written::json_boolean ? "true or false without quotes"
           : written == Written::json_null    ? "[null]"
                                              : "a JSON string";
}

void check_written(const lysc_node *leaf, const EditElement &from, const std::string &path) {
    const bool any = from.written == Written::text || leaf_type(leaf)->basetype == LY_TYPE_UNION;
    if (!any && from.written != written_form_of(leaf))
        throw Error(ErrorTag::invalid_value, path,
                    "must be written as " + std::string(to_string(written_form_of(leaf))));
}

// RFC 7951 sections 5.3 and 5.4.
void check_array(const lysc_node *schema, const EditElement &from, const std::string &path) {
    const bool is_several = (schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0;
    if (from.in_array.value_or(is_several) != is_several)
        throw Error(ErrorTag::invalid_value, path,
                    is_several ? "must be written as a JSON array" : "must not be written as a JSON array");
}

const lysc_node *child_named(const lysc_node *parent, const EditElement &element) {
    const lysc_node *child = nullptr;
    while ((child = lys_getnext(child, parent, nullptr, 0)) != nullptr) // also in the cases of choices
        if (child->module == element.module && element.name == child->name)
            return child;
    return nullptr;
}

[[noreturn]] void refuse_unknown(const lysc_node *parent, const EditElement &element, const std::string &path) {
    if (element.module == nullptr && !element.ns.empty())
        throw Error(ErrorTag::unknown_namespace, path, "no model has the namespace \"" + element.ns + "\"")
            .about(element.ns);
    if (parent != nullptr && schema_child(parent, element.name) != nullptr)
        throw Error(ErrorTag::unknown_namespace, path, "the node belongs to another namespace")
            .about(element.ns);
    throw Error(ErrorTag::unknown_element, path,
                parent != nullptr && is_not_served(parent, element.name)
                    ? "this device does not serve \"" + element.name + "\""
                    : "unknown node \"" + element.name + "\"");
}

// What the nodes around an element say about it.
struct Around {
    Operation inherited;
    // The innermost of the operations around it that decide about everything below them: create, replace,
    // delete and remove.
    std::optional<Operation> decided;
};

// RFC 6241 section 7.2 leaves contradictions open. Nothing can be set in what is deleted, or deleted from what
// is new.
void refuse_contradiction(Operation own, const Around &around, const std::string &path) {
    if (!around.decided.has_value() || takes_away(own) == takes_away(*around.decided))
        return;
    throw Error(ErrorTag::bad_attribute, path,
                "\"" + std::string(yang::to_string(own)) + "\" contradicts the \"" +
                    std::string(yang::to_string(*around.decided)) + "\" of a node around it")
        .about("operation");
}

Operation operation_of(const EditElement &element, const Around &around, const std::string &path) {
    if (element.unknown_attribute.has_value())
        throw Error(ErrorTag::unknown_attribute, path,
                    "has an unknown attribute: " + *element.unknown_attribute)
            .about(*element.unknown_attribute);
    if (!element.operation.has_value())
        return around.inherited;
    const std::optional<Operation> operation = operation_from(*element.operation);
    if (!operation.has_value() || *operation == Operation::none)
        throw Error(ErrorTag::bad_attribute, path, "\"" + *element.operation + "\" is not an edit operation")
            .about("operation");
    refuse_contradiction(*operation, around, path);
    return *operation;
}

// Of what is below a node with this operation.
Around around_children(Operation operation, const Around &around) {
    // Everything below a replaced node is its new content.
    const bool is_replaced = operation == Operation::replace;
    const bool decides = is_replaced || operation == Operation::create || takes_away(operation);
    return {is_replaced ? Operation::merge : operation, decides ? std::optional(operation) : around.decided};
}

bool is_tagged_default(const EditElement &element, const std::string &path) {
    const std::string tag = element.default_tag.value_or("false");
    if (tag != "true" && tag != "1" && tag != "false" && tag != "0")
        throw Error(ErrorTag::bad_attribute, path, "the attribute \"default\" must be true or false")
            .about("default");
    return tag == "true" || tag == "1";
}

// ---- values ----------------------------------------------------------------------------------------------

bool is_default_value(const lysc_node *leaf, const std::string &value) {
    const lyd_value *given =
        leaf->nodetype == LYS_LEAF ? reinterpret_cast<const lysc_node_leaf *>(leaf)->dflt : nullptr;
    return given != nullptr && value == lyd_value_get_canonical(leaf->module->ctx, given);
}

// The canonical form of a value of this leaf; nothing when it is invalid.
std::optional<std::string> canonical(const lysc_node *leaf, const std::string &value) {
    const char *form = nullptr;
    const LY_ERR status =
        lyd_value_validate(leaf->module->ctx, leaf, value.c_str(), value.size(), nullptr, nullptr, &form);
    std::optional<std::string> made;
    if (status == LY_SUCCESS || status == LY_EINCOMPLETE) // a leafref can only be resolved with the data
        made = form != nullptr ? form : value;
    lydict_remove(leaf->module->ctx, form);
    return made;
}

// A text is a text, whatever stands before a colon in it.
const std::string &written_value(const lysc_node *leaf, const EditElement &from) {
    const LY_DATA_TYPE type = leaf_type(leaf)->basetype;
    const bool may_be_identity = type == LY_TYPE_IDENT || type == LY_TYPE_UNION || type == LY_TYPE_INST;
    return may_be_identity && from.as_identity.has_value() ? *from.as_identity : *from.text;
}

// A leaf may be deleted without giving its value; an entry of a leaf-list is known by it (RFC 7950
// section 7.7.9).
std::optional<std::string> value_of(const lysc_node *leaf, const EditElement &from, Operation operation,
                                    const std::string &path) {
    if (!from.text.has_value() || !from.children.empty())
        throw Error(ErrorTag::invalid_value, path, "is a leaf, which cannot contain nodes");
    const bool is_absent = from.text->empty() && takes_away(operation) && !lysc_is_key(leaf);
    if (!is_yang_text(*from.text))
        throw Error(ErrorTag::invalid_value, path, "contains characters that are not allowed in a YANG string");
    if (!is_absent && from.written == Written::nothing)
        throw Error(ErrorTag::missing_element, path, "needs a value");
    if (!is_absent)
        check_written(leaf, from, path);
    std::optional<std::string> value = canonical(leaf, written_value(leaf, from));
    ly_err_clean(leaf->module->ctx, nullptr);
    if (!value.has_value() && !is_absent)
        throw Error(ErrorTag::invalid_value, path, refused_value(leaf, written_value(leaf, from)));
    if (!value.has_value() && leaf->nodetype == LYS_LEAFLIST)
        throw Error(ErrorTag::missing_element, path, "the value of the entry to be deleted is missing");
    return value;
}

// ---- nodes -----------------------------------------------------------------------------------------------

const EditElement *element_of(const lysc_node *key, const EditElement &entry) {
    for (const EditElement &child : entry.children)
        if (child.module == key->module && child.name == key->name)
            return &child;
    return nullptr;
}

// The predicates of an entry that has all its keys.
std::string key_predicates(const lysc_node *list, const EditElement &entry, const std::string &path) {
    std::string predicates;
    for (const lysc_node *key = lysc_node_child(list); key != nullptr && lysc_is_key(key); key = key->next) {
        const EditElement *element = element_of(key, entry);
        if (element == nullptr)
            throw Error(ErrorTag::missing_element, path,
                        "the entry's key <" + std::string(key->name) + "> is missing")
                .about(key->name);
        predicates += "[" + element->name + "=" + quoted_literal(element->text.value_or("")) + "]";
    }
    return predicates;
}

EditNode read_node(const lysc_node *schema, const EditElement &from, const Around &around,
                   const std::string &parent);

EditNode read_leaf(const lysc_node *schema, const EditElement &from, const Around &around,
                   const std::string &path) {
    EditNode leaf{schema, std::nullopt, {}, operation_of(from, around, path)};
    if (leaf.is_key() && takes_away(operation_of(from, {Operation::none, around.decided}, path)))
        throw Error(ErrorTag::bad_element, path, "a key cannot be deleted; delete its entry");
    leaf.operation = leaf.is_key() ? Operation::none : leaf.operation;
    leaf.value = value_of(schema, from, leaf.operation, path);
    if (is_tagged_default(from, path) &&
        leaf.value.has_value()) { // setting the default means deleting the leaf
        if (!is_default_value(schema, *leaf.value))
            throw Error(ErrorTag::invalid_value, path, "is marked as the default value but differs from it");
        leaf.value.reset();
        leaf.operation = Operation::remove;
    }
    return leaf;
}

// In schema order; entries in document order.
void sort_by_model(const lysc_node *parent, std::vector<EditNode> &children) {
    std::vector<const lysc_node *> order;
    for (const lysc_node *child = lysc_node_child(parent); child != nullptr; child = child->next)
        order.push_back(child);
    const auto place = [&order](const EditNode &node) {
        return std::find(order.begin(), order.end(), node.node);
    };
    std::stable_sort(children.begin(), children.end(),
                     [&](const EditNode &a, const EditNode &b) { return place(a) < place(b); });
}

void read_children(EditNode &to, const EditElement &from, const Around &around, const std::string &path) {
    const Around below = around_children(to.operation, around);
    std::set<std::string> seen;
    for (const EditElement &child : from.children) {
        const lysc_node *schema = child_named(to.node, child);
        if (schema == nullptr)
            refuse_unknown(to.node, child, path + "/" + child.name);
        check_array(schema, child, path + "/" + child.name);
        if (child.is_empty_array)
            continue;
        to.children.push_back(read_node(schema, child, below, path));
        const std::string place = instance_path(path, to.children.back());
        if (!seen.insert(place).second) // values of a leaf-list, too: RFC 7950 section 7.7
            throw Error(ErrorTag::bad_element, place, "is repeated");
    }
    sort_by_model(to.node, to.children);
}

EditNode read_node(const lysc_node *schema, const EditElement &from, const Around &around,
                   const std::string &parent) {
    std::string path = parent + "/" + from.name;
    if (is_term(schema))
        return read_leaf(schema, from, around, path);
    if (schema->nodetype == LYS_LIST)
        path += key_predicates(schema, from, path);
    if (!is_blank(from.text.value_or("")) || (from.written != Written::text))
        throw Error(ErrorTag::bad_element, path, "has a value but is not a leaf");
    if (from.default_tag.has_value())
        throw Error(ErrorTag::unknown_attribute, path, "is not a leaf, which could have the default value")
            .about("default");
    EditNode node{schema, std::nullopt, {}, operation_of(from, around, path)};
    read_children(node, from, around, path);
    return node;
}

void refuse_other_top(const EditElement &root, const lysc_node *wanted) {
    if (root.module == wanted->module && root.name == wanted->name)
        return;
    if (root.ns.empty())
        throw Error(ErrorTag::unknown_namespace, "/" + root.name, "has no namespace").about("");
    const bool is_known =
        root.module != nullptr && root.module->compiled != nullptr && root.module->compiled->data != nullptr;
    if (!is_known)
        throw Error(ErrorTag::unknown_namespace, "/" + root.name,
                    "no model has the namespace \"" + root.ns + "\"")
            .about(root.ns);
    const std::string module =
        root.module != nullptr && root.module != wanted->module ? root.module->name + std::string(":") : "";
    throw Error(ErrorTag::unknown_element, "/" + module + root.name,
                "only /" + std::string(wanted->name) + " can be edited");
}

} // namespace

EditNode read_edit(const Schemas &schemas, const EditElement &root, Operation default_operation) {
    return read_edit(schemas.openconfig_root(), root, default_operation);
}

EditNode read_edit(const lysc_node *top, const EditElement &root, Operation default_operation) {
    refuse_other_top(root, top);
    check_array(top, root, "/" + root.name);
    return read_node(top, root, {default_operation, std::nullopt}, "");
}

} // namespace yfw::yang
