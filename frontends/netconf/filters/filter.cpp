#include "frontends/netconf/filters/filter.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include "frontends/netconf/messages/rpc_error.h"
#include "yang/schemas.h"

namespace yfw::netconf {
namespace {

// A filter element with an empty namespace, or the one inherited from NETCONF, matches any namespace (RFC 6241
// section 6.2.1 leaves that to the server).
bool takes_namespace(const Element &filter, std::string_view wanted) {
    return filter.ns() == wanted || filter.ns().empty() || filter.ns() == base_ns;
}

bool means(const Element &filter, const lysc_node *node) {
    return filter.name() == node->name && takes_namespace(filter, node->module->ns);
}

const lysc_node *node_meant(const Element &filter, const lysc_node *parent) {
    const lysc_node *node = nullptr;
    while ((node = lys_getnext(node, parent, nullptr, 0)) != nullptr)
        if (means(filter, node))
            return node;
    return nullptr;
}

std::optional<host::Selection> select(const Element &filter, const lysc_node *node);

// A list's key is a leafref to the leaf that holds its value.
const lysc_type *value_type(const lysc_node *leaf) {
    const lysc_type *type = reinterpret_cast<const lysc_node_leaf *>(leaf)->type;
    while (type->basetype == LY_TYPE_LEAFREF)
        type = reinterpret_cast<const lysc_type_leafref *>(type)->realtype;
    return type;
}

// An identity's prefix is the client's choice; answers use the module name.
std::string matched_value(const Element &filter, const lysc_node *leaf) {
    const lysc_type *type = value_type(leaf);
    const std::string text = filter.text();
    if (type->basetype != LY_TYPE_IDENT)
        return text;
    const lys_module *module = reinterpret_cast<const lysc_type_identityref *>(type)->bases[0]->module;
    const size_t colon = text.find(':');
    if (colon == std::string::npos)
        return std::string(module->name) + ":" + text;
    const Prefixes prefixes = filter.prefixes();
    const auto declared = prefixes.find(text.substr(0, colon));
    const bool is_another = declared != prefixes.end() && declared->second != module->ns;
    return is_another ? text : std::string(module->name) + text.substr(colon);
}

std::optional<host::Selection> select_children(const Element &filter, const lysc_node *node) {
    host::Selection selected{node, std::nullopt, {}, false};
    bool selects_what_is_not_there = false;
    for (const Element &child : filter.children()) {
        const lysc_node *below = node_meant(child, node);
        std::optional<host::Selection> part = below != nullptr ? select(child, below) : std::nullopt;
        if (part.has_value())
            selected.children.push_back(std::move(*part));
        else if (!child.text().empty())
            return std::nullopt; // the content cannot match: nothing of this node is selected
        else
            selects_what_is_not_there = true;
    }
    if (selected.children.empty())
        return std::nullopt;
    // A content match node is part of the answer when siblings are selected.
    if (selected.selects_below() || selects_what_is_not_there)
        for (host::Selection &child : selected.children)
            child.named =
                child.named || (child.value.has_value() && (!child.is_key() || selects_what_is_not_there));
    return selected;
}

std::optional<host::Selection> select(const Element &filter, const lysc_node *node) {
    if (!filter.attributes().empty()) // the data has no attributes to match
        return std::nullopt;
    const bool holds_text = (node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
    if (!holds_text && !filter.children().empty())
        return select_children(filter, node);
    host::Selection selected{node, std::nullopt, {}, false};
    if (!filter.text().empty() && !holds_text)
        return std::nullopt;
    if (!filter.text().empty())
        selected.value = matched_value(filter, node);
    return selected;
}

void merge_into(host::Selection &whole, host::Selection part) {
    const bool whole_is_all = whole.children.empty();
    if (whole_is_all || part.children.empty())
        whole.children.clear();
    else
        std::move(part.children.begin(), part.children.end(), std::back_inserter(whole.children));
}

} // namespace

Filter filter_of(const Element &filter) {
    const std::string type = filter.attribute("type").value_or("subtree");
    if (type == "subtree")
        return {FilterType::subtree, filter, {}, {}};
    if (type != "xpath")
        throw RpcError("protocol", "bad-attribute", "a filter's type must be subtree or xpath")
            .with_info("<bad-attribute>type</bad-attribute><bad-element>filter</bad-element>");
    const std::optional<std::string> select = filter.attribute("select");
    if (!select.has_value())
        throw RpcError("protocol", "missing-attribute", "an xpath filter must have a select attribute")
            .with_info("<bad-attribute>select</bad-attribute><bad-element>filter</bad-element>");
    return {FilterType::xpath, filter, *select, filter.prefixes()};
}

std::optional<host::Selection> subtree_selection(const Element &filter, const lysc_node *root) {
    std::optional<host::Selection> whole;
    for (const Element &top : filter.children()) {
        if (!means(top, root))
            continue;
        std::optional<host::Selection> part = select(top, root);
        if (part.has_value() && whole.has_value())
            merge_into(*whole, std::move(*part));
        else if (part.has_value())
            whole = std::move(part);
    }
    return whole;
}

} // namespace yfw::netconf
