#include "host/request_tree.h"

#include <algorithm>
#include <cstring>

#include "host/host_status.h"
#include "yang/leaf_type.h"

namespace yfw::host {

namespace {

bool is_identity(const lysc_node *node) {
    return (node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0 &&
           yang::leaf_type(node)->basetype == LY_TYPE_IDENT;
}

} // namespace

RequestTree::RequestTree(const Selection &selection) {
    fill(root_, selection);
}

RequestTree::RequestTree(const yang::EditNode &edit, bool replace_as_merge) {
    fill(root_, edit, replace_as_merge);
}

const char *RequestTree::copy(const char *text) {
    if (text == nullptr)
        return nullptr;
    const size_t size = std::strlen(text) + 1;
    return static_cast<const char *>(std::memcpy(memory_.allocate(size, 1), text, size));
}

tidl_yfw_datatree *RequestTree::allocate(size_t count) {
    auto *nodes = static_cast<tidl_yfw_datatree *>(
        memory_.allocate(count * sizeof(tidl_yfw_datatree), alignof(tidl_yfw_datatree)));
    std::fill_n(nodes, count, tidl_yfw_datatree{});
    return nodes;
}

void RequestTree::fill_node(tidl_yfw_datatree &to, const lysc_node *node,
                            const std::optional<std::string> &value) {
    to.name = node->name;
    to.ns = node->module->ns;
    to.framework_private = this;
    if (!value.has_value())
        return;
    const size_t colon = is_identity(node) ? value->rfind(':') : std::string::npos;
    to.value = copy(value->c_str() + (colon == std::string::npos ? 0 : colon + 1));
}

void RequestTree::make_children(tidl_yfw_datatree &to, size_t count) {
    if (count == 0)
        return;
    to.node_flags |= YFW_NODE_CHILDREN_VALID;
    to.children = allocate(count);
    to.child_count = static_cast<uint32_t>(count);
}

void RequestTree::fill(tidl_yfw_datatree &to, const Selection &from) {
    fill_node(to, from.node, from.value);
    if (to.value != nullptr)
        to.node_flags |= YFW_NODE_HAS_VALUE;
    make_children(to, from.children.size());
    for (size_t i = 0; i < from.children.size(); i++)
        fill(to.children[i], from.children[i]);
}

// Create becomes merge: the node's absence has been checked already.
void RequestTree::fill(tidl_yfw_datatree &to, const yang::EditNode &from, bool replace_as_merge) {
    fill_node(to, from.node, from.value);
    if (from.operation == yang::Operation::replace && !replace_as_merge)
        to.operation = YFW_OP_REPLACE;
    else if (from.operation == yang::Operation::delete_existing)
        to.operation = YFW_OP_DELETE;
    else if (from.operation == yang::Operation::remove)
        to.operation = YFW_OP_REMOVE;
    std::vector<const yang::EditNode *> children;
    for (const yang::EditNode &child : from.children)
        if (child.is_key() || !child.value.has_value() || child.operation != yang::Operation::none)
            children.push_back(&child); // leaves without an operation are omitted
    make_children(to, children.size());
    for (size_t i = 0; i < children.size(); i++)
        fill(to.children[i], *children[i], replace_as_merge);
}

// Growing moves the children, which must be contiguous; the old array stays readable for walks in progress.
terrno RequestTree::add(tidl_yfw_datatree &parent, const AddArguments &arguments) {
    if (std::strchr(arguments.path, '/') != nullptr)
        return status_unknown_path;
    tidl_yfw_datatree *children = allocate(parent.child_count + 1);
    std::copy_n(parent.children, parent.child_count, children);
    tidl_yfw_datatree &added = children[parent.child_count];
    added.name = copy(arguments.path);
    added.ns = copy(arguments.ns);
    added.value = copy(arguments.value);
    added.framework_private = this;
    parent.children = children;
    parent.child_count++;
    parent.node_flags |= YFW_NODE_CHILDREN_VALID;
    if (arguments.slot != nullptr)
        *arguments.slot = &added;
    return YMAP_OK;
}

tidl_yfw_datatree *RequestTree::find_or_add_entry(tidl_yfw_datatree &, std::string_view, std::string_view,
                                                  std::string_view) {
    return nullptr; // a request has no output lists
}

} // namespace yfw::host
