#include "frontends/netconf/operations/cost.h"

#include <algorithm>

#include "frontends/netconf/filters/filter.h"

namespace yfw::netconf {
namespace {

bool is_one_of(std::string_view name, std::initializer_list<std::string_view> names) {
    return std::find(names.begin(), names.end(), name) != names.end();
}

// Reading more entries than these, each by its name, takes as long as reading all of a long list.
constexpr size_t most_named_entries = 100;

bool has_list(const lysc_node *node) {
    for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
        if (child->nodetype == LYS_LIST || has_list(child))
            return true;
    return false;
}

bool names_one_entry(const host::Selection &selection) {
    return std::any_of(selection.children.begin(), selection.children.end(),
                       [](const host::Selection &child) { return child.is_key() && child.value.has_value(); });
}

// Whether all entries of a list have to be read, or many one by one; `entries` counts the latter.
bool reads_lists(const host::Selection &selection, size_t &entries) {
    const bool is_list = selection.node->nodetype == LYS_LIST;
    if (is_list && (!names_one_entry(selection) || ++entries > most_named_entries))
        return true;
    // The keys alone name an entry, and select all of it.
    const bool is_whole = std::all_of(selection.children.begin(), selection.children.end(),
                                      [](const host::Selection &child) { return child.is_key(); });
    if (is_whole)
        return has_list(selection.node);
    return std::any_of(selection.children.begin(), selection.children.end(),
                       [&](const host::Selection &child) { return reads_lists(child, entries); });
}

bool is_xpath(const Element &operation) {
    const std::optional<Element> filter = operation.child("filter");
    return operation.child("xpath-filter").has_value() ||
           (filter.has_value() && filter->attribute("type").value_or("") == "xpath");
}

// The lists of the device's state are long, those of the server itself and of configurations are not.
Cost cost_of_state(const Server &server, const Element &operation) {
    std::optional<Element> filter = operation.child("filter");
    if (!filter.has_value())
        filter = operation.child("subtree-filter");
    if (!filter.has_value())
        return Cost::high;
    const auto selection = subtree_selection(*filter, server.schemas().openconfig_root());
    size_t entries = 0;
    return selection.has_value() && reads_lists(*selection, entries) ? Cost::high : Cost::low;
}

} // namespace

Cost cost_of(const Server &server, const Element &operation) {
    const std::string_view name = operation.name();
    if (is_one_of(name, {"get", "get-config", "get-data"}) && is_xpath(operation))
        return Cost::high;
    if (is_one_of(name, {"get", "get-data"}))
        return cost_of_state(server, operation);
    if (name == "validate") // readers may do it, and must not hold up edits
        return Cost::high;
    if (is_one_of(name, {"edit-config", "edit-data", "copy-config", "delete-config", "commit", "cancel-commit",
                         "discard-changes", "lock", "unlock"}))
        return Cost::edit;
    return Cost::low;
}

} // namespace yfw::netconf
