#include "data_texts.h"

#include <algorithm>

#include "yang/tree_text.h"

namespace yfw::yang::test {
namespace {

std::string place(const lyd_node *node) {
    const std::string path = path_of(node);
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

// The path of a leaf-list entry would repeat its value.
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
    result << found.size() << " lines, expected " << wanted.size() << '\n';
    for (const std::string &line : wanted)
        if (std::find(found.begin(), found.end(), line) == found.end())
            result << "missing: " << line.substr(0, shown) << '\n';
    for (const std::string &line : found)
        if (std::find(wanted.begin(), wanted.end(), line) == wanted.end())
            result << "unexpected: " << line.substr(0, shown) << '\n';
    return result;
}

std::string xml(const lyd_node *data) {
    return printed(data, LYD_XML, LYD_PRINT_WITHSIBLINGS);
}

} // namespace yfw::yang::test
