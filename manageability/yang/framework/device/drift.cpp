#include "device/drift.h"

#include <cstring>

#include "device/leaf_edits.h"
#include "yang/comparison.h"
#include "yang/node_kind.h"

namespace yfw::device {
namespace {

bool is_configuration(const lyd_node *node) {
    return (node->schema->flags & LYS_CONFIG_W) != 0;
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
            if (yang::is_term(child->schema))
                term(child, there, around);
            else
                configured(child, there, applied);
        }
    }

    // `expected`: its counterpart among what a device that runs the configuration reads as.
    void only_applied(const lyd_node *node, const lyd_node *wanted, const lyd_node *expected) {
        for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next) {
            if (lysc_is_key(child->schema))
                continue;
            const lyd_node *there = below(wanted, child);
            const lyd_node *usual = below(expected, child);
            if (!is_configuration(child))
                only_in_state(child, node, wanted, usual);
            else if (!yang::is_term(child->schema))
                only_applied(child, there, usual);
            else if (there == nullptr && value_of(usual) != value_of(child) && !is_default(child) &&
                     !yang::repeats_key(child))
                found_.push_back({leaf_path(child), std::nullopt, value_of(child), ""});
        }
    }

    std::vector<Drift> take() { return std::move(found_); }

private:
    static const lyd_node *below(const lyd_node *parent, const lyd_node *like) {
        return parent != nullptr ? yang::counterpart(like, lyd_child(parent)) : nullptr;
    }

    // Values of leaf-lists: a mapping may show fewer of them in "config" than in "state". `entry`: the device's
    // parent of `state`; `wanted` and `usual`: what corresponds to the entry, and to `state`.
    void only_in_state(const lyd_node *state, const lyd_node *entry, const lyd_node *wanted,
                       const lyd_node *usual) {
        if (std::strcmp(state->schema->name, "state") != 0)
            return;
        const std::string above = leaf_path(entry);
        for (const lyd_node *value = lyd_child(state); value != nullptr; value = value->next) {
            if (value->schema->nodetype != LYS_LEAFLIST || below(usual, value) != nullptr ||
                has_twin(value, entry) || has_twin(value, wanted))
                continue;
            const std::string text = lyd_get_value(value);
            const char quote = text.find('\'') == std::string::npos ? '\'' : '"';
            found_.push_back({above + "/config/" + value->schema->name + "[.=" + quote + text + quote + "]",
                              std::nullopt, text, ""});
        }
    }

    // Whether "config" below `entry` has the same value of a leaf-list of the same name.
    static bool has_twin(const lyd_node *value, const lyd_node *entry) {
        for (const lyd_node *config = entry != nullptr ? lyd_child(entry) : nullptr; config != nullptr;
             config = config->next) {
            if (std::strcmp(config->schema->name, "config") != 0)
                continue;
            for (const lyd_node *one = lyd_child(config); one != nullptr; one = one->next)
                if (std::strcmp(one->schema->name, value->schema->name) == 0 &&
                    value_of(one) == value_of(value))
                    return true;
        }
        return false;
    }

    void term(const lyd_node *leaf, const lyd_node *there, const lyd_node *around) {
        const std::string value = lyd_get_value(leaf);
        const lyd_node *state = state_of(leaf, around);
        if (value_of(there) == value || value_of(state) == value || yang::repeats_key(leaf))
            return;
        const std::string *reason = suspended_.reason(leaf->schema);
        found_.push_back({leaf_path(leaf), value, value_of(there != nullptr ? there : state),
                          reason != nullptr ? *reason : ""});
    }

    const Suspensions &suspended_;
    std::vector<Drift> found_;
};

} // namespace

std::vector<Drift> find_drift(const lyd_node *configured, const lyd_node *applied, const lyd_node *expected,
                              const Suspensions &suspended) {
    Comparison comparison(suspended);
    comparison.configured(configured, applied, nullptr);
    comparison.only_applied(applied, configured, expected);
    return comparison.take();
}

} // namespace yfw::device
