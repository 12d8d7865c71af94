// The answers of several mappings as one.
#include <algorithm>
#include <string>
#include <unordered_map>

#include "host/answer_tree.h"

namespace yfw::host {

void AnswerTree::join(const AnswerTree &other) {
    unknown_paths_.insert(other.unknown_paths_.begin(), other.unknown_paths_.end());
    join_entry(*root_, *other.root_, other);
}

void AnswerTree::join_entry(AnswerEntry &to, const AnswerEntry &from, const AnswerTree &other) {
    for (const AnswerNode *child : from.schema->children) {
        const AnswerSlot &slot = from.slots[child->index];
        if (slot.text == nullptr) // any member: nothing is there
            continue;
        if (child->is_list()) {
            join_list(to, *child, *slot.list, other);
        } else if (child->is_leaf_list()) {
            for (const AnswerLeafListValue *value = slot.values; value != nullptr; value = value->next)
                set_value(to, *child, value->text);
        } else if (!child->is_leaf()) {
            join_entry(current_child(to, *child), *slot.container, other);
        } else if (to.slots[child->index].text == nullptr) {
            set_value(to, *child, slot.text);
        }
    }
}

// Entries of a list without keys are all different.
void AnswerTree::join_list(AnswerEntry &parent, const AnswerNode &schema, const AnswerList &from,
                           const AnswerTree &other) {
    std::unordered_map<std::string, AnswerEntry *> known;
    for (AnswerEntry *entry = list_at(parent, schema).first; entry != nullptr; entry = entry->next)
        known.emplace(keys_of(*entry), entry);
    for (const AnswerEntry *entry = from.first; entry != nullptr; entry = entry->next) {
        AnswerEntry *&same = known[keys_of(*entry)];
        if (same == nullptr || schema.keys.empty())
            same = &append_entry(parent, schema);
        join_entry(*same, *entry, other);
        if (const size_t dropped = other.dropped_for(*entry); dropped != 0) {
            Origin &origin = origins_.try_emplace(same, Origin{nullptr}).first->second;
            origin.dropped = std::max(origin.dropped, dropped); // both met the same native entries
        }
    }
}

} // namespace yfw::host
