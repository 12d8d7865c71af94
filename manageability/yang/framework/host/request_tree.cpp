#include "host/request_tree.h"

#include <algorithm>
#include <cstring>

#include "host/host_status.h"

namespace yfw::host {

RequestTree::RequestTree(const Selection &selection) {
    fill(root_, selection);
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

void RequestTree::fill(tidl_yfw_datatree &to, const Selection &from) {
    to.name = from.node->name;
    to.ns = from.node->module->ns;
    to.framework_private = this;
    if (from.value.has_value()) {
        to.value = copy(from.value->c_str());
        to.node_flags |= YFW_NODE_HAS_VALUE;
    }
    if (from.children.empty())
        return;
    to.node_flags |= YFW_NODE_CHILDREN_VALID;
    to.children = allocate(from.children.size());
    to.child_count = static_cast<uint32_t>(from.children.size());
    for (size_t i = 0; i < from.children.size(); i++)
        fill(to.children[i], from.children[i]);
}

// The children stay contiguous, so they move; the old ones stay readable for whoever still walks them.
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
