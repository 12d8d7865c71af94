// The configuration of an answer, where it is not the mapping's.
#include <algorithm>
#include <cstring>
#include <string>

#include "host/answer_tree.h"

namespace yfw::host {
namespace {

using Selections = std::vector<const Selection *>;

bool is_configuration(const AnswerNode &node) {
    return (node.schema->flags & LYS_CONFIG_W) != 0;
}

// What the selections select of a child; a child may be selected several times.
Selections below(const Selections &selections, const lysc_node *child) {
    Selections found;
    for (const Selection *selection : selections)
        for (const Selection &other : selection->children)
            if (other.node == child)
                found.push_back(&other);
    return found;
}

// The only key's value that the selection requires; NULL when it does not name an entry.
const std::string *named_entry(const Selection &selection) {
    for (const Selection &child : selection.children)
        if (child.is_key() && child.value.has_value())
            return &*child.value;
    return nullptr;
}

bool all_name_an_entry(const Selections &selections) {
    return !selections.empty() && std::all_of(selections.begin(), selections.end(), [](const Selection *one) {
        return named_entry(*one) != nullptr;
    });
}

const lyd_node *next_of(const lyd_node *node) {
    return node->next != nullptr && node->next->schema == node->schema ? node->next : nullptr;
}

// By libyang's hash; NULL when there is none, or when the key cannot be written as a predicate.
const lyd_node *entry_with(const lyd_node *siblings, const AnswerNode &list, const std::string &key) {
    const char quote = key.find('\'') == std::string::npos ? '\'' : '"';
    const std::string predicate =
        "[" + std::string(list.keys.front()->schema->name) + "=" + quote + key + quote + "]";
    lyd_node *found = nullptr;
    lyd_find_sibling_val(siblings, list.schema, predicate.c_str(), predicate.size(), &found);
    return found;
}

bool is_quotable(const std::string &key) {
    return key.find('\'') == std::string::npos || key.find('"') == std::string::npos;
}

} // namespace

void AnswerTree::clear_configuration(AnswerEntry &entry) {
    for (const AnswerNode *child : entry.schema->children) {
        AnswerSlot &slot = entry.slots[child->index];
        if (slot.text == nullptr || child->is_key) // any member: nothing is there
            continue;
        if (child->is_leaf() || child->is_leaf_list()) {
            if (is_configuration(*child))
                slot.text = nullptr;
        } else if (child->is_list()) {
            for (AnswerEntry *one = slot.list->first; one != nullptr; one = one->next)
                clear_configuration(*one);
        } else {
            clear_configuration(*slot.container);
        }
    }
}

void AnswerTree::replace_configuration(const lyd_node *configuration, const Selection &selection) {
    clear_configuration(*root_);
    if (configuration == nullptr)
        return;
    const AnswerNode &top = *schema_.root().children.front();
    load(configuration, current_child(*root_, top), {&selection});
}

void AnswerTree::load(const lyd_node *data, AnswerEntry &to, const Selections &selections) {
    const lysc_node *before = nullptr;
    for (const lyd_node *child = lyd_child(data); child != nullptr; child = child->next) {
        const AnswerNode *schema = to.schema->child(child->schema->name);
        if (schema == nullptr || (child->flags & LYD_DEFAULT) != 0)
            continue;
        if (schema->is_leaf() || schema->is_leaf_list()) {
            if (!schema->is_key)
                set_value(to, *schema, lyd_get_value(child));
        } else if (!schema->is_list()) {
            load(child, current_child(to, *schema), below(selections, child->schema));
        } else if (child->schema != before) {
            load_list(child, *schema, to, below(selections, child->schema));
        }
        before = child->schema;
    }
}

void AnswerTree::load_list(const lyd_node *first, const AnswerNode &schema, AnswerEntry &to,
                           const Selections &selections) {
    const bool by_key = schema.keys.size() == 1 && all_name_an_entry(selections) &&
                        std::all_of(selections.begin(), selections.end(),
                                    [](const Selection *one) { return is_quotable(*named_entry(*one)); });
    if (!by_key) {
        for (const lyd_node *entry = first; entry != nullptr; entry = next_of(entry))
            load(entry, entry_for(entry, schema, to), selections);
        return;
    }
    for (const Selection *selection : selections)
        if (const lyd_node *entry = entry_with(first, schema, *named_entry(*selection)))
            load(entry, entry_for(entry, schema, to), {selection});
}

// The entry with the data's keys, made when it is missing.
AnswerEntry &AnswerTree::entry_for(const lyd_node *data, const AnswerNode &schema, AnswerEntry &parent) {
    AnswerList &list = list_at(parent, schema);
    if (schema.keys.size() == 1) {
        if (AnswerEntry *found = find_entry(list, schema, lyd_get_value(lyd_child(data))))
            return *found;
    } else {
        for (AnswerEntry *entry = list.first; entry != nullptr; entry = entry->next) {
            const lyd_node *key = lyd_child(data);
            const bool same = std::all_of(schema.keys.begin(), schema.keys.end(), [&](const AnswerNode *node) {
                const char *held = entry->slots[node->index].text;
                const char *wanted = lyd_get_value(key);
                key = key->next;
                return held != nullptr && std::strcmp(held, wanted) == 0;
            });
            if (same)
                return *entry;
        }
    }
    AnswerEntry &entry = append_entry(parent, schema);
    const lyd_node *value = lyd_child(data);
    for (const AnswerNode *key : schema.keys) {
        set_value(entry, *key, lyd_get_value(value));
        value = value->next;
    }
    return entry;
}

} // namespace yfw::host
