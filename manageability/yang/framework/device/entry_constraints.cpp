#include "device/entry_constraints.h"

#include <algorithm>
#include <cstdint>
#include <memory>

#include "yang/schema_place.h"

namespace yfw::device {
namespace {

struct FreeSet {
    void operator()(ly_set *set) const { ly_set_free(set, nullptr); }
};
using Atoms = std::unique_ptr<ly_set, FreeSet>;

class Constraints {
public:
    explicit Constraints(const std::vector<const lysc_node *> &lists) : lists_(lists) {}

    bool are_there(const lysc_node *node) const {
        if ((node->flags & LYS_CONFIG_W) == 0)
            return false;
        if (is_restricted(node) || has_far_musts(node) || has_far_whens(node) || is_far_reference(node))
            return true;
        for (const lysc_node *child = lysc_node_child(node); child != nullptr; child = child->next)
            if (are_there(child))
                return true;
        return false;
    }

private:
    const lysc_node *list_of(const lysc_node *node) const {
        const auto found = std::find_if(lists_.begin(), lists_.end(), [&](const lysc_node *list) {
            return yang::is_at_or_below(node, list);
        });
        return found != lists_.end() ? *found : nullptr;
    }

    bool is_restricted(const lysc_node *node) const {
        if (std::find(lists_.begin(), lists_.end(), node) == lists_.end())
            return false;
        const auto *list = reinterpret_cast<const lysc_node_list *>(node);
        return list->uniques != nullptr || list->min > 0 || list->max < UINT32_MAX || lysc_is_userordered(node);
    }

    // Whether an expression of `node` leads out of its entry, or into one. What cannot be told counts as far.
    bool is_far(const lysc_node *node, const lyxp_expr *expression, const lysc_prefix *prefixes) const {
        ly_set *set = nullptr;
        const LY_ERR status = lys_find_expr_atoms(node, node->module, expression, prefixes, 0, &set);
        const Atoms atoms(set);
        if (status != LY_SUCCESS) {
            ly_err_clean(node->module->ctx, nullptr);
            return true;
        }
        const lysc_node *own = list_of(node);
        return std::any_of(atoms->snodes, atoms->snodes + atoms->count, [&](const lysc_node *atom) {
            const lysc_node *other = list_of(atom);
            return (other != nullptr && other != own) ||
                   (own != nullptr && yang::is_at_or_below(own->parent, atom));
        });
    }

    bool has_far_musts(const lysc_node *node) const {
        const lysc_must *musts = lysc_node_musts(node);
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(musts, i) {
            if (is_far(node, musts[i].cond, musts[i].prefixes))
                return true;
        }
        return false;
    }

    bool has_far_whens(const lysc_node *node) const {
        lysc_when **whens = lysc_node_when(node);
        LY_ARRAY_COUNT_TYPE i = 0;
        LY_ARRAY_FOR(whens, i) {
            const lysc_node *context = whens[i]->context != nullptr ? whens[i]->context : node;
            if (is_far(context, whens[i]->cond, whens[i]->prefixes))
                return true;
        }
        return false;
    }

    bool is_far_reference(const lysc_node *node) const {
        const lysc_type *type = nullptr;
        if ((node->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0)
            type = reinterpret_cast<const lysc_node_leaf *>(node)->type;
        if (type == nullptr || type->basetype != LY_TYPE_LEAFREF)
            return false;
        const auto *reference = reinterpret_cast<const lysc_type_leafref *>(type);
        return reference->require_instance != 0 && is_far(node, reference->path, reference->prefixes);
    }

    const std::vector<const lysc_node *> &lists_;
};

} // namespace

bool constrains_entries(const lysc_node *root, const std::vector<const lysc_node *> &lists) {
    return Constraints(lists).are_there(root);
}

} // namespace yfw::device
