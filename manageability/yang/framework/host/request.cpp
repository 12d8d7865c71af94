#include "host/request.h"

#include <algorithm>

#include "yang/path_values.h"

namespace yfw::host {
namespace {

bool same_entry(const Selection &existing, const yang::PathStep &step) {
    if (existing.node != step.node)
        return false;
    if (existing.node->nodetype == LYS_LEAF)
        return true;
    size_t valued = 0;
    for (const Selection &child : existing.children)
        valued += child.value.has_value() ? 1 : 0;
    if (valued != step.predicates.size())
        return false;
    return std::all_of(step.predicates.begin(), step.predicates.end(), [&](const yang::Predicate &predicate) {
        return std::any_of(existing.children.begin(), existing.children.end(), [&](const Selection &child) {
            return child.node == predicate.leaf && child.value == predicate.value;
        });
    });
}

Selection &child_for(Selection &parent, const yang::PathStep &step) {
    for (Selection &child : parent.children)
        if (same_entry(child, step))
            return child;
    Selection &added = parent.children.emplace_back();
    added.node = step.node;
    for (const yang::Predicate &predicate : step.predicates)
        added.children.push_back({predicate.leaf, predicate.value, {}, false});
    return added;
}

void add_path(Selection &root, const yang::Path &path) {
    Selection *at = &root;
    for (size_t i = 1; i < path.size(); i++)
        at = &child_for(*at, path[i]);
    at->named = at->value.has_value();
}

bool contains(const yang::Path &outer, const yang::Path &inner) {
    if (outer.size() > inner.size())
        return false;
    for (size_t i = 0; i < outer.size(); i++) {
        if (outer[i].node != inner[i].node)
            return false;
        for (const yang::Predicate &predicate : outer[i].predicates)
            if (std::none_of(inner[i].predicates.begin(), inner[i].predicates.end(),
                             [&](const yang::Predicate &other) {
                                 return other.leaf == predicate.leaf && other.value == predicate.value;
                             }))
                return false;
    }
    return true;
}

// Drops duplicates and paths contained in another one.
std::vector<yang::Path> outermost(const std::vector<yang::Path> &paths) {
    std::vector<yang::Path> kept;
    for (size_t i = 0; i < paths.size(); i++) {
        bool contained = false;
        for (size_t j = 0; j < paths.size() && !contained; j++)
            contained = j != i && contains(paths[j], paths[i]) && (j < i || !contains(paths[i], paths[j]));
        if (!contained)
            kept.push_back(paths[i]);
    }
    return kept;
}

void append(std::vector<Selection> &to, std::vector<Selection> from) {
    std::move(from.begin(), from.end(), std::back_inserter(to));
}

// `inside`: whether the node is at or below one of `below`.
bool holds_state(const lysc_node *node, const std::vector<const lysc_node *> &below, bool inside) {
    inside = inside || std::find(below.begin(), below.end(), node) != below.end();
    if (inside && (node->flags & LYS_CONFIG_R) != 0)
        return true;
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        if (holds_state(child, below, inside))
            return true;
    return false;
}

bool is_inside(const lysc_node *node, const std::vector<const lysc_node *> &below) {
    for (; node != nullptr; node = node->parent)
        if (std::find(below.begin(), below.end(), node) != below.end())
            return true;
    return false;
}

} // namespace

bool Selection::selects_below() const {
    return std::any_of(children.begin(), children.end(),
                       [](const Selection &child) { return !child.only_narrows(); });
}

Selection merge_paths(const std::vector<yang::Path> &paths) {
    Selection root{paths.front().front().node, std::nullopt, {}, false};
    for (const yang::Path &path : outermost(yang::without_values(paths)))
        add_path(root, path);
    return root;
}

Selection selection_of(const ReadRequest &request) {
    return request.selection.has_value() ? *request.selection : merge_paths(request.paths);
}

std::vector<Selection> split_by_list_entry(const Selection &root) {
    std::vector<Selection> common_children; // in the first tree: they can be combined
    std::vector<Selection> apart;           // each in a separate tree
    std::vector<const lysc_node *> lists;
    for (const Selection &child : root.children) {
        std::vector<Selection> parts = split_by_list_entry(child);
        const bool repeated = child.node->nodetype == LYS_LIST &&
                              std::find(lists.begin(), lists.end(), child.node) != lists.end();
        if (child.node->nodetype == LYS_LIST)
            lists.push_back(child.node);
        if (!repeated) {
            common_children.push_back(std::move(parts.front()));
            parts.erase(parts.begin());
        }
        append(apart, std::move(parts));
    }
    std::vector<Selection> trees{{root.node, root.value, std::move(common_children), root.named}};
    for (Selection &part : apart) {
        Selection tree{root.node, root.value, {}, false};
        for (const Selection &child : root.children)
            if (child.value.has_value())
                tree.children.push_back(child); // every part needs the keys and matches
        tree.children.push_back(std::move(part));
        trees.push_back(std::move(tree));
    }
    return trees;
}

std::vector<Selection> split_by_selected_node(const Selection &root) {
    std::vector<Selection> trees;
    for (const Selection &child : root.children) {
        if (child.only_narrows())
            continue;
        for (Selection &part : split_by_selected_node(child)) {
            Selection tree{root.node, root.value, {}, false};
            for (const Selection &other : root.children)
                if (other.value.has_value() && &other != &child)
                    tree.children.push_back(other);
            tree.children.push_back(std::move(part));
            trees.push_back(std::move(tree));
        }
    }
    if (trees.empty())
        trees.push_back(root);
    return trees;
}

std::optional<std::string> wanted_value(const Selection &root, const lysc_node *key) {
    for (const Selection &child : root.children) {
        if (child.node == key)
            return child.value;
        if (std::optional<std::string> value = wanted_value(child, key))
            return value;
    }
    return std::nullopt;
}

bool selects_state(const Selection &root) {
    return selects_state(root, {root.node});
}

bool selects_state(const Selection &root, const std::vector<const lysc_node *> &below) {
    bool content = false;
    for (const Selection &child : root.children) {
        if (child.only_narrows())
            continue;
        content = true;
        if (selects_state(child, below))
            return true;
    }
    return !content && holds_state(root.node, below, is_inside(root.node, below));
}

} // namespace yfw::host
