#include "frontends/netconf/filters/selected.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace yfw::netconf {
namespace {

bool has_value(const lyd_node *parent, const lysc_node *leaf, const std::string &value) {
    for (const lyd_node *child = lyd_child(parent); child != nullptr; child = child->next)
        if (child->schema == leaf && lyd_get_value(child) == value)
            return true;
    return false;
}

// Whether the node matches the selection's values.
bool meets(const host::Selection &selection, const lyd_node *node) {
    return selection.node == node->schema &&
           std::all_of(selection.children.begin(), selection.children.end(), [&](const host::Selection &child) {
               return !child.value.has_value() || has_value(node, child.node, *child.value);
           });
}

// Whether an entry is selected by nothing but its key.
bool selects_key(const Selections &selections) {
    return std::any_of(selections.begin(), selections.end(), [](const host::Selection *selection) {
        return std::any_of(
            selection->children.begin(), selection->children.end(),
            [](const host::Selection &child) { return child.is_key() && !child.only_narrows(); });
    });
}

bool holds_nodes(const lysc_node *node) {
    return (node->nodetype & (LYS_LIST | LYS_CONTAINER)) != 0;
}

// The value that it requires of the list's first key; NULL when it requires none.
const std::string *first_key_of(const host::Selection &selection) {
    if (selection.node->nodetype != LYS_LIST)
        return nullptr;
    const lysc_node *key = lysc_node_child(selection.node);
    for (const host::Selection &child : selection.children)
        if (child.node == key && lysc_is_key(key) && child.value.has_value())
            return &*child.value;
    return nullptr;
}

// Whether anything of the node remains.
bool keep(lyd_node *node, const Selections &selections) {
    if (selects_whole(selections) || !holds_nodes(node->schema))
        return !selections.empty();
    bool is_left = false;
    lyd_node *next = nullptr;
    const SelectedChildren below(selections);
    for (lyd_node *child = lyd_child_no_keys(node); child != nullptr; child = next) {
        next = child->next;
        if (keep(child, below.at(child)))
            is_left = true;
        else
            lyd_free_tree(child);
    }
    return is_left || selects_key(selections);
}

void cut(lyd_node *node, const Selections &selections, uint32_t depth) {
    if (selects_whole(selections))
        return cut_below(node, depth);
    const SelectedChildren below(selections);
    for (lyd_node *child = lyd_child_no_keys(node); child != nullptr; child = child->next)
        cut(child, below.at(child), depth);
}

} // namespace

bool selects_whole(const Selections &selections) {
    return std::any_of(selections.begin(), selections.end(),
                       [](const host::Selection *selection) { return !selection->selects_below(); });
}

SelectedChildren::SelectedChildren(const Selections &selections)
    : whole_(selects_whole(selections) ? selections : Selections{}) {
    if (!whole_.empty())
        return;
    for (const host::Selection *selection : selections)
        for (const host::Selection &below : selection->children) {
            if (const std::string *key = first_key_of(below))
                entries_[below.node].emplace(*key, &below);
            else
                others_.push_back(&below);
        }
}

Selections SelectedChildren::at(const lyd_node *child) const {
    if (!whole_.empty())
        return whole_;
    Selections found;
    for (const host::Selection *below : others_)
        if (meets(*below, child))
            found.push_back(below);
    const auto list = entries_.find(child->schema);
    if (list == entries_.end())
        return found;
    const lyd_node *key = lyd_child(child);
    const auto [begin, end] = list->second.equal_range(key != nullptr ? lyd_get_value(key) : "");
    for (auto below = begin; below != end; ++below)
        if (meets(*below->second, child))
            found.push_back(below->second);
    return found;
}

bool selects_leaf(const Selections &selections, const lysc_node *leaf) {
    const auto names_leaf = [leaf](const host::Selection *selection) {
        return std::any_of(selection->children.begin(), selection->children.end(),
                           [leaf](const host::Selection &child) { return child.node == leaf; });
    };
    return selects_whole(selections) || std::any_of(selections.begin(), selections.end(), names_leaf);
}

// The mapping walks the tree once for each entry that is named; otherwise, one walk serves all entries.
bool has_to_be_filtered(const host::Selection &selection) {
    constexpr size_t most_entries = 16;
    std::unordered_map<const lysc_node *, size_t> times;
    return (selection.value.has_value() && !selection.is_key()) ||
           std::any_of(selection.children.begin(), selection.children.end(), [&](const host::Selection &child) {
               const size_t most = child.node->nodetype == LYS_LIST ? most_entries : 1;
               return ++times[child.node] > most || has_to_be_filtered(child);
           });
}

host::Selection broadened(const host::Selection &selection) {
    std::unordered_map<const lysc_node *, size_t> times;
    for (const host::Selection &child : selection.children)
        times[child.node]++;
    host::Selection made{
        selection.node, selection.is_key() ? selection.value : std::nullopt, {}, selection.named};
    const bool repeats_leaf = std::any_of(times.begin(), times.end(), [](const auto &child) {
        return child.second > 1 && !holds_nodes(child.first);
    });
    if (repeats_leaf || !selection.selects_below())
        std::copy_if(selection.children.begin(), selection.children.end(), std::back_inserter(made.children),
                     [&](const host::Selection &child) { return child.is_key() && times[child.node] == 1; });
    else
        for (const host::Selection &child : selection.children) {
            size_t &left = times[child.node];
            if (left == 1)
                made.children.push_back(broadened(child));
            else if (left > 1)
                made.children.push_back({child.node, std::nullopt, {}, false});
            left = left > 1 ? 0 : left; // the rest is included in them
        }
    return made;
}

host::Selection around_leaves(const host::Selection &selection) {
    const bool selects_leaves =
        std::any_of(selection.children.begin(), selection.children.end(),
                    [](const host::Selection &child) { return !child.is_key() && !holds_nodes(child.node); });
    host::Selection made{selection.node, selection.value, {}, selection.named};
    for (const host::Selection &child : selection.children)
        if (child.is_key() || !selects_leaves)
            made.children.push_back(around_leaves(child));
    return made;
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
