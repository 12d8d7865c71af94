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

void append_value(std::string &to, const std::optional<std::string> &value) {
    to += value.has_value() ? std::to_string(value->size()) + ":" + *value : "-";
}

// What tells a node from others below the same one: its name, the values of its keys, its own value in a
// leaf-list.
std::string identity_of(const EditNode &edit) {
    std::string identity = edit.node->module->name + std::string(":") + edit.node->name + "/";
    if (edit.node->nodetype == LYS_LEAFLIST)
        append_value(identity, edit.value);
    for (const EditNode &key : edit.children)
        if (key.is_key())
            append_value(identity, key.value);
    return identity;
}

} // namespace

// Removing all values of a leaf-list overrides what was done to single ones.
void CombinedEdit::add_child(EditNode &parent, Index &index, const EditNode &next) {
    if (next.node->nodetype == LYS_LEAFLIST && !next.value.has_value()) {
        std::erase_if(parent.children, [&next](const EditNode &child) { return child.node == next.node; });
        index = {};
    }
    if (!index.is_made) {
        index.is_made = true;
        for (size_t i = 0; i < parent.children.size(); i++)
            index.places.emplace(identity_of(parent.children[i]), i);
        index.below.resize(parent.children.size());
    }
    const auto [place, is_new] = index.places.try_emplace(identity_of(next), parent.children.size());
    if (!is_new)
        return combine(parent.children[place->second], index.below[place->second], next);
    parent.children.push_back(next);
    index.below.emplace_back();
}

void CombinedEdit::combine(EditNode &edit, Index &index, const EditNode &next) {
    if (yang::takes_away(next.operation) || next.operation == Operation::replace || yang::is_term(next.node)) {
        edit = next;
        index = {};
        return;
    }
    if (yang::takes_away(edit.operation)) {
        if (!adds(next))
            return;
        edit = next; // only the new content remains
        edit.operation = Operation::replace;
        edit.is_step = false;
        index = {};
        return;
    }
    if (edit.operation == Operation::none)
        edit.operation = next.operation;
    edit.is_step = edit.is_step && next.is_step;
    for (const EditNode &child : next.children)
        if (!child.is_key())
            add_child(edit, index, child);
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
