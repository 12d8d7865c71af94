// Where a node stands in its schema.
#ifndef YFW_YANG_SCHEMA_PLACE_H
#define YFW_YANG_SCHEMA_PLACE_H

#include <libyang/libyang.h>

namespace yfw::yang {

inline bool is_at_or_below(const lysc_node *node, const lysc_node *top) {
    for (; node != nullptr; node = node->parent)
        if (node == top)
            return true;
    return false;
}

// Whether the node is within a list's entries; a list itself is not in its own.
inline bool has_list_above(const lysc_node *node) {
    for (node = node->parent; node != nullptr; node = node->parent)
        if (node->nodetype == LYS_LIST)
            return true;
    return false;
}

} // namespace yfw::yang

#endif
