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

namespace {

size_t count_of(const lyd_node *siblings) {
    size_t count = 0;
    for (; siblings != nullptr; siblings = siblings->next)
        count++;
    return count;
}

// Whether the instance after this one among its siblings of the same schema is the counterpart's next one.
bool has_same_next(const lyd_node *node, const lyd_node *other) {
    const lyd_node *next = node->next, *other_next = other->next;
    const bool is_last = next == nullptr || next->schema != node->schema;
    const bool is_other_last = other_next == nullptr || other_next->schema != other->schema;
    if (is_last || is_other_last)
        return is_last && is_other_last;
    return counterpart(next, other_next) == other_next;
}

bool is_same_node(const lyd_node *node, const lyd_node *other) {
    if (other == nullptr)
        return false;
    if ((node->schema->nodetype & LYD_NODE_INNER) == 0)
        return lyd_compare_single(node, other, 0) == LY_SUCCESS;
    return is_same(lyd_child(node), lyd_child(other));
}

} // namespace

// Entries without keys have no counterparts: libyang compares them in their order.
bool is_same(const lyd_node *a, const lyd_node *b) {
    if (a == nullptr || b == nullptr)
        return a == b;
    if (lyd_compare_siblings(a, b, LYD_COMPARE_FULL_RECURSION) == LY_SUCCESS)
        return true;
    if (count_of(a) != count_of(b))
        return false;
    for (const lyd_node *node = a; node != nullptr; node = node->next) {
        const lyd_node *other = counterpart(node, b);
        if (!is_same_node(node, other) || (lysc_is_userordered(node->schema) && !has_same_next(node, other)))
            return false;
    }
    return true;
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
