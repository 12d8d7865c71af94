#include "yang/instance_tree.h"

#include <cstring>
#include <new>

namespace yfw::yang {

const InstanceNode *InstanceForest::top(const lysc_node *schema) const {
    for (const InstanceNode *node = first_; node != nullptr; node = node->next())
        if (node->schema() == schema)
            return node;
    return nullptr;
}

InstanceNode &InstanceForestBuilder::append(const lysc_node *schema) {
    auto *node = new (forest_->nodes_.allocate(sizeof(InstanceNode), alignof(InstanceNode))) InstanceNode;
    node->schema_ = schema;
    Level &level = levels_.back();
    if (level.last != nullptr)
        level.last->next_ = node;
    else if (level.parent != nullptr)
        level.parent->content_ = node;
    else
        forest_->first_ = node;
    level.last = node;
    return *node;
}

void InstanceForestBuilder::open(const lysc_node *schema) {
    levels_.push_back({&append(schema), nullptr});
}

void InstanceForestBuilder::close() {
    levels_.pop_back();
}

void InstanceForestBuilder::add_leaf(const lysc_node *schema, std::string_view value) {
    auto *text = static_cast<char *>(forest_->texts_.allocate(value.size() + 1, 1));
    std::memcpy(text, value.data(), value.size());
    text[value.size()] = '\0';
    append(schema).content_ = text;
}

void InstanceForestBuilder::add(const lyd_node *node) {
    if (node->schema == nullptr) // data of no known node
        return;
    if (is_term(node->schema))
        return add_leaf(node->schema, lyd_get_value(node));
    open(node->schema);
    for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
        add(child);
    close();
}

SharedForest instance_forest(const lyd_node *first) {
    InstanceForestBuilder builder;
    for (const lyd_node *node = first; node != nullptr; node = node->next)
        builder.add(node);
    return builder.take();
}

} // namespace yfw::yang
