// Compares data trees.
#ifndef YFW_YANG_COMPARISON_H
#define YFW_YANG_COMPARISON_H

#include "yang/data_tree.h"

namespace yfw::yang {

// The instance among the siblings, of which any may be given, that stands for the same as `node`, which may be
// of another tree: a list entry with the same keys, an entry of a leaf-list with the same value. NULL when
// there is none, or no siblings. Looked up by hash.
const lyd_node *counterpart(const lyd_node *node, const lyd_node *siblings);

// Whether two forests hold the same nodes and values; either may be NULL. The order of siblings counts only
// where the user orders them (RFC 7950 section 7.7.7).
bool is_same(const lyd_node *a, const lyd_node *b);

// Whether the entry around a leaf's parent has a key of the leaf's name: such as config/name, which says
// nothing that the key does not.
bool repeats_key(const lyd_node *leaf);

} // namespace yfw::yang

#endif
