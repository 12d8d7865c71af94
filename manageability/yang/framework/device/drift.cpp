#include "device/drift.h"

#include <cstring>

#include "yang/comparison.h"
#include "yang/tree_text.h"

namespace yfw::device {
namespace {

bool is_term(const lyd_node *node) {
    return (node->schema->nodetype & (LYS_LEAF | LYS_LEAFLIST)) != 0;
}

bool is_configuration(const lyd_node *node) {
    return (node->schema->flags & LYS_CONFIG_W) != 0;
}

std::string path_without_module(const lyd_node *node) {
    const std::string path = yang::path_of(node);
    const std::string prefix = "/" + std::string(node->schema->module->name) + ":";
    return path.rfind(prefix, 0) == 0 ? "/" + path.substr(prefix.size()) : path;
}

// OpenConfig tells of the applied value of config/leaf in state/leaf. `entry`: what the device has around
// "config".
const lyd_node *state_of(const lyd_node *leaf, const lyd_node *entry) {
    const lyd_node *parent = lyd_parent(leaf);
    if (entry == nullptr || parent == nullptr || std::strcmp(parent->schema->name, "config") != 0)
        return nullptr;
    for (const lyd_node *state = lyd_child(entry); state != nullptr; state = state->next) {
        if (is_configuration(state) || std::strcmp(state->schema->name, "state") != 0)
            continue;
        for (const lyd_node *one = lyd_child(state); one != nullptr; one = one->next)
            if (std::strcmp(one->schema->name, leaf->schema->name) == 0 &&
                (one->schema->nodetype == LYS_LEAF ||
                 std::strcmp(lyd_get_value(one), lyd_get_value(leaf)) == 0))
                return one;
    }
    return nullptr;
}

std::optional<std::string> value_of(const lyd_node *leaf) {
    return leaf != nullptr ? std::optional<std::string>(lyd_get_value(leaf)) : std::nullopt;
}

bool is_default(const lyd_node *leaf) {
    if (leaf->schema->nodetype != LYS_LEAF)
        return false;
    const lyd_value *given = reinterpret_cast<const lysc_node_leaf *>(leaf->schema)->dflt;
    return given != nullptr &&
           std::strcmp(lyd_value_get_canonical(LYD_CTX(leaf), given), lyd_get_value(leaf)) == 0;
}

class Comparison {
public:
    explicit Comparison(const Suspensions &suspended) : suspended_(suspended) {}

    // `around`: the device's parent of `applied`.
    void configured(const lyd_node *node, const lyd_node *applied, const lyd_node *around) {
        for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next) {
            if ((child->flags & LYD_DEFAULT) != 0 || lysc_is_key(child->schema) || !is_configuration(child))
                continue;
            const lyd_node *there = applied != nullptr ? yang::counterpart(child, lyd_child(applied)) : nullptr;
            if (is_term(child))
                term(child, there, around);
            else
                configured(child, there, applied);
        }
    }

    void only_applied(const lyd_node *node, const lyd_node *wanted) {
        for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next) {
            if (lysc_is_key(child->schema) || !is_configuration(child))
                continue;
            const lyd_node *there = wanted != nullptr ? yang::counterpart(child, lyd_child(wanted)) : nullptr;
            if (!is_term(child))
                only_applied(child, there);
            else if (there == nullptr && !is_default(child) && !yang::repeats_key(child))
                found_.push_back({path_without_module(child), std::nullopt, value_of(child), ""});
        }
    }

    std::vector<Drift> take() { return std::move(found_); }

private:
    void term(const lyd_node *leaf, const lyd_node *there, const lyd_node *around) {
        const std::string value = lyd_get_value(leaf);
        const lyd_node *state = state_of(leaf, around);
        if (value_of(there) == value || value_of(state) == value || yang::repeats_key(leaf))
            return;
        const std::string *reason = suspended_.reason(leaf->schema);
        found_.push_back({path_without_module(leaf), value, value_of(there != nullptr ? there : state),
                          reason != nullptr ? *reason : ""});
    }

    const Suspensions &suspended_;
    std::vector<Drift> found_;
};

} // namespace

std::vector<Drift> find_drift(const lyd_node *configured, const lyd_node *applied,
                              const Suspensions &suspended) {
    Comparison comparison(suspended);
    comparison.configured(configured, applied, nullptr);
    comparison.only_applied(applied, configured);
    return comparison.take();
}

} // namespace yfw::device
