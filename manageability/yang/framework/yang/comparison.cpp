#include "yang/comparison.h"

#include <cstring>

namespace yfw::yang {

const lyd_node *counterpart(const lyd_node *node, const lyd_node *siblings) {
    lyd_node *found = nullptr;
    if ((node->schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0)
        lyd_find_sibling_first(siblings, node, &found);
    else
        lyd_find_sibling_val(siblings, node->schema, nullptr, 0, &found);
    return found;
}

bool is_same(const lyd_node *a, const lyd_node *b) {
    if (a == nullptr || b == nullptr)
        return a == b;
    return lyd_compare_siblings(a, b, LYD_COMPARE_FULL_RECURSION) == LY_SUCCESS;
}

bool repeats_key(const lyd_node *leaf) {
    const lyd_node *parent = lyd_parent(leaf);
    const lyd_node *entry = parent != nullptr ? lyd_parent(parent) : nullptr;
    for (const lyd_node *key = entry != nullptr ? lyd_child(entry) : nullptr;
         key != nullptr && lysc_is_key(key->schema); key = key->next)
        if (std::strcmp(key->schema->name, leaf->schema->name) == 0)
            return true;
    return false;
}

} // namespace yfw::yang
