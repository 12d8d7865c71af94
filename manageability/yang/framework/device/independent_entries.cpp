#include "device/independent_entries.h"

#include <algorithm>

#include "base/error.h"
#include "device/entry_constraints.h"
#include "yang/schema_place.h"

namespace yfw::device {
namespace {

// What is done to the list as a whole, if it is done to a container above it.
bool is_about_all_below(const yang::EditNode &edit) {
    return edit.operation != yang::Operation::merge && edit.operation != yang::Operation::none;
}

const std::string *name_in(const yang::EditNode &entry, const lysc_node *key) {
    for (const yang::EditNode &child : entry.children)
        if (child.node == key && child.value.has_value())
            return &*child.value;
    return nullptr;
}

} // namespace

IndependentEntries::IndependentEntries(const yang::Schemas &schemas, const host::MappingDescription &mapping)
    : kinds_(mapping.entries.size()) {
    const auto add = [&](size_t kind, const std::string &module, const std::string &path) {
        const lysc_node *key = schemas.find(module, path);
        if (key == nullptr || !lysc_is_key(key) || key->parent->parent == nullptr ||
            yang::has_list_above(key->parent))
            throw Error(ErrorTag::invalid_value, mapping.file.string(),
                        "member \"openconfig.entries\" names " + path +
                            ", which is not a key of a list of module " + module +
                            " in a container outside of other lists");
        lists_.push_back({key->parent, key, kind});
    };
    for (size_t kind = 0; kind < kinds_; kind++) {
        add(kind, mapping.modules.openconfig.front(), mapping.entries[kind].leaf);
        for (const host::NativeNode &native : mapping.entries[kind].native)
            add(kind, native.module, native.path);
    }
    std::vector<const lysc_node *> lists;
    for (const List &list : lists_) {
        lists.push_back(list.list);
        for (const lysc_node *above = list.list->parent; above != nullptr; above = above->parent)
            above_.insert(above);
    }
    are_constrained_ = std::any_of(above_.begin(), above_.end(), [&](const lysc_node *above) {
        return (above->flags & LYS_PRESENCE) != 0 ||
               (above->parent == nullptr && constrains_entries(above, lists));
    });
}

const IndependentEntries::List *IndependentEntries::list_at(const lysc_node *node) const {
    const auto found =
        std::find_if(lists_.begin(), lists_.end(), [&](const List &list) { return list.list == node; });
    return found != lists_.end() ? &*found : nullptr;
}

bool IndependentEntries::is_above(const lysc_node *node) const {
    return above_.contains(node);
}

bool IndependentEntries::add_named(const yang::EditNode &edit, EntryNames &names) const {
    if (const List *list = list_at(edit.node)) {
        const std::string *name = name_in(edit, list->key);
        if (name != nullptr)
            names[list->kind].insert(*name);
        return name != nullptr;
    }
    if (!is_above(edit.node))
        return true;
    return !is_about_all_below(edit) &&
           std::all_of(edit.children.begin(), edit.children.end(),
                       [&](const yang::EditNode &child) { return add_named(child, names); });
}

std::optional<EntryNames> IndependentEntries::named_in(const yang::EditNode &edit) const {
    EntryNames names(kinds_);
    if (lists_.empty() || are_constrained_ || !add_named(edit, names))
        return std::nullopt;
    return names;
}

} // namespace yfw::device
