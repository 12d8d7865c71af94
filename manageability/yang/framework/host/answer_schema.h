// The OpenConfig model as the answer tree uses it: every node with its index among its siblings.
#ifndef YFW_HOST_ANSWER_SCHEMA_H
#define YFW_HOST_ANSWER_SCHEMA_H

#include <deque>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <libyang/libyang.h>

namespace yfw::host {

struct AnswerNode {
    const lysc_node *schema = nullptr; // NULL for the root above the top container
    const AnswerNode *parent = nullptr;
    uint32_t index = 0; // among the parent's children
    size_t number = 0;  // among all nodes
    bool is_key = false;
    std::vector<const AnswerNode *> children;
    std::vector<const AnswerNode *> keys; // of a list

    bool is_list() const { return schema != nullptr && schema->nodetype == LYS_LIST; }
    bool is_leaf() const { return schema != nullptr && schema->nodetype == LYS_LEAF; }
    bool is_leaf_list() const { return schema != nullptr && schema->nodetype == LYS_LEAFLIST; }

    // NULL when there is no such child.
    const AnswerNode *child(std::string_view name) const;
};

class AnswerSchema {
public:
    // The model below the container `top`. Borrows the schema.
    explicit AnswerSchema(const lysc_node *top);
    AnswerSchema(const AnswerSchema &) = delete;
    AnswerSchema &operator=(const AnswerSchema &) = delete;

    const AnswerNode &root() const { return nodes_.front(); }
    // How many nodes there are.
    size_t size() const { return nodes_.size(); }

    // The node at an absolute path; NULL when there is none. Looked up by hash.
    const AnswerNode *find(std::string_view path) const;

private:
    AnswerNode &add(AnswerNode &parent, const lysc_node *schema, const std::string &path);

    struct Hash {
        using is_transparent = void;
        size_t operator()(std::string_view text) const { return std::hash<std::string_view>{}(text); }
    };

    std::deque<AnswerNode> nodes_;
    std::unordered_map<std::string, const AnswerNode *, Hash, std::equal_to<>> by_path_;
};

} // namespace yfw::host

#endif
