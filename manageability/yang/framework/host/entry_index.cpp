#include "host/entry_index.h"

#include <cstring>

namespace yfw::host {
namespace {

using yang::InstanceNode;

constexpr size_t few = 16; // as fast to look through as to look up

bool are_few_children(const InstanceNode &parent) {
    size_t count = 0;
    for (const InstanceNode *child = parent.child(); child != nullptr; child = child->next())
        if (++count > few)
            return false;
    return true;
}

// NULL for other nodes, and for entries without the key.
const char *key_value(const InstanceNode &node, const lysc_node *key) {
    if (node.schema() != key->parent)
        return nullptr;
    for (const InstanceNode *child = node.child(); child != nullptr; child = child->next())
        if (child->schema() == key)
            return child->value();
    return nullptr;
}

} // namespace

EntryIndex::Children EntryIndex::look_through(const InstanceNode &parent, const lysc_node *key) {
    Children found;
    size_t position = 0;
    for (const InstanceNode *child = parent.child(); child != nullptr; child = child->next()) {
        const char *value = key_value(*child, key);
        (value != nullptr ? found.entries[value] : found.others).push_back({position++, child});
    }
    return found;
}

void EntryIndex::for_each_child(const InstanceNode &parent, const lysc_node *key, std::string_view value,
                                const Visit &visit) {
    if (are_few_children(parent)) {
        for (const InstanceNode *child = parent.child(); child != nullptr; child = child->next())
            if (const char *has = key_value(*child, key); has == nullptr || value == has)
                visit(*child);
        return;
    }
    auto known = known_.find({&parent, key});
    if (known == known_.end())
        known = known_.emplace(std::pair(&parent, key), look_through(parent, key)).first;
    static const std::vector<Child> none;
    const Children &children = known->second;
    const auto found = children.entries.find(value);
    const std::vector<Child> &entries = found != children.entries.end() ? found->second : none;
    auto entry = entries.begin();
    for (const Child &other : children.others) {
        for (; entry != entries.end() && entry->position < other.position; ++entry)
            visit(*entry->node);
        visit(*other.node);
    }
    for (; entry != entries.end(); ++entry)
        visit(*entry->node);
}

} // namespace yfw::host
