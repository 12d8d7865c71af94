#include "host/node_hierarchy.h"

#include <algorithm>

#include "yang/path_words.h"
#include "yang/yang_text.h"

namespace yfw::host {
namespace {

// The leaf that is the node's only child.
const tidl_yfw_datatree *only_leaf(const tidl_yfw_datatree &node) {
    const bool one = (node.node_flags & YFW_NODE_CHILDREN_VALID) != 0 && node.child_count == 1;
    const bool leaf = one && (node.children[0].node_flags & YFW_NODE_CHILDREN_VALID) == 0 &&
                      (node.children[0].node_flags & YFW_NODE_IS_KEY) == 0;
    return leaf ? &node.children[0] : nullptr;
}

} // namespace

const tidl_yfw_datatree *find_child(const tidl_yfw_datatree &parent, std::string_view name) {
    if ((parent.node_flags & YFW_NODE_CHILDREN_VALID) == 0)
        return nullptr;
    for (uint32_t i = 0; i < parent.child_count; i++)
        if (name == parent.children[i].name)
            return &parent.children[i];
    return nullptr;
}

void NodeHierarchy::start(const tidl_yfw_datatree *root) {
    root_ = root;
    nodes_.clear();
    pushed_last_.clear();
    current_list_entry_ = nullptr;
}

void NodeHierarchy::push(const tidl_yfw_datatree *node) {
    nodes_.push_back(node);
    pushed_last_ = nodes_;
}

void NodeHierarchy::pop(const tidl_yfw_datatree *node) {
    const auto found = std::find(nodes_.rbegin(), nodes_.rend(), node);
    if (found != nodes_.rend())
        nodes_.erase(std::next(found).base(), nodes_.end());
}

const char *NodeHierarchy::value(std::string_view path, std::string_view leaf) const {
    yang::PathWords words(path);
    std::string_view word;
    const tidl_yfw_datatree *at = nullptr;
    size_t standing = 0;
    while (words.next(word)) {
        const bool on_the_way = at == nullptr || (standing > 0 && at == nodes_[standing - 1]);
        if (on_the_way && standing < nodes_.size() && word == nodes_[standing]->name)
            at = nodes_[standing++];
        else if (at == nullptr)
            at = root_ != nullptr && word == root_->name ? root_ : nullptr;
        else
            at = find_child(*at, word);
        if (at == nullptr)
            return nullptr;
    }
    const tidl_yfw_datatree *found = at != nullptr ? find_child(*at, leaf) : nullptr;
    return found != nullptr ? found->value : nullptr;
}

bool NodeHierarchy::select_list_entry(std::string_view path) {
    yang::PathWords words(path);
    std::string_view word;
    size_t depth = 0;
    while (words.next(word)) {
        if (depth >= nodes_.size() || word != nodes_[depth]->name)
            return false;
        depth++;
    }
    current_list_entry_ = depth > 0 ? nodes_[depth - 1] : nullptr;
    return current_list_entry_ != nullptr;
}

std::string NodeHierarchy::instance_path() const {
    return path_of(nodes_);
}

std::string NodeHierarchy::last_standing() const {
    const tidl_yfw_datatree *leaf = pushed_last_.empty() ? nullptr : only_leaf(*pushed_last_.back());
    return path_of(pushed_last_) + (leaf != nullptr ? "/" + std::string(leaf->name) : "");
}

std::string NodeHierarchy::path_of(const std::vector<const tidl_yfw_datatree *> &nodes) {
    std::string path;
    for (const tidl_yfw_datatree *node : nodes) {
        path.append("/").append(node->name);
        // Keys come first; any number of entries may follow them.
        for (uint32_t i = 0; (node->node_flags & YFW_NODE_CHILDREN_VALID) != 0 && i < node->child_count; i++) {
            const tidl_yfw_datatree &child = node->children[i];
            if ((child.node_flags & YFW_NODE_IS_KEY) == 0)
                break;
            if (child.value != nullptr)
                path.append("[")
                    .append(child.name)
                    .append("=")
                    .append(yang::quoted_literal(child.value))
                    .append("]");
        }
    }
    return path;
}

} // namespace yfw::host
