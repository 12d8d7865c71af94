// Trees of the contract's nodes, built by a test.
#ifndef HOST_TEST_TEST_NODES_H
#define HOST_TEST_TEST_NODES_H

#include <deque>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "test_device.h"
#include "yfw_map.h"

namespace yfw::host::test {

struct NodeText {
    std::string name;
    std::vector<NodeText> children = {};
    std::optional<std::string> value = std::nullopt;
    bool is_key = false;
    std::string_view ns = oper_ns;
};

inline NodeText leaf(std::string name, std::string value) {
    return {std::move(name), {}, std::move(value)};
}

inline NodeText key(std::string name, std::string value) {
    return {std::move(name), {}, std::move(value), true};
}

// Owns the nodes and their texts.
class NodeTree {
public:
    explicit NodeTree(NodeText root) : texts_(std::move(root)) { fill(root_, texts_); }
    NodeTree(const NodeTree &) = delete;
    NodeTree &operator=(const NodeTree &) = delete;

    const tidl_yfw_datatree *root() const { return &root_; }

    // The node reached by these child indexes.
    tidl_yfw_datatree *at(std::initializer_list<uint32_t> numbers) {
        tidl_yfw_datatree *node = &root_;
        for (const uint32_t number : numbers)
            node = &node->children[number];
        return node;
    }

private:
    void fill(tidl_yfw_datatree &node, const NodeText &text) {
        node.name = text.name.c_str();
        node.ns = text.ns.data();
        node.value = text.value.has_value() ? text.value->c_str() : nullptr;
        if (text.is_key) {
            node.node_flags = YFW_NODE_IS_KEY;
            node.key_byte = 1;
        }
        if (text.children.empty())
            return;
        std::vector<tidl_yfw_datatree> &children = nodes_.emplace_back(text.children.size());
        node.children = children.data();
        node.child_count = static_cast<uint32_t>(children.size());
        node.node_flags = static_cast<uint16_t>(node.node_flags | YFW_NODE_CHILDREN_VALID);
        for (size_t i = 0; i < children.size(); i++)
            fill(children[i], text.children[i]);
    }

    NodeText texts_;
    std::deque<std::vector<tidl_yfw_datatree>> nodes_;
    tidl_yfw_datatree root_{};
};

} // namespace yfw::host::test

#endif
