#include "yang/path_resolver.h"

#include <optional>

#include "base/error.h"
#include "yang/near_name.h"
#include "yang/not_served.h"
#include "yang/schemas.h"

namespace yfw::yang {
namespace {

using Kind = PathWord::Kind;

bool fits(const lysc_node *node, const PathName &name) {
    return node != nullptr && (name.module.empty() || name.module == node->module->name);
}

class Resolver {
public:
    Resolver(const lysc_node *root, std::string_view text, const std::vector<PathWord> &words)
        : root_(root), text_(text), words_(words) {}

    std::vector<Path> resolve() {
        follow(0);
        if (found_.empty())
            throw why_.has_value() ? *why_ : nothing_below();
        return std::move(found_);
    }

private:
    const lysc_node *parent() const { return path_.empty() ? nullptr : path_.back().node; }

    // After a wildcard, a node without the next word is just not meant, unless nothing else is found.
    void refuse(Error error) {
        if (!after_wildcard_)
            throw error;
        if (!why_.has_value())
            why_.emplace(std::move(error));
    }

    void follow(size_t at) {
        if (at == words_.size()) {
            found_.push_back(path_.empty() ? Path{{root_, {}}} : path_);
            return;
        }
        const PathWord &word = words_[at];
        const bool before = after_wildcard_;
        after_wildcard_ = before || word.kind != Kind::name;
        if (word.kind == Kind::name)
            follow_node(at, child_named(word.name));
        else if (word.kind == Kind::any_depth)
            follow_depth(at);
        else
            for_each_child([&](const lysc_node *child) { follow_node(at, child); });
        after_wildcard_ = before;
    }

    // The words behind it here, and then below each child. The last one stands for everything, which its
    // parent is.
    void follow_depth(size_t at) {
        follow(at + 1);
        if (at + 1 < words_.size())
            for_each_child([&](const lysc_node *child) {
                path_.push_back({child, {}});
                follow_depth(at);
                path_.pop_back();
            });
    }

    template <class Visit> void for_each_child(Visit &&visit) {
        if (path_.empty())
            return visit(root_);
        for (const lysc_node *child = lysc_node_child(parent()); child != nullptr; child = child->next)
            visit(child);
    }

    // `node` may be NULL: there is none by the word's name.
    void follow_node(size_t at, const lysc_node *node) {
        std::optional<PathStep> step = node != nullptr ? step_of(node, words_[at]) : std::nullopt;
        if (!step.has_value())
            return;
        path_.push_back(std::move(*step));
        follow(at + 1);
        path_.pop_back();
    }

    const lysc_node *child_named(const PathName &name) {
        const lysc_node *node = nullptr;
        if (!path_.empty())
            node = schema_child(parent(), name.name);
        else if (name.name == root_->name)
            node = root_;
        if (fits(node, name))
            return node;
        refuse(unknown(parent(), name.name));
        return nullptr;
    }

    Error unknown(const lysc_node *parent, std::string_view name) const {
        std::string near, place;
        if (after_wildcard_) {
            near = near_descendant(root_, name);
        } else if (parent == nullptr) {
            place = ": paths start with /" + std::string(root_->name);
        } else {
            if (is_not_served(parent, name))
                return {ErrorTag::unknown_element, std::string(text_), unknown_child(parent, name)};
            near = near_child(parent, name);
            place = " under \"" + schema_path(parent) + "\"";
        }
        const bool is_told = !near.empty() && near != name; // a name with another module's is its own nearest
        return {ErrorTag::unknown_element, std::string(text_),
                "unknown node \"" + std::string(name) + "\"" + place +
                    (is_told ? ": did you mean \"" + near + "\"?" : "")};
    }

    // Only wildcards lead below leaves, or deeper than the model: no name was refused.
    Error nothing_below() const {
        return {ErrorTag::unknown_element, std::string(text_), "matches nothing in the model"};
    }

    Error invalid(const std::string &message) const {
        return {ErrorTag::invalid_value, std::string(text_), message};
    }

    // Nothing when the node cannot have the word's conditions.
    std::optional<PathStep> step_of(const lysc_node *node, const PathWord &word) {
        PathStep step{node, {}};
        for (const PathCondition &condition : word.conditions) {
            const lysc_node *leaf = condition.is_own ? own(node) : leaf_of(node, condition.leaf);
            if (leaf == nullptr)
                return std::nullopt;
            if (condition.value.has_value())
                step.predicates.push_back({leaf, *condition.value});
        }
        return step;
    }

    const lysc_node *own(const lysc_node *node) {
        if (node->nodetype == LYS_LEAFLIST)
            return node;
        refuse(invalid("[.='...'] names a value of a leaf-list, which \"" + schema_path(node) + "\" is not"));
        return nullptr;
    }

    const lysc_node *leaf_of(const lysc_node *node, const PathName &name) {
        const lysc_node *leaf = schema_child(node, name.name);
        if (!fits(leaf, name))
            refuse(unknown(node, name.name));
        else if (leaf->nodetype != LYS_LEAF)
            refuse(
                invalid("\"" + std::string(leaf->name) + "\" is not a leaf of \"" + schema_path(node) + "\""));
        else
            return leaf;
        return nullptr;
    }

    const lysc_node *root_;
    std::string_view text_;
    const std::vector<PathWord> &words_;
    Path path_;
    std::vector<Path> found_;
    bool after_wildcard_ = false;
    std::optional<Error> why_; // what was refused first behind a wildcard
};

} // namespace

std::vector<Path> resolve_path(const lysc_node *root, std::string_view text,
                               const std::vector<PathWord> &words) {
    return Resolver(root, text, words).resolve();
}

} // namespace yfw::yang
