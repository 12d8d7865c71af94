#include "host/answer_data.h"

#include <iterator>

namespace yfw::host {
namespace {

// ---- as libyang's data

lyd_node *new_entry(const AnswerEntry &entry, lyd_node *to) {
    const AnswerNode &schema = *entry.schema;
    const char *keys[3] = {}; // the model has lists of one and of three keys
    for (size_t i = 0; i < schema.keys.size() && i < std::size(keys); i++)
        keys[i] = entry.slots[schema.keys[i]->index].text;
    lyd_node *made = nullptr;
    lyd_new_list(to, schema.schema->module, schema.schema->name, 0, &made, keys[0], keys[1], keys[2]);
    return made;
}

lyd_node *new_container(const AnswerEntry &entry, lyd_node *to) {
    const lysc_node *schema = entry.schema->schema;
    lyd_node *made = nullptr;
    lyd_new_inner(to, schema->module, schema->name, 0, &made);
    return made;
}

void new_leaf(const AnswerNode &schema, const char *value, lyd_node *to) {
    lyd_new_term(to, schema.schema->module, schema.schema->name, value, 0, nullptr);
}

// Last child first: libyang inserts a node by searching for the sibling that follows it, trying every one that
// is missing.
void add_children(const AnswerEntry &entry, lyd_node *to) {
    const std::vector<const AnswerNode *> &schemas = entry.schema->children;
    for (auto at = schemas.rbegin(); to != nullptr && at != schemas.rend(); ++at) {
        const AnswerNode &child = **at;
        const AnswerSlot &slot = entry.slots[child.index];
        if (slot.text == nullptr || child.is_key) // any member: nothing is there
            continue;
        if (child.is_leaf()) {
            new_leaf(child, slot.text, to);
        } else if (child.is_leaf_list()) {
            for (const AnswerLeafListValue *value = slot.values; value != nullptr; value = value->next)
                new_leaf(child, value->text, to);
        } else if (child.is_list()) {
            for (const AnswerEntry *one = slot.list->first; one != nullptr; one = one->next)
                add_children(*one, new_entry(*one, to));
        } else {
            add_children(*slot.container, new_container(*slot.container, to));
        }
    }
}

// ---- to a writer

void write_entry(const AnswerEntry &entry, yang::TreeWriter &to) {
    to.open(entry.schema->schema);
    for (const AnswerNode *child : entry.schema->children) {
        const AnswerSlot &slot = entry.slots[child->index];
        if (slot.text == nullptr) // any member: nothing is there
            continue;
        if (child->is_leaf()) {
            to.leaf(child->schema, slot.text);
        } else if (child->is_leaf_list()) {
            for (const AnswerLeafListValue *value = slot.values; value != nullptr; value = value->next)
                to.leaf(child->schema, value->text);
        } else if (child->is_list()) {
            for (const AnswerEntry *one = slot.list->first; one != nullptr; one = one->next)
                write_entry(*one, to);
        } else {
            write_entry(*slot.container, to);
        }
    }
    to.close();
}

} // namespace

yang::DataTree data_of(const AnswerTree &tree) {
    const AnswerEntry *top = tree.root_entry().slots[0].container;
    if (top == nullptr)
        return nullptr;
    yang::DataTree data(new_container(*top, nullptr));
    add_children(*top, data.get());
    return data;
}

void write(const AnswerTree &tree, yang::TreeWriter &to) {
    if (const AnswerEntry *top = tree.root_entry().slots[0].container)
        write_entry(*top, to);
}

} // namespace yfw::host
