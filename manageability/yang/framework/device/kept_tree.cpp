#include "device/kept_tree.h"

#include "yang/forest.h"
#include "yang/tree_change.h"

namespace yfw::device {
namespace {

// The first instance of a schema node among siblings; NULL when there is none.
lyd_node *first_instance(const lyd_node *siblings, const lysc_node *schema) {
    lyd_node *found = nullptr;
    if (siblings != nullptr)
        lyd_find_sibling_val(siblings, schema, nullptr, 0, &found);
    return found;
}

// The instances of a list that no other list is above.
lyd_node *first_entry(const lyd_node *top, const lysc_node *list) {
    const lyd_node *siblings = top;
    if (list->parent != nullptr) {
        const lyd_node *parent = first_entry(top, list->parent);
        siblings = parent != nullptr ? lyd_child(parent) : nullptr;
    }
    return first_instance(siblings, list);
}

template <class Visit> void for_each_instance(lyd_node *first, Visit &&visit) {
    for (lyd_node *node = first; node != nullptr && node->schema == first->schema; node = node->next)
        visit(node);
}

const char *name_of(const lyd_node *entry, const lysc_node *key) {
    return lyd_get_value(first_instance(lyd_child(entry), key));
}

} // namespace

const yang::SharedForest &KeptTree::forest() {
    if (forest_ == nullptr)
        forest_ = yang::instance_forest(tree_.get());
    return forest_;
}

void KeptTree::index(const IndependentEntries &entries) {
    if (is_indexed_)
        return;
    instances_.clear();
    for (const IndependentEntries::List &list : entries.lists())
        for_each_instance(first_entry(tree_.get(), list.list), [&](lyd_node *entry) {
            instances_[list.list][name_of(entry, list.key)].push_back(entry);
        });
    is_indexed_ = true;
}

yang::DataTree KeptTree::part(const IndependentEntries &entries, const EntryNames &names) {
    index(entries);
    yang::DataTree part;
    for (const lyd_node *top = tree_.get(); top != nullptr; top = top->next)
        yang::join(part, yang::DataTree(copy_part(*top, nullptr, entries, names)));
    yang::drop_implicit(part); // lists' containers without entries
    return part;
}

yang::DataTree KeptTree::containers(const IndependentEntries &entries) const {
    yang::DataTree containers;
    for (const lyd_node *top = tree_.get(); top != nullptr; top = top->next)
        if (entries.is_above(top->schema))
            yang::join(containers, yang::DataTree(copy_containers(*top, nullptr, entries)));
    return containers;
}

lyd_node *KeptTree::copy_containers(const lyd_node &node, lyd_node *parent, const IndependentEntries &entries) {
    lyd_node *copy = nullptr;
    lyd_dup_single(&node, reinterpret_cast<lyd_node_inner *>(parent), LYD_DUP_WITH_FLAGS, &copy);
    for (const lysc_node *child = lysc_node_child(node.schema); child != nullptr; child = child->next)
        if (entries.is_above(child))
            if (const lyd_node *below = first_instance(lyd_child(&node), child))
                copy_containers(*below, copy, entries);
    return copy;
}

lyd_node *KeptTree::copy_part(const lyd_node &node, lyd_node *parent, const IndependentEntries &entries,
                              const EntryNames &names) {
    const bool is_whole = !entries.is_above(node.schema);
    lyd_node *copy = nullptr;
    lyd_dup_single(&node, reinterpret_cast<lyd_node_inner *>(parent),
                   LYD_DUP_WITH_FLAGS | (is_whole ? LYD_DUP_RECURSIVE : 0U), &copy);
    if (is_whole)
        return copy;
    for (const lysc_node *child = lysc_node_child(node.schema); child != nullptr; child = child->next) {
        if (const IndependentEntries::List *list = entries.list_at(child)) {
            const Instances &instances = instances_[child];
            for (const std::string &name : names[list->kind])
                if (const auto named = instances.find(name); named != instances.end())
                    for (const lyd_node *entry : named->second)
                        copy_part(*entry, copy, entries, names);
        } else {
            for_each_instance(first_instance(lyd_child(&node), child),
                              [&](lyd_node *instance) { copy_part(*instance, copy, entries, names); });
        }
    }
    return copy;
}

void KeptTree::apply(const lyd_node *change, const lyd_node *after, const IndependentEntries &entries,
                     const EntryNames &names) {
    if (change == nullptr)
        return;
    if (tree_.is_lent()) // and about to be copied
        is_indexed_ = false;
    forest_.reset();
    yang::apply_change(tree_.mine(), change);
    if (is_indexed_)
        reindex(after, entries, names);
}

void KeptTree::reindex(const lyd_node *part, const IndependentEntries &entries, const EntryNames &names) {
    for (const IndependentEntries::List &list : entries.lists()) {
        Instances &instances = instances_[list.list];
        for (const std::string &name : names[list.kind])
            instances.erase(name);
        const lyd_node *all = first_entry(tree_.get(), list.list);
        for_each_instance(first_entry(part, list.list), [&](lyd_node *entry) {
            lyd_node *found = nullptr;
            if (lyd_find_sibling_first(all, entry, &found) == LY_SUCCESS)
                instances[name_of(entry, list.key)].push_back(found);
        });
    }
}

} // namespace yfw::device
