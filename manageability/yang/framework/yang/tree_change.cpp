#include "yang/tree_change.h"

#include "base/error.h"
#include "yang/comparison.h"
#include "yang/forest.h"
#include "yang/tree_text.h"

namespace yfw::yang {
namespace {

void check(LY_ERR status, const ly_ctx *context, const char *what) {
    if (status != LY_SUCCESS)
        throw Error(ErrorTag::operation_failed, "",
                    std::string(what) + " a configuration failed: " + take_yang_error(context));
}

bool is_empty_container(const lyd_node *node) {
    return node->schema->nodetype == LYS_CONTAINER && (node->schema->flags & LYS_PRESENCE) == 0 &&
           lyd_child(node) == nullptr;
}

// What a change has taken everything out of is not there when the configuration is read from a text.
void drop_emptied(DataTree &configuration, const lyd_node *siblings, const lyd_node *change) {
    for (; change != nullptr && siblings != nullptr; change = change->next) {
        if ((change->schema->nodetype & LYD_NODE_INNER) == 0)
            continue;
        auto *changed = const_cast<lyd_node *>(counterpart(change, siblings));
        if (changed == nullptr)
            continue;
        drop_emptied(configuration, lyd_child(changed), lyd_child(change));
        if (!is_empty_container(changed))
            continue;
        const bool is_first = changed == siblings;
        const lyd_node *next = changed->next;
        remove(configuration, changed);
        if (is_first)
            siblings = next;
    }
}

bool is_implicit(const lyd_node *node) {
    if ((node->schema->nodetype & LYD_NODE_TERM) != 0)
        return (node->flags & LYD_DEFAULT) != 0;
    return is_empty_container(node);
}

void drop_implicit_among(DataTree &forest, lyd_node *first) {
    for (lyd_node *node = first, *next = nullptr; node != nullptr; node = next) {
        next = node->next;
        drop_implicit_among(forest, lyd_child(node));
        if (is_implicit(node))
            remove(forest, node);
    }
}

} // namespace

DataTree change_between(const lyd_node *before, const lyd_node *after) {
    lyd_node *change = nullptr;
    if (before == nullptr && after == nullptr)
        return nullptr;
    check(lyd_diff_siblings(before, after, LYD_DIFF_DEFAULTS, &change),
          LYD_CTX(before != nullptr ? before : after), "comparing");
    return DataTree(change);
}

void apply_change(DataTree &configuration, const lyd_node *change) {
    if (change == nullptr)
        return;
    check(change_first(configuration, [&](lyd_node *&first) { return lyd_diff_apply_all(&first, change); }),
          LYD_CTX(change), "changing");
    drop_emptied(configuration, configuration.get(), change);
}

std::string print_change(const lyd_node *change) {
    return printed(change, LYD_XML, LYD_PRINT_WITHSIBLINGS | LYD_PRINT_SHRINK);
}

DataTree parse_change(const Schemas &schemas, const std::string &text, const std::string &place) {
    if (text.empty())
        return nullptr;
    return parse_data(schemas.context(), text, LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT, place);
}

void drop_implicit(DataTree &configuration) {
    drop_implicit_among(configuration, configuration.get());
}

} // namespace yfw::yang
