#include "yang/edit_instance.h"

#include <optional>
#include <string>
#include <string_view>

namespace yfw::yang {
namespace {

std::string_view without_prefix(std::string_view value) {
    const size_t colon = value.rfind(':');
    return colon == std::string_view::npos ? value : value.substr(colon + 1);
}

bool has_keys(const lyd_node *entry, const EditNode &node) {
    for (const EditNode &key : node.children) {
        if (!key.is_key())
            continue;
        const lyd_node *held = lyd_child(entry);
        while (held != nullptr && held->schema != key.node)
            held = held->next;
        if (held == nullptr || !key.value.has_value() || !holds_value(held, *key.value))
            return false;
    }
    return true;
}

// The keys as libyang predicates; nothing when a value contains both kinds of quotes, which predicates cannot
// express.
std::optional<std::string> key_predicates(const EditNode &node) {
    std::string predicates;
    for (const EditNode &key : node.children) {
        if (!key.is_key() || !key.value.has_value())
            continue;
        const char quote = key.value->find('\'') == std::string::npos ? '\'' : '"';
        if (key.value->find(quote) != std::string::npos)
            return std::nullopt;
        predicates += "[" + std::string(key.node->name) + "=" + quote + *key.value + quote + "]";
    }
    return predicates;
}

} // namespace

bool holds_value(const lyd_node *leaf, const std::string &value) {
    const std::string_view held = lyd_get_value(leaf);
    return held == value ||
           (without_prefix(held) == without_prefix(value) &&
            reinterpret_cast<const lysc_node_leaf *>(leaf->schema)->type->basetype == LY_TYPE_IDENT);
}

const lyd_node *find_instance(const lyd_node *siblings, const EditNode &node) {
    const bool is_entry = node.node->nodetype == LYS_LIST && siblings != nullptr;
    const auto predicates = is_entry ? key_predicates(node) : std::nullopt;
    if (predicates.has_value() && !predicates->empty()) { // uses libyang's hash
        lyd_node *found = nullptr;
        lyd_find_sibling_val(siblings, node.node, predicates->c_str(), predicates->size(), &found);
        return found;
    }
    for (const lyd_node *data = siblings; data != nullptr; data = data->next) {
        if (data->schema != node.node)
            continue;
        if (node.node->nodetype == LYS_LIST && !has_keys(data, node))
            continue;
        if (node.node->nodetype == LYS_LEAFLIST && node.value.has_value() && !holds_value(data, *node.value))
            continue;
        return data;
    }
    return nullptr;
}

} // namespace yfw::yang
