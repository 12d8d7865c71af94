#include <deque>

#include "device/access/nacm_tree.h"
#include "yang/forest.h"

namespace yfw::access {
namespace {

// Collects the topmost unreadable nodes. Returns whether the node itself is readable.
bool find_unreadable(RulesOnTree &rules, const RulesOnTree::Inherited &above, lyd_node *node,
                     std::vector<lyd_node *> &unreadable) {
    RulesOnTree::Positions merged;
    const RulesOnTree::Inherited here = rules.at(node, above, merged);
    bool is_readable = rules.permits(Access::read, node, here);
    const size_t found_before = unreadable.size();
    for (lyd_node *child = lyd_child(node); is_readable && child != nullptr; child = child->next)
        is_readable = find_unreadable(rules, here, child, unreadable) || !lysc_is_key(child->schema);
    if (!is_readable) {
        unreadable.resize(found_before);
        unreadable.push_back(node);
    }
    return is_readable;
}

// Not what is below the node, except for the keys of an entry.
bool may_be_read(RulesOnTree &rules, const lyd_node *node, const RulesOnTree::Inherited &here) {
    bool is_readable = rules.permits(Access::read, node, here);
    for (const lyd_node *key = lyd_child(node); is_readable && key != nullptr && lysc_is_key(key->schema);
         key = key->next) {
        RulesOnTree::Positions merged;
        is_readable = rules.permits(Access::read, key, rules.at(key, here, merged));
    }
    return is_readable;
}

} // namespace

void UserRules::remove_unreadable(yang::DataTree &data) const {
    if (!all_->enabled || data == nullptr)
        return;
    lyd_node *first = lyd_first_sibling(data.get());
    RulesOnTree rules(*all_, rules_, bit(Access::read), first);
    std::vector<lyd_node *> unreadable;
    for (lyd_node *top = first; top != nullptr; top = top->next)
        find_unreadable(rules, rules.at_top(), top, unreadable);
    for (lyd_node *node : unreadable)
        yang::remove(data, node);
}

const lyd_node *UserRules::hidden(const lyd_node *node) const {
    std::deque<const lyd_node *> path;
    for (const lyd_node *each = node; each != nullptr; each = lyd_parent(each))
        path.push_front(each);
    if (!all_->enabled || path.empty())
        return nullptr;
    RulesOnTree rules(*all_, rules_, bit(Access::read), lyd_first_sibling(path.front()));
    std::deque<RulesOnTree::Positions> merged; // stays where it is
    RulesOnTree::Inherited here = rules.at_top();
    for (const lyd_node *each : path) {
        here = rules.at(each, here, merged.emplace_back());
        if (!may_be_read(rules, each, here))
            return each;
    }
    return nullptr;
}

} // namespace yfw::access
