#include "host/answer_schema.h"

namespace yfw::host {

const AnswerNode *AnswerNode::child(std::string_view name) const {
    for (const AnswerNode *candidate : children)
        if (name == candidate->schema->name)
            return candidate;
    return nullptr;
}

AnswerSchema::AnswerSchema(const lysc_node *top) {
    nodes_.emplace_back();
    add(nodes_.front(), top, "");
}

AnswerNode &AnswerSchema::add(AnswerNode &parent, const lysc_node *schema, const std::string &path) {
    AnswerNode &node = nodes_.emplace_back();
    node.schema = schema;
    node.parent = &parent;
    node.number = nodes_.size() - 1;
    node.index = static_cast<uint32_t>(parent.children.size());
    parent.children.push_back(&node);
    const std::string own_path = path + "/" + schema->name;
    by_path_.emplace(own_path, &node);
    for (const lysc_node *child = lysc_node_child(schema); child != nullptr; child = child->next) {
        AnswerNode &added = add(node, child, own_path);
        added.is_key = lysc_is_key(child);
        if (added.is_key)
            node.keys.push_back(&added);
    }
    return node;
}

const AnswerNode *AnswerSchema::find(std::string_view path) const {
    const auto found = by_path_.find(path);
    return found != by_path_.end() ? found->second : nullptr;
}

} // namespace yfw::host
