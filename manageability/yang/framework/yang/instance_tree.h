// Instance data that is only read: a fraction of the memory of libyang's trees, and of the time to make them.
#ifndef YFW_YANG_INSTANCE_TREE_H
#define YFW_YANG_INSTANCE_TREE_H

#include <memory>
#include <memory_resource>
#include <string_view>
#include <vector>

#include <libyang/libyang.h>

#include "yang/node_kind.h"

namespace yfw::yang {

// A data node. Owned by its forest, like everything it points to.
class InstanceNode {
public:
    // Borrowed from the context.
    const lysc_node *schema() const { return schema_; }
    // The next sibling; NULL for the last one.
    const InstanceNode *next() const { return next_; }
    // The first child, a list's keys first; NULL when there is none.
    const InstanceNode *child() const {
        return is_term(schema_) ? nullptr : static_cast<const InstanceNode *>(content_);
    }
    // In canonical form; NULL for an inner node.
    const char *value() const { return is_term(schema_) ? static_cast<const char *>(content_) : nullptr; }

private:
    friend class InstanceForestBuilder;

    const lysc_node *schema_ = nullptr;
    const InstanceNode *next_ = nullptr;
    const void *content_ = nullptr; // the value or the first child
};

// Trees in the order of the source. Needs the context of its nodes; immutable, so any thread may read it.
class InstanceForest {
public:
    InstanceForest() = default;
    InstanceForest(const InstanceForest &) = delete;
    InstanceForest &operator=(const InstanceForest &) = delete;

    // The first tree; NULL when there is none.
    const InstanceNode *first() const { return first_; }
    // The first tree of a top-level node; NULL when there is none.
    const InstanceNode *top(const lysc_node *schema) const;

private:
    friend class InstanceForestBuilder;

    std::pmr::monotonic_buffer_resource nodes_;
    std::pmr::monotonic_buffer_resource texts_; // apart, as they need no alignment
    const InstanceNode *first_ = nullptr;
};

using SharedForest = std::shared_ptr<const InstanceForest>;

// Makes a forest in document order.
class InstanceForestBuilder {
public:
    // Begins an inner node, to which everything up to close() belongs.
    void open(const lysc_node *schema);
    void close();
    // `value`: in canonical form; copied.
    void add_leaf(const lysc_node *schema, std::string_view value);
    // Adds a copy of a node of libyang's, with everything below it.
    void add(const lyd_node *node);

    // Everything must be closed. Adds nothing more.
    SharedForest take() { return std::move(forest_); }

private:
    InstanceNode &append(const lysc_node *schema);

    struct Level {
        InstanceNode *parent; // NULL at the top
        InstanceNode *last;   // NULL before the first
    };

    std::shared_ptr<InstanceForest> forest_ = std::make_shared<InstanceForest>();
    std::vector<Level> levels_{{nullptr, nullptr}};
};

// A copy of libyang's forest; empty for NULL.
SharedForest instance_forest(const lyd_node *first);

} // namespace yfw::yang

#endif
