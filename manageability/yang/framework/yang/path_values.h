// Values of leaf-lists that paths name.
#ifndef YFW_YANG_PATH_VALUES_H
#define YFW_YANG_PATH_VALUES_H

#include <vector>

#include "yang/data_tree.h"
#include "yang/path.h"

namespace yfw::yang {

// The paths without the values of leaf-lists.
std::vector<Path> without_values(std::vector<Path> paths);

// Whether one of the paths names a value of a leaf-list.
bool names_values(const std::vector<Path> &paths);

// Whether the node, a step of a path, has what the predicate wants.
bool meets(const lyd_node *node, const Predicate &predicate);

// Of a leaf-list that a path names a value of, keeps in `data` (NULL for none) only what one of the paths
// selects. Containers that this leaves empty are removed, too.
void keep_named_values(DataTree &data, const std::vector<Path> &paths);

} // namespace yfw::yang

#endif
