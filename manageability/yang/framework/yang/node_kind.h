#ifndef YFW_YANG_NODE_KIND_H
#define YFW_YANG_NODE_KIND_H

#include <libyang/libyang.h>

namespace yfw::yang {

// Whether the node is a leaf or a leaf-list.
inline bool is_term(const lysc_node *node) {
    return (node->nodetype & LYD_NODE_TERM) != 0;
}

} // namespace yfw::yang

#endif
