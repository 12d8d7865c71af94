// Writes libyang's data with a writer.
#ifndef YFW_YANG_DATA_WRITING_H
#define YFW_YANG_DATA_WRITING_H

#include "yang/data_tree.h"
#include "yang/tree_writer.h"

namespace yfw::yang {

// Writes the tree, but not its siblings, attributes and default values that nobody set.
void write(const lyd_node *tree, TreeWriter &to);

} // namespace yfw::yang

#endif
