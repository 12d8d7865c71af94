// Forests that trees come to and go from, whichever of them is the first.
#ifndef YFW_YANG_FOREST_H
#define YFW_YANG_FOREST_H

#include <string>
#include <vector>

#include "yang/data_tree.h"

namespace yfw::yang {

// Calls `change` with the forest's first tree, a lyd_node *& that it may change, and gives back what it
// returns: for functions of libyang that may make another tree the first.
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

// Adds all trees of `more`, each to those of its module. Trees keep their addresses.
void join(DataTree &forest, DataTree more);

// Merges `more` into the forest as libyang does: its values win. What it returns is libyang's.
LY_ERR merge(DataTree &forest, DataTree more);

// Takes a tree, or a node below one, out of the forest and frees it with all below it.
void remove(DataTree &forest, lyd_node *node);

// The nodes that the expression selects, in the order of the forest that `data` is a tree of. Throws Error
// that names the expression.
std::vector<lyd_node *> nodes_at(const lyd_node *data, const std::string &xpath);

} // namespace yfw::yang

#endif
