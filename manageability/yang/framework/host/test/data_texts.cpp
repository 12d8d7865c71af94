#include "data_texts.h"

#include <algorithm>
#include <cstdlib>

namespace yfw::host::test {
namespace {

std::string place(const lyd_node *node) {
    char *text = lyd_path(node, LYD_PATH_STD, nullptr, 0);
    std::string path = text != nullptr ? text : "";
    std::free(text);
    // "/openconfig-lldp:lldp/..." Only the first step carries the module.
    const size_t colon = path.find(':');
    return "/" + path.substr(colon + 1);
}

bool is_key(const lyd_node *node) {
    return lysc_is_key(node->schema);
}

bool holds_content(const lyd_node *node) {
    for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
        if (!is_key(child))
            return true;
    return false;
}

// An entry of a leaf-list: its path would repeat its value.
std::string leaf_place(const lyd_node *node) {
    if (node->schema->nodetype == LYS_LEAFLIST)
        return place(lyd_parent(node)) + "/" + node->schema->name;
    return place(node);
}

void collect(const lyd_node *node, Lines &lines) {
    if ((node->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0) {
        if (!is_key(node))
            lines.push_back(leaf_place(node) + "=" + lyd_get_value(node));
        return;
    }
    if (!holds_content(node))
        lines.push_back(place(node));
    for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
        collect(child, lines);
}

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

Lines leaves(const lyd_node *data) {
    Lines lines;
    for (const lyd_node *top = data; top != nullptr; top = top->next)
        collect(top, lines);
    return lines;
}

Lines below(const Lines &lines, std::string_view prefix) {
    Lines found;
    for (const std::string &line : lines)
        if (line.starts_with(prefix))
            found.push_back(line.substr(prefix.size()));
    return found;
}

testing::AssertionResult same(const Lines &found, const Lines &wanted) {
    if (found == wanted)
        return testing::AssertionSuccess();
    constexpr size_t shown = 200;
    testing::AssertionResult result = testing::AssertionFailure();
    result << found.size() << " lines for " << wanted.size() << '\n';
    for (const std::string &line : wanted)
        if (std::find(found.begin(), found.end(), line) == found.end())
            result << "missing: " << line.substr(0, shown) << '\n';
    for (const std::string &line : found)
        if (std::find(wanted.begin(), wanted.end(), line) == wanted.end())
            result << "not wanted: " << line.substr(0, shown) << '\n';
    return result;
}

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

std::string xml(const lyd_node *data) {
    char *printed = nullptr;
    lyd_print_mem(&printed, data, LYD_XML, LYD_PRINT_WITHSIBLINGS);
    const std::string text = printed != nullptr ? printed : "";
    std::free(printed);
    return text;
}

} // namespace yfw::host::test
