#include "host/native_selection.h"

#include <algorithm>

#include "base/error.h"
#include "yang/path_words.h"

namespace yfw::host {
namespace {

[[noreturn]] void unknown(const NativePath &path) {
    throw Error(ErrorTag::operation_failed, path.path,
                "the mapping reads a path that the native models do not have");
}

SelectedNode &find_or_add(std::vector<std::unique_ptr<SelectedNode>> &nodes, const lysc_node *schema) {
    for (const auto &node : nodes)
        if (node->node == schema)
            return *node;
    nodes.push_back(std::make_unique<SelectedNode>());
    nodes.back()->node = schema;
    return *nodes.back();
}

// Adds the leaves that `from`, which may be NULL, selects by name.
void add_leaves(SelectedNode &to, const SelectedNode *from) {
    if (from == nullptr)
        return;
    for (const auto &child : from->children)
        if (child->node->nodetype == LYS_LEAF && !lysc_is_key(child->node))
            find_or_add(to.children, child->node).whole = true;
}

} // namespace

const SelectedNode *SelectedNode::child(const lysc_node *schema) const {
    for (const auto &candidate : children)
        if (candidate->node == schema)
            return candidate.get();
    return nullptr;
}

std::vector<const lysc_node *> nodes_of(const SelectedNode &selection) {
    std::vector<const lysc_node *> nodes{selection.node};
    for (const auto &child : selection.children)
        for (const lysc_node *node : nodes_of(*child))
            nodes.push_back(node);
    return nodes;
}

SelectedNode &NativeSelection::tree_for(const NativePath &path, std::string_view top) {
    const lysc_node *schema = schemas_.native_root(path.ns, top);
    if (schema == nullptr)
        unknown(path);
    return find_or_add(trees_, schema);
}

void NativeSelection::add(const NativePath &path) {
    yang::PathWords words(path.path);
    std::string_view word;
    if (!words.next(word))
        unknown(path);
    SelectedNode *at = &tree_for(path, word);
    while (words.next(word)) {
        const lysc_node *schema = yang::schema_child(at->node, word);
        if (schema == nullptr)
            unknown(path);
        at = &find_or_add(at->children, schema);
    }
    at->whole = true;
    if (path.value.has_value() && lysc_is_key(at->node)) {
        at->value = path.value;
        narrows_ = true;
    }
}

void NativeSelection::narrow(const lysc_node *key, const std::string &value) {
    std::vector<const lysc_node *> chain; // the list comes first
    for (const lysc_node *node = key->parent; node != nullptr; node = lysc_data_parent(node))
        chain.push_back(node);
    const auto top = std::find_if(trees_.begin(), trees_.end(),
                                  [&](const auto &tree) { return tree->node == chain.back(); });
    if (top == trees_.end())
        return;
    SelectedNode *at = top->get();
    bool whole = at->whole;
    for (auto node = chain.rbegin() + 1; node != chain.rend(); ++node) {
        if (!whole && at->child(*node) == nullptr)
            return;
        at = &find_or_add(at->children, *node);
        whole = whole || at->whole;
    }
    find_or_add(at->children, key).value = value;
    narrows_ = true;
}

const SelectedNode *NativeSelection::tree(const lysc_node *top) const {
    for (const auto &tree : trees_)
        if (tree->node == top)
            return tree.get();
    return nullptr;
}

std::unique_ptr<SelectedNode> NativeSelection::outline(const lysc_node *list) const {
    std::vector<const lysc_node *> chain; // the top node comes last
    for (const lysc_node *node = list; node != nullptr; node = lysc_data_parent(node))
        chain.push_back(node);
    auto top = std::make_unique<SelectedNode>();
    top->node = chain.back();
    SelectedNode *at = top.get();
    const SelectedNode *asked = tree(chain.back());
    add_leaves(*at, asked);
    for (auto node = chain.rbegin() + 1; node != chain.rend(); ++node) {
        at = &find_or_add(at->children, *node);
        asked = asked != nullptr ? asked->child(*node) : nullptr;
        add_leaves(*at, asked);
    }
    return top;
}

} // namespace yfw::host
