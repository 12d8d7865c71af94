// A part of an answer as one of its own.
#include "host/answer_selection.h"
#include "host/answer_tree.h"

namespace yfw::host {

void AnswerTree::copy(const AnswerTree &other, const Selection &selection) {
    unknown_paths_.insert(other.unknown_paths_.begin(), other.unknown_paths_.end());
    if (const AnswerEntry *top = other.root_->slots[0].container)
        copy_entry(current_child(*root_, *top->schema), *top, other, {&selection});
}

void AnswerTree::copy_entry(AnswerEntry &to, const AnswerEntry &from, const AnswerTree &other,
                            const Selections &selections) {
    for (const AnswerNode *child : from.schema->children) {
        const AnswerSlot &slot = from.slots[child->index];
        if (slot.text == nullptr) // any member: nothing is there
            continue;
        Selections below;
        if (child->is_leaf()) { // whether selected or not: others may be selected by its value
            set_value(to, *child, slot.text);
        } else if (!select_child(selections, child->schema, below)) {
            continue;
        } else if (child->is_leaf_list()) {
            for (const AnswerLeafListValue *value = slot.values; value != nullptr; value = value->next)
                set_value(to, *child, value->text);
        } else if (child->is_list()) {
            copy_list(to, *child, *slot.list, other, below);
        } else {
            copy_entry(current_child(to, *child), *slot.container, other, below);
        }
    }
}

void AnswerTree::copy_list(AnswerEntry &parent, const AnswerNode &schema, const AnswerList &from,
                           const AnswerTree &other, const Selections &selections) {
    for (const AnswerEntry *entry = from.first; entry != nullptr; entry = entry->next) {
        Selections matching;
        if (!match_entry(*entry, selections, matching))
            continue;
        AnswerEntry &copied = append_entry(parent, schema);
        copy_entry(copied, *entry, other, matching);
        set_dropped(copied, other.dropped_for(*entry));
    }
}

} // namespace yfw::host
