#include "yang/path_values.h"

#include <algorithm>
#include <set>

#include "yang/edit_instance.h"
#include "yang/forest.h"

namespace yfw::yang {
namespace {

// The leaf-lists of which the paths name values.
std::set<const lysc_node *> named_leaf_lists(const std::vector<Path> &paths) {
    std::set<const lysc_node *> named;
    for (const Path &path : paths)
        if (path.back().value() != nullptr)
            named.insert(path.back().node);
    return named;
}

// Whether the path selects the node or one around it.
bool selects(const Path &path, const lyd_node *node) {
    std::vector<const lyd_node *> line;
    for (const lyd_node *at = node; at != nullptr; at = lyd_parent(at))
        line.insert(line.begin(), at);
    if (path.size() > line.size())
        return false;
    for (size_t i = 0; i < path.size(); i++)
        if (path[i].node != line[i]->schema ||
            !std::all_of(path[i].predicates.begin(), path[i].predicates.end(),
                         [&](const Predicate &predicate) { return meets(line[i], predicate); }))
            return false;
    return true;
}

std::vector<lyd_node *> entries_of(const lyd_node *top, const std::set<const lysc_node *> &leaf_lists) {
    std::vector<lyd_node *> found;
    for (; top != nullptr; top = top->next) {
        lyd_node *node = nullptr;
        LYD_TREE_DFS_BEGIN(top, node) {
            if (leaf_lists.contains(node->schema))
                found.push_back(node);
            LYD_TREE_DFS_END(top, node)
        }
    }
    return found;
}

void remove_with_empty_containers(DataTree &data, lyd_node *node) {
    lyd_node *parent = lyd_parent(node);
    while (parent != nullptr && parent->schema->nodetype == LYS_CONTAINER &&
           lyd_child(parent)->next == nullptr) {
        node = parent;
        parent = lyd_parent(node);
    }
    remove(data, node);
}

} // namespace

bool meets(const lyd_node *node, const Predicate &predicate) {
    if (predicate.leaf == node->schema)
        return holds_value(node, predicate.value);
    for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
        if (child->schema == predicate.leaf)
            return holds_value(child, predicate.value);
    return false;
}

std::vector<Path> without_values(std::vector<Path> paths) {
    for (Path &path : paths)
        std::erase_if(path.back().predicates,
                      [&](const Predicate &predicate) { return predicate.leaf == path.back().node; });
    return paths;
}

bool names_values(const std::vector<Path> &paths) {
    return !named_leaf_lists(paths).empty();
}

void keep_named_values(DataTree &data, const std::vector<Path> &paths) {
    const std::set<const lysc_node *> named = named_leaf_lists(paths);
    if (named.empty() || data == nullptr)
        return;
    for (lyd_node *entry : entries_of(data.get(), named))
        if (std::none_of(paths.begin(), paths.end(), [&](const Path &path) { return selects(path, entry); }))
            remove_with_empty_containers(data, entry);
}

} // namespace yfw::yang
