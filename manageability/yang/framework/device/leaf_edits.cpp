#include "device/leaf_edits.h"

#include "yang/comparison.h"
#include "yang/node_kind.h"
#include "yang/tree_text.h"

namespace yfw::device {
namespace {

yang::EditNode node_of(const lyd_node *data) {
    yang::EditNode node;
    node.node = data->schema;
    if (yang::is_term(data->schema))
        node.value = lyd_get_value(data);
    return node;
}

void add_leaves(const lyd_node *data, const lyd_node *other, const LeafChoice &choose, yang::EditNode &edit) {
    for (const lyd_node *child = lyd_child(data); child != nullptr; child = child->next) {
        if ((child->flags & LYD_DEFAULT) != 0 || lysc_is_key(child->schema))
            continue;
        const lyd_node *there = other != nullptr ? yang::counterpart(child, lyd_child(other)) : nullptr;
        if (yang::is_term(child->schema)) {
            if (const std::optional<yang::Operation> operation = choose(child, there)) {
                edit.children.push_back(node_of(child));
                edit.children.back().operation = *operation;
            }
            continue;
        }
        yang::EditNode below = node_of(child);
        for (const lyd_node *key = lyd_child(child); key != nullptr && lysc_is_key(key->schema);
             key = key->next)
            below.children.push_back(node_of(key));
        const size_t keys = below.children.size();
        add_leaves(child, there, choose, below);
        if (below.children.size() > keys)
            edit.children.push_back(std::move(below));
    }
}

} // namespace

yang::EditNode leaf_edit(const lysc_node *root, const lyd_node *data, const lyd_node *other,
                         const LeafChoice &choose) {
    yang::EditNode edit;
    edit.node = root;
    if (data != nullptr)
        add_leaves(data, other, choose, edit);
    return edit;
}

std::string leaf_path(const lyd_node *leaf) {
    const std::string path = yang::path_of(leaf);
    const std::string prefix = "/" + std::string(leaf->schema->module->name) + ":";
    return path.rfind(prefix, 0) == 0 ? "/" + path.substr(prefix.size()) : path;
}

std::vector<yang::EditNode> single_leaves(const yang::EditNode &edit) {
    yang::EditNode above = edit;
    std::erase_if(above.children, [](const yang::EditNode &child) { return !child.is_key(); });
    std::vector<yang::EditNode> parts;
    for (const yang::EditNode &child : edit.children) {
        if (child.is_key())
            continue;
        for (yang::EditNode &below : yang::is_term(child.node) ? std::vector{child} : single_leaves(child)) {
            parts.push_back(above);
            parts.back().children.push_back(std::move(below));
        }
    }
    return parts;
}

} // namespace yfw::device
