#include "frontends/netconf/filters/filter.h"

#include <algorithm>
#include <cctype>
#include <memory>

#include "frontends/netconf/messages/rpc_error.h"
#include "yang/leaf_type.h"
#include "yang/not_served.h"
#include "yang/path.h"
#include "yang/schemas.h"

namespace yfw::netconf {
namespace {

// A filter element with an empty namespace, or the one inherited from NETCONF, matches any namespace (RFC 6241
// section 6.2.1 leaves that to the server).
bool takes_namespace(const Element &filter, std::string_view wanted) {
    return filter.ns() == wanted || filter.ns().empty() || filter.ns() == base_ns;
}

// No node has attributes that a filter could match (RFC 6241 section 6.2.2).
bool means(const Element &filter, const lysc_node *node) {
    return filter.attributes().empty() && filter.name() == node->name &&
           takes_namespace(filter, node->module->ns);
}

const lysc_node *node_meant(const Element &filter, const lysc_node *parent) {
    const lysc_node *node = nullptr;
    while ((node = lys_getnext(node, parent, nullptr, 0)) != nullptr)
        if (means(filter, node))
            return node;
    return nullptr;
}

// An identity's prefix is the client's choice; answers use the module name. Without a prefix, the identity is
// that of the module that defines the base.
std::string matched_identity(const Element &filter, const lysc_type *type) {
    const std::string text = filter.text();
    const lys_module *base = reinterpret_cast<const lysc_type_identityref *>(type)->bases[0]->module;
    const size_t colon = text.find(':');
    if (colon == std::string::npos)
        return std::string(base->name) + ":" + text;
    const std::optional<std::string> ns = filter.namespace_of(text.substr(0, colon));
    if (!ns.has_value())
        return std::string(base->name) + text.substr(colon);
    const lys_module *named = ly_ctx_get_module_implemented_ns(base->ctx, ns->c_str());
    return named != nullptr ? named->name + text.substr(colon) : text;
}

// White space around a value is ignored (RFC 6241 section 6.2.5), except in a second reading: a name may have
// it.
enum class Space { ignored, kept };

std::string matched_value(const Element &filter, const lysc_node *leaf, Space space) {
    const lysc_type *type = yang::leaf_type(leaf);
    if (type->basetype == LY_TYPE_IDENT)
        return matched_identity(filter, type);
    return space == Space::kept && type->basetype == LY_TYPE_STRING ? filter.character_data() : filter.text();
}

bool is_leaf(const lysc_node *node) {
    return (node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

// Whether an entry of a list is matched by a value with white space around it.
bool matches_space(const Element &filter, const lysc_node *node) {
    if (node->nodetype != LYS_LIST)
        return false;
    const std::vector<Element> children = filter.children();
    return std::any_of(children.begin(), children.end(), [](const Element &child) {
        return !child.text().empty() && child.children().empty() && child.text() != child.character_data();
    });
}

std::optional<host::Selection> select(const Element &filter, const lysc_node *node, Space space);

std::optional<host::Selection> select_children(const Element &filter, const lysc_node *node, Space space) {
    host::Selection selected{node, std::nullopt, {}, false};
    bool selects_what_is_not_there = false;
    for (const Element &child : filter.children()) {
        const lysc_node *below = node_meant(child, node);
        std::optional<host::Selection> part =
            below != nullptr ? select(child, below, is_leaf(below) ? space : Space::ignored) : std::nullopt;
        if (below != nullptr && matches_space(child, below))
            if (std::optional<host::Selection> exact = select(child, below, Space::kept))
                selected.children.push_back(std::move(*exact));
        if (part.has_value())
            selected.children.push_back(std::move(*part));
        else if (!child.text().empty())
            return std::nullopt; // the content cannot match: nothing of this node is selected
        else
            selects_what_is_not_there = true;
    }
    if (selected.children.empty())
        return std::nullopt;
    // A content match node is part of the answer when siblings are selected, even if none of them is there (RFC
    // 6241 section 6.2.5).
    if (selected.selects_below() || selects_what_is_not_there)
        for (host::Selection &child : selected.children)
            child.named = child.named || child.value.has_value();
    return selected;
}

std::optional<host::Selection> select(const Element &filter, const lysc_node *node, Space space) {
    if (!filter.attributes().empty()) // the data has no attributes to match
        return std::nullopt;
    const bool holds_text = is_leaf(node);
    if (!filter.children().empty()) // a leaf has no children to match
        return holds_text ? std::nullopt : select_children(filter, node, space);
    host::Selection selected{node, std::nullopt, {}, false};
    if (!filter.text().empty() && !holds_text)
        return std::nullopt;
    if (!filter.text().empty())
        selected.value = matched_value(filter, node, space);
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

namespace {

// Attributes may have NETCONF's prefix or none.
void check_attributes(const Element &filter, bool is_xpath) {
    size_t types = 0;
    size_t selects = 0;
    for (const Element::Attribute &attribute : filter.attributes()) {
        types += attribute.name == "type" ? 1 : 0;
        selects += attribute.name == "select" ? 1 : 0;
    }
    if (types <= 1 && selects <= (is_xpath ? 1 : 0))
        return;
    throw RpcError("protocol", "bad-attribute",
                   types > 1  ? "the type is repeated"
                   : is_xpath ? "the expression is repeated"
                              : "only an xpath filter has a select attribute")
        .with_info(text_element("bad-attribute", types > 1 ? "type" : "select") +
                   "<bad-element>filter</bad-element>");
}

} // namespace

void refuse_filter_text(const Element &filter) {
    if (!filter.text().empty())
        throw RpcError("protocol", "bad-element", "a filter must not contain text")
            .with_info(bad_name("bad-element", filter.name()));
}

Filter filter_of(const Element &filter) {
    const std::string type = filter.attribute("type").value_or("subtree");
    check_attributes(filter, type == "xpath");
    refuse_filter_text(filter);
    if (type == "subtree")
        return {FilterType::subtree, filter, {}, {}};
    if (type != "xpath")
        throw RpcError("protocol", "bad-attribute", "a filter's type must be subtree or xpath")
            .with_info("<bad-attribute>type</bad-attribute><bad-element>filter</bad-element>");
    const std::optional<std::string> select = filter.attribute("select");
    if (!select.has_value())
        throw RpcError("protocol", "missing-attribute", "an xpath filter must have a select attribute")
            .with_info("<bad-attribute>select</bad-attribute><bad-element>filter</bad-element>");
    if (!filter.children().empty())
        throw RpcError("protocol", "bad-element", "an xpath filter must be empty")
            .with_info(bad_name("bad-element", filter.children().front().name()));
    return {FilterType::xpath, filter, *select, filter.prefixes()};
}

void require_served(const lysc_node *parent, std::string_view name) {
    if (yang::is_not_served(parent, name))
        throw RpcError("application", "unknown-element", yang::unknown_child(parent, name))
            .at(yang::schema_path(parent))
            .with_info(bad_name("bad-element", name));
}

namespace {

void refuse_not_served_below(const Element &filter, const lysc_node *node) {
    for (const Element &child : filter.children()) {
        if (const lysc_node *below = node_meant(child, node)) {
            refuse_not_served_below(child, below);
            continue;
        }
        if (takes_namespace(child, node->module->ns))
            require_served(node, child.name());
    }
}

} // namespace

void refuse_not_served(const Element &filter, const lysc_node *root) {
    for (const Element &top : filter.children())
        if (means(top, root))
            refuse_not_served_below(top, root);
}

std::optional<host::Selection> subtree_selection(const Element &filter, const lysc_node *root) {
    std::optional<host::Selection> whole;
    for (const Element &top : filter.children()) {
        if (!means(top, root))
            continue;
        std::optional<host::Selection> part = select(top, root, Space::ignored);
        if (part.has_value() && whole.has_value())
            merge_into(*whole, std::move(*part));
        else if (part.has_value())
            whole = std::move(part);
    }
    return whole;
}

} // namespace yfw::netconf
