// Builds data trees node by node.
#ifndef YFW_YANG_BUILDING_H
#define YFW_YANG_BUILDING_H

#include <array>
#include <string>

#include "yang/data_tree.h"

namespace yfw::yang {

// These functions throw Error for a node or value that the schema does not allow. Values are written as in JSON
// (RFC 7951), identities with the name of their module. A node belongs to the tree of its parent.

// The top container `name` of a module.
DataTree make_top(const ly_ctx *context, const char *module, const char *name);

lyd_node &add_container(lyd_node &parent, const char *name);

// An entry of a list with up to three keys, in schema order.
lyd_node &add_entry(lyd_node &parent, const char *name, const std::array<std::string, 3> &keys);

// A leaf, or an entry of a leaf-list.
void add_leaf(lyd_node &parent, const char *name, const std::string &value);

} // namespace yfw::yang

#endif
