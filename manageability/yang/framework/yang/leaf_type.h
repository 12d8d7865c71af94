// The types of leaves.
#ifndef YFW_YANG_LEAF_TYPE_H
#define YFW_YANG_LEAF_TYPE_H

#include <libyang/libyang.h>

namespace yfw::yang {

// The type of a leaf's or leaf-list's values: of a leafref, such as most keys, that of the leaf it refers to.
inline const lysc_type *leaf_type(const lysc_node *leaf) {
    const lysc_type *type = leaf->nodetype == LYS_LEAF
                                ? reinterpret_cast<const lysc_node_leaf *>(leaf)->type
                                : reinterpret_cast<const lysc_node_leaflist *>(leaf)->type;
    while (type->basetype == LY_TYPE_LEAFREF)
        type = reinterpret_cast<const lysc_type_leafref *>(type)->realtype;
    return type;
}

inline bool is_integer(LY_DATA_TYPE type) {
    switch (type) {
    case LY_TYPE_INT8:
    case LY_TYPE_INT16:
    case LY_TYPE_INT32:
    case LY_TYPE_INT64:
    case LY_TYPE_UINT8:
    case LY_TYPE_UINT16:
    case LY_TYPE_UINT32:
    case LY_TYPE_UINT64:
        return true;
    default:
        return false;
    }
}

} // namespace yfw::yang

#endif
