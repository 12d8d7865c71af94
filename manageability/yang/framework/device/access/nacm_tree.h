// Matches access rules to the nodes of one tree.
#ifndef YFW_DEVICE_ACCESS_NACM_TREE_H
#define YFW_DEVICE_ACCESS_NACM_TREE_H

#include <array>
#include <cstddef>
#include <unordered_map>
#include <vector>

#include "device/access/nacm_rules.h"

namespace yfw::access {

// Looks up each rule's path once; a walk over the nodes then passes the matches down the tree.
class RulesOnTree {
public:
    using Positions = std::vector<size_t>; // of rules, ascending

    // What a node inherits from its ancestors.
    struct Inherited {
        const Positions *named; // the rules whose paths match the node or one of its ancestors
        bool deny_all = false;
        bool deny_write = false;
    };

    // `accesses`: the bits to check; no others may be queried. The tree may be NULL and must not change.
    // Borrows everything. Throws Error.
    RulesOnTree(const AccessRules &all, const std::vector<const AccessRule *> &rules, unsigned accesses,
                const lyd_node *tree);

    Inherited at_top() const { return {&none_}; }

    // What applies at the node. `merged` is scratch space for combining rules from several levels.
    Inherited at(const lyd_node *node, const Inherited &above, Positions &merged) const;

    bool permits(Access access, const lyd_node *node, const Inherited &here);

private:
    static constexpr size_t access_count = 5;
    using First = std::array<size_t, access_count>;

    void find(size_t position, const lyd_node *tree);
    const AccessRule *deciding(Access access, const lyd_node *node, const Inherited &here);
    const First &first_general(const lys_module *module);

    const AccessRules &all_;
    const std::vector<const AccessRule *> &rules_;
    const Positions none_;
    std::unordered_map<const lyd_node *, Positions> named_;
    std::unordered_map<const lys_module *, First> general_;
};

} // namespace yfw::access

#endif
