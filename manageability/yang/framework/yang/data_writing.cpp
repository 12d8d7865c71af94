#include "yang/data_writing.h"

namespace yfw::yang {

void write(const lyd_node *tree, TreeWriter &to) {
    if ((tree->flags & LYD_DEFAULT) != 0)
        return;
    if ((tree->schema->nodetype & LYD_NODE_TERM) != 0) {
        to.leaf(tree->schema, lyd_get_value(tree));
        return;
    }
    to.open(tree->schema);
    for (const lyd_node *child = lyd_child(tree); child != nullptr; child = child->next)
        write(child, to);
    to.close();
}

} // namespace yfw::yang
