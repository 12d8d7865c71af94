// Edits of leaves that are chosen from OpenConfig data.
#ifndef YFW_DEVICE_LEAF_EDITS_H
#define YFW_DEVICE_LEAF_EDITS_H

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "yang/data_tree.h"
#include "yang/edit.h"

namespace yfw::device {

// What an edit does with a leaf, or an entry of a leaf-list, given its counterpart in other data (NULL: there
// is none). Nothing leaves it out.
using LeafChoice =
    std::function<std::optional<yang::Operation>(const lyd_node *leaf, const lyd_node *counterpart)>;

// The edit of the chosen leaves of `data`, with what is above them; without children when none is chosen.
// `root`: the top container, which `data` and `other` are instances of unless they are NULL. Keys and defaults
// are not offered.
yang::EditNode leaf_edit(const lysc_node *root, const lyd_node *data, const lyd_node *other,
                         const LeafChoice &choose);

// The leaf's instance path, without module names.
std::string leaf_path(const lyd_node *leaf);

// One edit for each leaf of the edit, with what is above it.
std::vector<yang::EditNode> single_leaves(const yang::EditNode &edit);

} // namespace yfw::device

#endif
