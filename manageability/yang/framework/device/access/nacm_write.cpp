// Finds changes that a user may not make. Walks both configurations side by side: libyang's own diff is
// quadratic in the number of entries, even when nothing differs.
#include <unordered_set>

#include "device/access/nacm_tree.h"
#include "yang/tree_text.h"

namespace yfw::access {
namespace {

constexpr unsigned writes = bit(Access::create) | bit(Access::update) | bit(Access::remove);

// Nobody sets default values.
bool is_set(const lyd_node *node) {
    return node != nullptr && (node->flags & LYD_DEFAULT) == 0;
}

// The change to one node, ignoring its descendants; either may be NULL.
std::optional<Access> change_between(const lyd_node *before, const lyd_node *after) {
    const lysc_node *schema = (after != nullptr ? after : before)->schema;
    // A non-presence container exists only for its contents.
    if (lysc_is_np_cont(schema))
        return std::nullopt;
    if (!is_set(before))
        return is_set(after) ? std::optional(Access::create) : std::nullopt;
    if (!is_set(after))
        return Access::remove;
    const bool holds_others = schema != nullptr && (schema->nodetype & LYD_NODE_INNER) != 0;
    if (!holds_others && lyd_compare_single(before, after, 0) != LY_SUCCESS)
        return Access::update;
    return std::nullopt;
}

// The same node among the siblings in the other configuration, whatever its value; NULL when it is missing.
const lyd_node *same_among(const lyd_node *siblings, const lyd_node *node) {
    lyd_node *same = nullptr;
    if (siblings == nullptr)
        return nullptr;
    const bool is_one_of_several =
        node->schema == nullptr || (node->schema->nodetype & (LYS_LIST | LYS_LEAFLIST)) != 0;
    // Searching by node, libyang finds a leaf only if its value is the same.
    const LY_ERR status = is_one_of_several ? lyd_find_sibling_first(siblings, node, &same)
                                            : lyd_find_sibling_val(siblings, node->schema, nullptr, 0, &same);
    return status == LY_SUCCESS ? same : nullptr;
}

struct Denied {
    const lyd_node *node; // of either configuration
    Access access;
};

class Comparison {
public:
    Comparison(const AccessRules &all, const std::vector<const AccessRule *> &rules, const lyd_node *before,
               const lyd_node *after)
        : before_(all, rules, writes, before), after_(all, rules, writes, after) {}

    std::optional<Denied> first_denied(const lyd_node *before, const lyd_node *after) {
        return siblings(before, after, {before_.at_top(), after_.at_top()});
    }

private:
    struct Inherited {
        RulesOnTree::Inherited before;
        RulesOnTree::Inherited after;
    };

    // Visits nodes that exist on one side only in place, between those that exist on both.
    std::optional<Denied> siblings(const lyd_node *before, const lyd_node *after, const Inherited &above) {
        std::optional<Denied> denied;
        std::unordered_set<const lyd_node *> moved;
        const lyd_node *old = before;
        const lyd_node *now = after;
        while (!denied.has_value() && (old != nullptr || now != nullptr)) {
            const lyd_node *same = old != nullptr ? same_among(after, old) : nullptr;
            if (now != nullptr && same_among(before, now) == nullptr) {
                denied = node(nullptr, now, above);
                now = now->next;
            } else if (old == nullptr) {
                now = now->next;
            } else if (same == nullptr || moved.contains(same)) {
                denied = node(old, same, above);
                old = old->next;
            } else if (is_moved(now, same)) {
                denied = moved_entry(now, above);
                moved.insert(now);
                now = now->next;
            } else {
                denied = node(old, same, above);
                old = old->next;
                now = now != nullptr ? now->next : nullptr;
            }
        }
        return denied;
    }

    // Whether another entry of a user-ordered list is in this one's former position.
    static bool is_moved(const lyd_node *now, const lyd_node *same) {
        return now != nullptr && now != same && now->schema == same->schema && lysc_is_userordered(now->schema);
    }

    std::optional<Denied> moved_entry(const lyd_node *now, const Inherited &above) {
        RulesOnTree::Positions merged;
        return denied_at(after_, now, after_.at(now, above.after, merged), Access::update);
    }

    // Compares one node and its subtree; either may be NULL.
    std::optional<Denied> node(const lyd_node *before, const lyd_node *after, const Inherited &above) {
        RulesOnTree::Positions merged_before;
        RulesOnTree::Positions merged_after;
        Inherited here = above;
        if (before != nullptr)
            here.before = before_.at(before, above.before, merged_before);
        if (after != nullptr)
            here.after = after_.at(after, above.after, merged_after);
        std::optional<Denied> denied;
        if (const std::optional<Access> change = change_between(before, after))
            denied = *change == Access::remove ? denied_at(before_, before, here.before, *change)
                                               : denied_at(after_, after, here.after, *change);
        return denied.has_value() ? denied : siblings(lyd_child(before), lyd_child(after), here);
    }

    static std::optional<Denied> denied_at(RulesOnTree &rules, const lyd_node *node,
                                           const RulesOnTree::Inherited &here, Access access) {
        if (rules.permits(access, node, here))
            return std::nullopt;
        return Denied{node, access};
    }

    RulesOnTree before_;
    RulesOnTree after_;
};

} // namespace

std::optional<DeniedWrite> UserRules::denied_write(const lyd_node *before, const lyd_node *after) const {
    if (!all_->enabled)
        return std::nullopt;
    const lyd_node *first_before = lyd_first_sibling(before);
    const lyd_node *first_after = lyd_first_sibling(after);
    const std::optional<Denied> denied =
        Comparison(*all_, rules_, first_before, first_after).first_denied(first_before, first_after);
    if (!denied.has_value())
        return std::nullopt;
    const lyd_node *outermost = hidden(denied->node);
    return DeniedWrite{yang::path_of(denied->node), denied->access,
                       outermost != nullptr ? yang::path_of(outermost) : ""};
}

} // namespace yfw::access
