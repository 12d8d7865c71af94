// Builds data trees node by node.
#ifndef YFW_YANG_BUILDING_H
#define YFW_YANG_BUILDING_H

#include <array>
#include <string>

#include "yang/data_tree.h"

namespace yfw::yang {

// All of it throws Error for a node or value that the model does not have; values are in JSON's form (RFC
// 7951), the names of identities with their module's. The nodes belong to the tree of their parent.

// The top container `name` of a module.
DataTree make_top(const ly_ctx *context, const char *module, const char *name);

lyd_node &add_container(lyd_node &parent, const char *name);

// An entry of a list with up to three keys, in the order of the model.
lyd_node &add_entry(lyd_node &parent, const char *name, const std::array<std::string, 3> &keys);

// A leaf, or an entry of a leaf-list.
void add_leaf(lyd_node &parent, const char *name, const std::string &value);

} // namespace yfw::yang

#endif
