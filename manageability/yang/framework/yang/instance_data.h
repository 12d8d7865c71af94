// Read-only instance data, written and as libyang's.
#ifndef YFW_YANG_INSTANCE_DATA_H
#define YFW_YANG_INSTANCE_DATA_H

#include "yang/data_tree.h"
#include "yang/instance_tree.h"
#include "yang/tree_writer.h"

namespace yfw::yang {

// Writes the tree, but not its siblings.
void write(const InstanceNode &tree, TreeWriter &to);

// The trees of configuration as libyang's data, which is not validated; NULL when there are none. Throws Error.
DataTree configuration_in(const InstanceForest &forest);

} // namespace yfw::yang

#endif
