#include "host/named_entries.h"

#include <algorithm>
#include <string_view>

namespace yfw::host {
namespace {

bool has_key_value(const Selection &child) {
    return child.is_key() && child.value.has_value();
}

bool is_keyed(const Selection &selection) {
    return selection.node->nodetype == LYS_LIST &&
           std::any_of(selection.children.begin(), selection.children.end(), has_key_value);
}

// Whether the node can be part of an answer with this content.
bool can_hold(const lysc_node *node, Content content) {
    return content != Content::config || (node->flags & LYS_CONFIG_R) == 0;
}

const AnswerNode *schema_of(const AnswerEntry &parent, const lysc_node *node) {
    for (const AnswerNode *child : parent.schema->children)
        if (child->schema == node)
            return child;
    return nullptr;
}

bool has_keys(const AnswerEntry &entry, const Selection &selection) {
    return std::all_of(selection.children.begin(), selection.children.end(), [&](const Selection &child) {
        if (!has_key_value(child))
            return true;
        const AnswerNode *key = schema_of(entry, child.node);
        const char *text = key != nullptr ? entry.slots[key->index].text : nullptr;
        return text != nullptr && *child.value == text;
    });
}

} // namespace

bool names_entries(const Selection &selection, Content content) {
    return can_hold(selection.node, content) &&
           (is_keyed(selection) ||
            std::any_of(selection.children.begin(), selection.children.end(),
                        [&](const Selection &child) { return names_entries(child, content); }));
}

Selection without_keys(const Selection &selection) {
    Selection all{selection.node, selection.value, {}, selection.named};
    for (const Selection &child : selection.children) {
        if (has_key_value(child) && child.only_narrows())
            continue;
        all.children.push_back(without_keys(child));
        if (has_key_value(child))
            all.children.back().value.reset();
    }
    return all;
}

NamedEntries::NamedEntries(const AnswerTree &answer, const Selection &selection, Content content,
                           const std::vector<const lysc_node *> &extended)
    : answer_(answer), content_(content), extended_(extended) {
    look_below({&answer.root_entry()}, {nullptr, std::nullopt, {selection}, false});
}

// What is below an entry that shows a native one is complete if the entry is the right one, so it is not looked
// at.
void NamedEntries::look_below(const Entries &entries, const Selection &selection) {
    for (const Selection &child : selection.children) {
        if (!names_entries(child, content_))
            continue;
        Entries below = children(entries, child);
        const bool is_another_mappings =
            std::find(extended_.begin(), extended_.end(), child.node) != extended_.end();
        missing_ = missing_ || (below.empty() && is_keyed(child) && !is_another_mappings);
        const auto native = std::partition(below.begin(), below.end(), [&](const AnswerEntry *entry) {
            return answer_.source_of(*entry) == nullptr;
        });
        if (is_keyed(child))
            found_.insert(found_.end(), native, below.end());
        below.erase(native, below.end());
        look_below(below, child);
    }
}

NamedEntries::Entries NamedEntries::children(const Entries &parents, const Selection &selection) {
    Entries found;
    for (const AnswerEntry *parent : parents) {
        const AnswerNode *schema = schema_of(*parent, selection.node);
        if (schema == nullptr)
            continue;
        const AnswerSlot &slot = parent->slots[schema->index];
        if (!schema->is_list() && slot.container != nullptr)
            found.push_back(slot.container);
        if (!schema->is_list() || slot.list == nullptr)
            continue;
        for (const AnswerEntry *entry = slot.list->first; entry != nullptr; entry = entry->next)
            if (has_keys(*entry, selection))
                found.push_back(entry);
    }
    return found;
}

} // namespace yfw::host
