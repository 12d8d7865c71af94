#include "frontends/netconf/selected.h"

#include <algorithm>
#include <string_view>

namespace yfw::netconf {
namespace {

bool is_entry_with(const lyd_node *entry, const lysc_node *key, const std::string &value) {
    for (const lyd_node *child = lyd_child(entry); child != nullptr; child = child->next)
        if (child->schema == key)
            return lyd_get_value(child) == value;
    return true; // the answer does not show this key
}

bool meets(const host::Selection &selection, const lyd_node *node) {
    return selection.node == node->schema &&
           std::all_of(selection.children.begin(), selection.children.end(), [&](const host::Selection &child) {
               return !child.value.has_value() || !child.is_key() ||
                      is_entry_with(node, child.node, *child.value);
           });
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
