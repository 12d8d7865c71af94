#include "data_texts.h"

#include <vector>

namespace yfw::host::test {
namespace {

// "name{child child}"
template <class Children, class Text>
std::string with_children(std::string head, const Children &children, Text &&text_of) {
    if (children.empty())
        return head;
    const char *separator = "{";
    for (const auto &child : children) {
        head += separator + text_of(child);
        separator = " ";
    }
    return head + "}";
}

} // namespace

std::string text(const Selection &selection) {
    std::string head = selection.node->name;
    if (selection.value.has_value())
        head += "=" + *selection.value;
    if (selection.named)
        head += "!";
    return with_children(head, selection.children, [](const Selection &child) { return text(child); });
}

std::string text(const SelectedNode &selection) {
    std::string head = selection.node->name;
    if (selection.value.has_value())
        head += "=" + *selection.value;
    if (selection.whole)
        head += "*";
    return with_children(head, selection.children, [](const auto &child) { return text(*child); });
}

std::string text(const tidl_yfw_datatree &node) {
    std::string head = (node.node_flags & YFW_NODE_IS_KEY) != 0 ? "@" : "";
    head += node.name;
    if (node.value != nullptr)
        head += "='" + std::string(node.value) + "'";
    std::vector<const tidl_yfw_datatree *> children;
    for (uint32_t i = 0; (node.node_flags & YFW_NODE_CHILDREN_VALID) != 0 && i < node.child_count; i++)
        children.push_back(&node.children[i]);
    return with_children(head, children, [](const tidl_yfw_datatree *child) { return text(*child); });
}

} // namespace yfw::host::test
