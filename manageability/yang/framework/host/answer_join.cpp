// The answers of several mappings as one.
#include <algorithm>
#include <string>
#include <unordered_map>

#include "host/answer_tree.h"

namespace yfw::host {
namespace {

// Of an entry with one key; one without a value counts as empty.
std::string_view text_of_key(const AnswerEntry &entry) {
    const char *text = entry.slots[entry.schema->keys.front()->index].text;
    return text != nullptr ? text : "";
}

} // namespace

void AnswerTree::join(const AnswerTree &other, const std::vector<const lysc_node *> &extended) {
    unknown_paths_.insert(other.unknown_paths_.begin(), other.unknown_paths_.end());
    join_entry(*root_, *other.root_, {other, extended});
}

void AnswerTree::join_entry(AnswerEntry &to, const AnswerEntry &from, const Joined &other) {
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
                           const Joined &other) {
    const bool is_extended =
        std::find(other.extended.begin(), other.extended.end(), schema.schema) != other.extended.end();
    const AnswerList &list = list_at(parent, schema);
    std::unordered_map<std::string, AnswerEntry *> of_several_keys;
    if (schema.keys.size() > 1)
        for (AnswerEntry *entry = list.first; entry != nullptr; entry = entry->next)
            of_several_keys.emplace(keys_of(*entry), entry);
    const auto same_as = [&](const AnswerEntry &entry) -> AnswerEntry * {
        if (schema.keys.size() == 1)
            return find_entry(list, schema, text_of_key(entry));
        const auto found = of_several_keys.find(keys_of(entry));
        return found != of_several_keys.end() ? found->second : nullptr;
    };
    for (const AnswerEntry *entry = from.first; entry != nullptr; entry = entry->next) {
        AnswerEntry *same = same_as(*entry);
        if (same == nullptr && is_extended)
            continue;
        AnswerEntry &to = same != nullptr ? *same : append_entry(parent, schema);
        if (same == nullptr && schema.keys.size() > 1)
            of_several_keys.emplace(keys_of(*entry), &to);
        join_entry(to, *entry, other);
        set_dropped(to, std::max(dropped_for(to), other.tree.dropped_for(*entry))); // of the same native ones
    }
}

} // namespace yfw::host
