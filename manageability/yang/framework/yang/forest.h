// Joins, merges, removes and selects trees of a forest, and keeps its owner valid when the first tree changes.
#ifndef YFW_YANG_FOREST_H
#define YFW_YANG_FOREST_H

#include <string>
#include <vector>

#include "yang/data_tree.h"

namespace yfw::yang {

// Calls `change` with the owner's pointer as a lyd_node *& that it may change, and returns its result. For
// functions of libyang that may make another tree the first.
template <class Change> auto change_first(DataTree &forest, Change &&change) {
    struct Owner {
        explicit Owner(DataTree &of) : forest(of), first(of.release()) {}
        ~Owner() { forest.reset(first); }
        Owner(const Owner &) = delete;
        Owner &operator=(const Owner &) = delete;

        DataTree &forest;
        lyd_node *first;
    };
    Owner owner(forest);
    return change(owner.first);
}

// Moves all trees of `more` into the forest, each next to those of its module. Trees keep their addresses.
void join(DataTree &forest, DataTree more);

// Merges `more` into the forest; its values win. Returns libyang's status.
LY_ERR merge(DataTree &forest, DataTree more);

// Frees a tree of the forest, or a node below one, with everything below it.
void remove(DataTree &forest, lyd_node *node);

// The instance of a leaf that no list is above, in the forest of `data`, which may be NULL; NULL when it is not
// set.
const lyd_node *instance_of(const lysc_node *leaf, const lyd_node *data);

// The nodes that the expression selects in the forest of `data`, in document order; none in NULL. Throws Error
// naming the expression.
std::vector<lyd_node *> nodes_at(const lyd_node *data, const std::string &xpath);

} // namespace yfw::yang

#endif
