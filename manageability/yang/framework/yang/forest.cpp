#include "yang/forest.h"

#include "base/error.h"
#include "yang/schemas.h"

namespace yfw::yang {

void join(DataTree &forest, DataTree more) {
    change_first(forest, [&more](lyd_node *&first) {
        lyd_node *next = nullptr;
        for (lyd_node *top = more.release(); top != nullptr; top = next) {
            next = top->next;
            lyd_unlink_tree(top);
            lyd_insert_sibling(first, top, &first);
        }
    });
}

LY_ERR merge(DataTree &forest, DataTree more) {
    if (!more)
        return LY_SUCCESS;
    if (!forest) {
        forest = std::move(more);
        return LY_SUCCESS;
    }
    return change_first(forest, [&more](lyd_node *&first) {
        return lyd_merge_siblings(&first, more.release(), LYD_MERGE_DESTRUCT);
    });
}

void remove(DataTree &forest, lyd_node *node) {
    if (node == forest.get())
        change_first(forest, [node](lyd_node *&held) {
            lyd_node *other = node->next != nullptr ? node->next : node->prev; // itself if it is the only one
            held = other != node ? other : nullptr;
        });
    lyd_free_tree(node);
}

const lyd_node *instance_of(const lysc_node *leaf, const lyd_node *configuration) {
    std::vector<const lysc_node *> steps;
    for (const lysc_node *node = leaf; node != nullptr; node = node->parent)
        steps.insert(steps.begin(), node);
    const lyd_node *at = nullptr;
    for (const lysc_node *step : steps) {
        lyd_node *next = nullptr;
        lyd_find_sibling_val(at != nullptr ? lyd_child(at) : configuration, step, nullptr, 0, &next);
        if (next == nullptr)
            return nullptr;
        at = next;
    }
    return at;
}

std::vector<lyd_node *> nodes_at(const lyd_node *data, const std::string &xpath) {
    if (data == nullptr)
        return {};
    ly_set *set = nullptr;
    if (lyd_find_xpath3(nullptr, data, xpath.c_str(), nullptr, &set) != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, xpath, take_yang_error(LYD_CTX(data)));
    const auto free_set = [](ly_set *found) { ly_set_free(found, nullptr); };
    const std::unique_ptr<ly_set, decltype(free_set)> owner(set, free_set);
    return {set->dnodes, set->dnodes + set->count};
}

} // namespace yfw::yang
