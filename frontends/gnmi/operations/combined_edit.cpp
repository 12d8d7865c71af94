#include "frontends/gnmi/operations/combined_edit.h"

#include <algorithm>

#include "yang/edit_instance.h"
#include "yang/node_kind.h"

namespace yfw::gnmi {
namespace {

using yang::EditNode;
using yang::Operation;

bool adds(const EditNode &edit) {
    if (yang::takes_away(edit.operation))
        return false;
    return edit.operation != Operation::none || std::any_of(edit.children.begin(), edit.children.end(), adds);
}

bool is_same_node(const EditNode &a, const EditNode &b) {
    if (a.node != b.node)
        return false;
    if (a.node->nodetype == LYS_LEAFLIST)
        return a.value == b.value;
    for (const EditNode &key : a.children)
        if (key.is_key() && std::none_of(b.children.begin(), b.children.end(), [&key](const EditNode &other) {
                return other.node == key.node && other.value == key.value;
            }))
            return false;
    return true;
}

// Removing all values of a leaf-list overrides what was done to single ones.
void add_child(EditNode &parent, const EditNode &next) {
    if (next.node->nodetype == LYS_LEAFLIST && !next.value.has_value())
        std::erase_if(parent.children, [&next](const EditNode &child) { return child.node == next.node; });
    for (EditNode &child : parent.children)
        if (is_same_node(child, next))
            return combine(child, next);
    parent.children.push_back(next);
}

} // namespace

void combine(EditNode &edit, const EditNode &next) {
    if (yang::takes_away(next.operation) || next.operation == Operation::replace || yang::is_term(next.node)) {
        edit = next;
        return;
    }
    if (yang::takes_away(edit.operation)) {
        if (!adds(next))
            return;
        edit = next; // only the new content remains
        edit.operation = Operation::replace;
        edit.is_step = false;
        return;
    }
    if (edit.operation == Operation::none)
        edit.operation = next.operation;
    edit.is_step = edit.is_step && next.is_step;
    for (const EditNode &child : next.children)
        if (!child.is_key())
            add_child(edit, child);
}

EditNode with_values_resolved(const EditNode &edit, const lyd_node *running) {
    const lyd_node *data = yang::find_instance(running, edit);
    const lyd_node *below = data != nullptr ? lyd_child(data) : nullptr;
    EditNode made = edit;
    made.children.clear();
    for (const EditNode &child : edit.children) {
        if (child.node->nodetype != LYS_LEAFLIST || child.value.has_value() ||
            !yang::takes_away(child.operation)) {
            made.children.push_back(with_values_resolved(child, below));
            continue;
        }
        for (const lyd_node *value = below; value != nullptr; value = value->next) {
            const bool is_set =
                std::any_of(edit.children.begin(), edit.children.end(), [&](const EditNode &other) {
                    return other.node == value->schema && other.value == lyd_get_value(value);
                });
            if (value->schema == child.node && !is_set)
                made.children.push_back({child.node, lyd_get_value(value), {}, Operation::remove});
        }
    }
    return made;
}

} // namespace yfw::gnmi
