// Owners for libyang's objects.
#ifndef YFW_YANG_DATA_TREE_H
#define YFW_YANG_DATA_TREE_H

#include <memory>

#include <libyang/libyang.h>

namespace yfw::yang {

struct FreeDataTree {
    void operator()(lyd_node *node) const { lyd_free_all(node); }
};

// A forest of data nodes, freed as a whole.
using DataTree = std::unique_ptr<lyd_node, FreeDataTree>;

// The same, shared and immutable. A DataTree converts to it.
using SharedData = std::shared_ptr<const lyd_node>;

// Data owned elsewhere; the owner must outlive it.
inline SharedData borrowed(const lyd_node *data) {
    return {SharedData(), data};
}

struct DestroyContext {
    void operator()(ly_ctx *context) const { ly_ctx_destroy(context); }
};

using YangContext = std::unique_ptr<ly_ctx, DestroyContext>;

} // namespace yfw::yang

#endif
