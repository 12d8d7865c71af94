#include "frontends/netconf/selected.h"

#include <algorithm>
#include <string_view>

namespace yfw::netconf {
namespace {

bool has_value(const lyd_node *parent, const lysc_node *leaf, const std::string &value) {
    for (const lyd_node *child = lyd_child(parent); child != nullptr; child = child->next)
        if (child->schema == leaf && lyd_get_value(child) == value)
            return true;
    return false;
}

// Whether the node is one that the selection means: it has the values that are asked for.
bool meets(const host::Selection &selection, const lyd_node *node) {
    return selection.node == node->schema &&
           std::all_of(selection.children.begin(), selection.children.end(), [&](const host::Selection &child) {
               return !child.value.has_value() || has_value(node, child.node, *child.value);
           });
}

// Whether an entry is asked for by no more than its key.
bool selects_key(const Selections &selections) {
    return std::any_of(selections.begin(), selections.end(), [](const host::Selection *selection) {
        return std::any_of(
            selection->children.begin(), selection->children.end(),
            [](const host::Selection &child) { return child.is_key() && !child.only_narrows(); });
    });
}

// Whether something of the node is left.
bool keep(lyd_node *node, const Selections &selections) {
    if (selects_whole(selections) || (node->schema->nodetype & (LYS_CONTAINER | LYS_LIST)) == 0)
        return !selections.empty();
    bool is_left = false;
    lyd_node *next = nullptr;
    for (lyd_node *child = lyd_child_no_keys(node); child != nullptr; child = next) {
        next = child->next;
        if (keep(child, selections_of_child(selections, child)))
            is_left = true;
        else
            lyd_free_tree(child);
    }
    return is_left || selects_key(selections);
}

void cut(lyd_node *node, const Selections &selections, uint32_t depth) {
    if (selects_whole(selections))
        return cut_below(node, depth);
    for (lyd_node *child = lyd_child_no_keys(node); child != nullptr; child = child->next)
        cut(child, selections_of_child(selections, child), depth);
}

} // namespace

bool selects_whole(const Selections &selections) {
    return std::any_of(selections.begin(), selections.end(),
                       [](const host::Selection *selection) { return !selection->selects_below(); });
}

Selections selections_of_child(const Selections &selections, const lyd_node *child) {
    if (selects_whole(selections))
        return selections;
    Selections found;
    for (const host::Selection *selection : selections)
        for (const host::Selection &below : selection->children)
            if (meets(below, child))
                found.push_back(&below);
    return found;
}

bool selects_leaf(const Selections &selections, const lysc_node *leaf) {
    const auto names_leaf = [leaf](const host::Selection *selection) {
        return std::any_of(selection->children.begin(), selection->children.end(),
                           [leaf](const host::Selection &child) { return child.node == leaf; });
    };
    return selects_whole(selections) || std::any_of(selections.begin(), selections.end(), names_leaf);
}

bool has_content_matches(const host::Selection &selection) {
    return (selection.value.has_value() && !selection.is_key()) ||
           std::any_of(selection.children.begin(), selection.children.end(), has_content_matches);
}

host::Selection without_content_matches(host::Selection selection) {
    if (!selection.selects_below())
        std::erase_if(selection.children, [](const host::Selection &child) { return !child.is_key(); });
    if (!selection.is_key())
        selection.value.reset();
    for (host::Selection &child : selection.children)
        child = without_content_matches(std::move(child));
    return selection;
}

void keep_selected(yang::DataTree &data, const host::Selection &selection) {
    if (data != nullptr && !(meets(selection, data.get()) && keep(data.get(), {&selection})))
        data.reset();
}

void cut_below(lyd_node *node, uint32_t depth) {
    if (depth == unlimited_depth)
        return;
    lyd_node *next = nullptr;
    for (lyd_node *child = lyd_child_no_keys(node); child != nullptr; child = next) {
        next = child->next;
        if (depth <= 1)
            lyd_free_tree(child);
        else
            cut_below(child, depth - 1);
    }
}

void cut_selected(lyd_node *data, const host::Selection &selection, uint32_t depth) {
    if (data != nullptr && depth != unlimited_depth)
        cut(data, {&selection}, depth);
}

} // namespace yfw::netconf
