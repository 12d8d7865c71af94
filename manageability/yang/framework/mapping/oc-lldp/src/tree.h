// Data tree queries shared by the walkers of both directions.
#ifndef OCLLDP_TREE_H
#define OCLLDP_TREE_H

#include "frame.h"

namespace oclldp {

struct child_view {
    node *first = nullptr;
    uint32_t count = 0;

    node *begin() const { return first; }
    node *end() const { return first + count; }
};

inline bool children_valid(const node *n) {
    return (n->node_flags & YFW_NODE_CHILDREN_VALID) != 0;
}

// A node without the children-valid flag has no children.
inline child_view children_of(const node *n) {
    return children_valid(n) ? child_view{n->children, n->child_count} : child_view{};
}

inline bool children_missing(const node *n) {
    return children_valid(n) && n->children == nullptr && n->child_count != 0;
}

inline terrno no_subtrees(frame &f) {
    YMAP_ERROR_AT(f, slot_no_subtrees, "Failed to get subtrees!");
    return YMAP_ERR_MAP_FAILED;
}

inline terrno no_tag(frame &f) {
    YMAP_ERROR_AT(f, slot_no_tag, "Tag name is not available!");
    return YMAP_ERR_MAP_FAILED;
}

inline bool match(const char *a, const char *b) {
    return yfw_map_do_these_match(a, b) != 0;
}

} // namespace oclldp

#endif
