// The position of a walk in its tree.
#ifndef YFW_HOST_NODE_HIERARCHY_H
#define YFW_HOST_NODE_HIERARCHY_H

#include <string>
#include <string_view>
#include <vector>

#include "yfw_map.h"

namespace yfw::host {

// The nodes from the root to the walk's current position. Borrows the nodes.
class NodeHierarchy {
public:
    // Starts on a new tree.
    void start(const tidl_yfw_datatree *root);

    void push(const tidl_yfw_datatree *node);
    // Pops the node and anything still above it; ignores a node that is not in the hierarchy.
    void pop(const tidl_yfw_datatree *node);

    size_t depth() const { return nodes_.size(); }

    // The value of `leaf` below the node at `path`, within the current list entries; NULL when absent.
    const char *value(std::string_view path, std::string_view leaf) const;

    // Makes the innermost list entry at `path` the current one; false when there is none in the hierarchy.
    bool select_list_entry(std::string_view path);
    const tidl_yfw_datatree *current_list_entry() const { return current_list_entry_; }

    // The path of the current position, with list keys.
    std::string instance_path() const;

    // The path of the node pushed last, even if popped since. Leaves are never pushed, so a leaf that is the
    // node's only content is appended.
    std::string last_standing() const;

private:
    static std::string path_of(const std::vector<const tidl_yfw_datatree *> &nodes);

    const tidl_yfw_datatree *root_ = nullptr;
    std::vector<const tidl_yfw_datatree *> nodes_;
    std::vector<const tidl_yfw_datatree *> pushed_last_; // with its ancestors at the time
    const tidl_yfw_datatree *current_list_entry_ = nullptr;
};

// The first child of this name; NULL when there is none.
const tidl_yfw_datatree *find_child(const tidl_yfw_datatree &parent, std::string_view name);

} // namespace yfw::host

#endif
