// The lists of an answer: short ones are searched, longer ones have an index of their keys.
#include <memory>

#include "host/answer_tree.h"

namespace yfw::host {
namespace {

// Comparing so many keys takes no longer than to look one up.
constexpr size_t longest_searched = 8;

AnswerListEntry &in_list(AnswerEntry &entry) {
    return static_cast<AnswerListEntry &>(entry);
}

const AnswerListEntry *in_list(const AnswerEntry *entry) {
    return entry->schema->is_list() ? static_cast<const AnswerListEntry *>(entry) : nullptr;
}

const char *key_of(const AnswerEntry &entry) {
    return entry.slots[entry.schema->keys.front()->index].text;
}

} // namespace

AnswerList &AnswerTree::list_at(AnswerEntry &parent, const AnswerNode &schema) {
    AnswerSlot &slot = parent.slots[schema.index];
    if (slot.list == nullptr)
        slot.list = new (memory_.allocate(sizeof(AnswerList), alignof(AnswerList))) AnswerList;
    return *slot.list;
}

// It lives in the tree's memory, which is released as a whole.
AnswerIndex &AnswerTree::index_of(AnswerList &list) {
    if (list.index != nullptr)
        return *list.index;
    list.index = new (memory_.allocate(sizeof(AnswerIndex), alignof(AnswerIndex))) AnswerIndex(&memory_);
    for (AnswerEntry *entry = list.first; entry != nullptr; entry = entry->next)
        if (entry->schema->keys.size() == 1 && key_of(*entry) != nullptr)
            list.index->emplace(key_of(*entry), entry);
    return *list.index;
}

AnswerEntry &AnswerTree::append_entry(AnswerEntry &parent, const AnswerNode &schema) {
    AnswerList &list = list_at(parent, schema);
    AnswerEntry *entry = make_entry(schema, &parent);
    (list.last != nullptr ? list.last->next : list.first) = entry;
    list.last = entry;
    list.current = entry;
    if (++list.length > longest_searched)
        index_of(list);
    return *entry;
}

AnswerEntry *AnswerTree::find_entry(const AnswerList &list, const AnswerNode &schema, std::string_view key) {
    if (list.index != nullptr) {
        const auto found = list.index->find(key);
        return found != list.index->end() ? found->second : nullptr;
    }
    if (schema.keys.size() != 1)
        return nullptr;
    AnswerEntry *entry = list.first;
    while (entry != nullptr && (key_of(*entry) == nullptr || key_of(*entry) != key))
        entry = entry->next;
    return entry;
}

// Re-indexes an entry of a single-key list under its key's new value.
void AnswerTree::index_key(AnswerEntry &entry, const char *before, const char *now) {
    if (entry.schema->keys.size() != 1 || in_list(entry).is_aside)
        return;
    AnswerIndex *index = entry.parent->slots[entry.schema->index].list->index;
    if (index == nullptr)
        return;
    if (before != nullptr) {
        const auto old = index->find(before);
        if (old != index->end() && old->second == &entry)
            index->erase(old);
    }
    index->emplace(now, &entry);
}

tidl_yfw_datatree *AnswerTree::find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                                 std::string_view key_name, std::string_view key_value) {
    const AnswerNode *schema = resolve(parent, list_path);
    const AnswerNode *key = schema != nullptr ? schema->child(key_name) : nullptr;
    if (key == nullptr || !schema->is_list())
        return nullptr;
    AnswerEntry &above = reach(start_for(parent, *schema), *schema->parent);
    AnswerList &list = list_at(above, *schema);
    if (AnswerEntry *found = find_entry(list, *schema, key_value)) {
        list.current = found;
        return handle_of(*found);
    }
    AnswerEntry &entry = append_entry(above, *schema);
    const char *text = keep(key_value);
    entry.slots[key->index].text = text;
    record(*key);
    if (list.index != nullptr || schema->keys != std::vector{key})
        index_of(list).emplace(std::string_view(text, key_value.size()), &entry);
    return handle_of(entry);
}

// What is added for a second native entry goes to an entry that is in no list.
tidl_yfw_datatree *AnswerTree::map_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                         std::string_view key_name, std::string_view key_value,
                                         const tidl_yfw_datatree *source) {
    tidl_yfw_datatree *handle = find_or_add_entry(parent, list_path, key_name, key_value);
    if (handle == nullptr || source == nullptr)
        return handle;
    AnswerListEntry &entry = in_list(entry_of(*handle));
    if (entry.source == nullptr)
        entry.source = source;
    if (entry.source == source)
        return handle;
    entry.dropped++;
    AnswerEntry *aside = make_entry(*entry.schema, entry.parent);
    in_list(*aside).is_aside = true;
    entry.parent->slots[entry.schema->index].list->current = aside;
    return handle_of(*aside);
}

const tidl_yfw_datatree *AnswerTree::source_of(const AnswerEntry &entry) const {
    const AnswerListEntry *listed = in_list(&entry);
    return listed != nullptr ? listed->source : nullptr;
}

size_t AnswerTree::dropped_for(const AnswerEntry &entry) const {
    const AnswerListEntry *listed = in_list(&entry);
    return listed != nullptr ? listed->dropped : 0;
}

void AnswerTree::set_dropped(const AnswerEntry &entry, size_t count) {
    in_list(const_cast<AnswerEntry &>(entry)).dropped = static_cast<uint32_t>(count);
}

} // namespace yfw::host
