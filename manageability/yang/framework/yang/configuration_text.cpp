#include "yang/configuration_text.h"

#include <map>

#include "base/printable.h"
#include "yang/tree_text.h"

namespace yfw::yang {
namespace {

using Leaves = std::map<std::string, std::string>;

void collect(const lyd_node *top, Leaves &leaves) {
    const lyd_node *node = nullptr;
    LYD_TREE_DFS_BEGIN(top, node) {
        const bool leaf = (node->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
        if (leaf && (node->flags & LYD_DEFAULT) == 0 && !lysc_is_key(node->schema)) {
            leaves[path_of(node)] = lyd_get_value(node);
        } else if (node->schema->nodetype == LYS_LIST) {
            leaves[path_of(node)] = "";
        }
        LYD_TREE_DFS_END(top, node)
    }
}

Leaves leaves_of(const lyd_node *configuration) {
    Leaves leaves;
    for (const lyd_node *top = configuration; top != nullptr; top = top->next)
        collect(top, leaves);
    return leaves;
}

// "- path = old" or "+ path = new".
std::string line_of(const Difference &difference) {
    std::string line = (difference.is_added ? "+ " : "- ") + difference.path;
    if (!difference.value.empty())
        line += " = " + difference.value;
    return printable(line);
}

} // namespace

std::string print_configuration(const lyd_node *configuration) {
    return printed(configuration, LYD_XML, LYD_PRINT_WITHSIBLINGS);
}

DataTree parse_configuration(const Schemas &schemas, const std::string &text, const std::string &place) {
    if (text.empty())
        return nullptr;
    return parse_data(schemas.context(), text, LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, place);
}

std::vector<Difference> differences(const lyd_node *before, const lyd_node *after) {
    const Leaves old_leaves = leaves_of(before);
    const Leaves new_leaves = leaves_of(after);
    std::vector<Difference> found;
    for (const auto &[path, value] : old_leaves) {
        const auto now = new_leaves.find(path);
        if (now == new_leaves.end() || now->second != value)
            found.push_back({false, path, value});
        if (now != new_leaves.end() && now->second != value)
            found.push_back({true, path, now->second});
    }
    for (const auto &[path, value] : new_leaves)
        if (!old_leaves.contains(path))
            found.push_back({true, path, value});
    return found;
}

std::string configuration_difference(const lyd_node *before, const lyd_node *after) {
    std::string text;
    for (const Difference &each : differences(before, after))
        text += line_of(each) + "\n";
    return text;
}

DataTree take_configuration(DataTree &data) {
    lyd_node *configuration = nullptr;
    lyd_node *rest = data.release();
    lyd_node *next = nullptr;
    lyd_node *kept = nullptr;
    for (lyd_node *top = rest; top != nullptr; top = next) {
        next = top->next;
        lyd_unlink_tree(top);
        lyd_node *&to = (top->schema->flags & LYS_CONFIG_W) != 0 ? configuration : kept;
        lyd_insert_sibling(to, top, &to);
    }
    data.reset(kept);
    return DataTree(configuration);
}

DataTree copy_configuration(const lyd_node *configuration) {
    lyd_node *copy = nullptr;
    if (configuration != nullptr)
        lyd_dup_siblings(configuration, nullptr, LYD_DUP_RECURSIVE | LYD_DUP_WITH_FLAGS, &copy);
    return DataTree(copy);
}

} // namespace yfw::yang
