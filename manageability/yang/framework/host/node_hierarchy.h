// Where a walk stands in the tree that is being walked.
#ifndef YFW_HOST_NODE_HIERARCHY_H
#define YFW_HOST_NODE_HIERARCHY_H

#include <string>
#include <string_view>
#include <vector>

#include "yfw_map.h"

namespace yfw::host {

// The nodes from the tree's root to where the walk stands. Borrows the nodes.
class NodeHierarchy {
public:
    // Starts on a new tree.
    void start(const tidl_yfw_datatree *root);

    void push(const tidl_yfw_datatree *node);
    // Pops the node and whatever was left above it; a node that is not there is ignored.
    void pop(const tidl_yfw_datatree *node);

    size_t depth() const { return nodes_.size(); }

    // The value of `leaf` below the node at `path`, in the entries that the hierarchy stands in; NULL when
    // absent.
    const char *value(std::string_view path, std::string_view leaf) const;

    // Makes the innermost list entry at `path` the current one; false when the hierarchy stands in none.
    bool select_list_entry(std::string_view path);
    const tidl_yfw_datatree *current_list_entry() const { return current_list_entry_; }

    // The path to where the walk stands, list entries with their keys.
    std::string instance_path() const;

    // The path to the node that was pushed last, whether it was popped since or not; leaves are never pushed,
    // so one that is the node's only content is added.
    std::string last_standing() const;

private:
    static std::string path_of(const std::vector<const tidl_yfw_datatree *> &nodes);

    const tidl_yfw_datatree *root_ = nullptr;
    std::vector<const tidl_yfw_datatree *> nodes_;
    std::vector<const tidl_yfw_datatree *> pushed_last_; // with what was below it then
    const tidl_yfw_datatree *current_list_entry_ = nullptr;
};

// The first child by this name, NULL when there is none.
const tidl_yfw_datatree *find_child(const tidl_yfw_datatree &parent, std::string_view name);

} // namespace yfw::host

#endif
