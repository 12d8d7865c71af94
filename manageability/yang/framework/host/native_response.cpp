#include "host/native_response.h"

#include <new>

namespace yfw::host {
namespace {

bool is_inner(const lysc_node *schema) {
    return (schema->nodetype & (LYS_CONTAINER | LYS_LIST)) != 0;
}

// Without a value and without children.
tidl_yfw_datatree node_of(const lysc_node *schema) {
    tidl_yfw_datatree node{};
    node.name = schema->name;
    node.ns = schema->module->ns;
    node.node_flags = is_inner(schema) ? YFW_NODE_CHILDREN_VALID : 0;
    return node;
}

// Whether a list entry has the requested key values.
bool has_wanted_keys(const yang::InstanceNode *entry, const SelectedNode &selection) {
    for (const auto &wanted : selection.children) {
        if (!wanted->value.has_value())
            continue;
        const yang::InstanceNode *key = entry->child();
        while (key != nullptr && key->schema() != wanted->node)
            key = key->next();
        if (key != nullptr && *wanted->value != key->value())
            return false;
    }
    return true;
}

// A key that narrows the entries of a list; NULL when none does.
const SelectedNode *wanted_key(const SelectedNode &selection) {
    for (const auto &list : selection.children)
        for (const auto &child : list->children)
            if (child->value.has_value())
                return child.get();
    return nullptr;
}

} // namespace

NativeResponse::NativeResponse(const yang::InstanceNode *top, const SelectedNode &selection, EntryIndex &index)
    : top_(top), selection_(&selection), index_(&index) {
    tidl_yfw_datatree *root = allocate(1);
    fill(*root, top, &selection, selection.whole);
    root_ = root;
}

NativeResponse::NativeResponse(const lysc_node *absent_top) {
    tidl_yfw_datatree *root = allocate(1);
    *root = node_of(absent_top);
    root_ = root;
}

tidl_yfw_datatree *NativeResponse::allocate(uint32_t count) {
    return static_cast<tidl_yfw_datatree *>(
        memory_.allocate(count * sizeof(tidl_yfw_datatree), alignof(tidl_yfw_datatree)));
}

bool NativeResponse::includes(const yang::InstanceNode *node, const SelectedNode *selection, bool whole) const {
    const SelectedNode *selected = selection != nullptr ? selection->child(node->schema()) : nullptr;
    if (selected == nullptr)
        return whole || lysc_is_key(node->schema());
    return node->schema()->nodetype != LYS_LIST || has_wanted_keys(node, *selected);
}

// Below a node selected whole everything is selected, but key values still restrict entries.
template <class Visit>
void NativeResponse::for_each_included(const yang::InstanceNode *parent, const SelectedNode *selection,
                                       bool whole, Visit &&visit) const {
    const auto visit_if_included = [&](const yang::InstanceNode &child) {
        if (!includes(&child, selection, whole))
            return;
        const SelectedNode *below = selection != nullptr ? selection->child(child.schema()) : nullptr;
        visit(&child, below, whole || (below != nullptr && below->whole));
    };
    if (const SelectedNode *key = selection != nullptr ? wanted_key(*selection) : nullptr) {
        index_->for_each_child(*parent, key->node, *key->value, visit_if_included);
        return;
    }
    for (const yang::InstanceNode *child = parent->child(); child != nullptr; child = child->next())
        visit_if_included(*child);
}

void NativeResponse::fill(tidl_yfw_datatree &to, const yang::InstanceNode *from, const SelectedNode *selection,
                          bool whole) {
    to = node_of(from->schema());
    if (!is_inner(from->schema())) {
        to.value = from->value();
        return;
    }
    uint32_t count = 0;
    for_each_included(from, selection, whole,
                      [&](const yang::InstanceNode *, const SelectedNode *, bool) { count++; });
    if (count == 0)
        return;
    to.child_count = count;
    to.children = allocate(count);
    tidl_yfw_datatree *next = to.children;
    for_each_included(from, selection, whole,
                      [&](const yang::InstanceNode *child, const SelectedNode *below, bool all) {
                          fill(*next, child, below, all);
                          if (lysc_is_key(child->schema())) {
                              next->node_flags |= YFW_NODE_IS_KEY;
                              next->key_byte = 1;
                          }
                          next++;
                      });
}

template <class Visit>
bool NativeResponse::walk(const tidl_yfw_datatree &node, const yang::InstanceNode &data,
                          const SelectedNode *selection, bool whole, const Visit &visit) const {
    if (!visit(node, data))
        return false;
    if (node.child_count == 0)
        return true;
    bool goes_on = true;
    const tidl_yfw_datatree *next = node.children;
    for_each_included(&data, selection, whole,
                      [&](const yang::InstanceNode *child, const SelectedNode *below, bool all) {
                          goes_on = goes_on && walk(*next, *child, below, all, visit);
                          next++;
                      });
    return goes_on;
}

const yang::InstanceNode *NativeResponse::data_of(const tidl_yfw_datatree *node) const {
    const yang::InstanceNode *found = nullptr;
    if (top_ != nullptr)
        walk(*root_, *top_, selection_, selection_->whole,
             [&](const tidl_yfw_datatree &at, const yang::InstanceNode &data) {
                 found = &at == node ? &data : nullptr;
                 return found == nullptr;
             });
    return found;
}

void NativeResponse::for_each_list_entry(const VisitEntry &visit) const {
    if (top_ != nullptr)
        walk(*root_, *top_, selection_, selection_->whole,
             [&](const tidl_yfw_datatree &node, const yang::InstanceNode &data) {
                 if (data.schema()->nodetype == LYS_LIST)
                     visit(node, data);
                 return true;
             });
}

} // namespace yfw::host
