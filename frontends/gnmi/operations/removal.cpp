#include "frontends/gnmi/operations/removal.h"

#include <algorithm>

#include "frontends/gnmi/values/given_edit.h"
#include "yang/edit_instance.h"

namespace yfw::gnmi {
namespace {

// The keys of an entry, if they are those of the step.
std::optional<std::vector<std::optional<std::string>>> keys_of(const lyd_node *entry, const PatternStep &step) {
    std::vector<std::optional<std::string>> keys;
    const lyd_node *key = lyd_child(entry);
    for (const auto &wanted : step.keys) {
        if (key == nullptr || (wanted.has_value() && *wanted != lyd_get_value(key)))
            return std::nullopt;
        keys.emplace_back(lyd_get_value(key));
        key = key->next;
    }
    return keys;
}

// The entry with the keys of the step, which must have them all.
const lyd_node *entry_with_keys(const lyd_node *siblings, const PatternStep &step) {
    yang::EditNode entry{step.node, std::nullopt, {}};
    const lysc_node *key = lysc_node_child(step.node);
    for (const auto &value : step.keys) {
        entry.children.push_back({key, value, {}});
        key = key->next;
    }
    return yang::find_instance(siblings, entry);
}

bool names_one_entry(const PatternStep &step) {
    return step.node->nodetype == LYS_LIST && !step.keys.empty() &&
           std::all_of(step.keys.begin(), step.keys.end(), [](const auto &key) { return key.has_value(); });
}

class Finder {
public:
    Finder(const yang::Schemas &schemas, const PathPattern &pattern) : schemas_(schemas), pattern_(pattern) {}

    std::vector<yang::EditNode> find(const lyd_node *running) {
        if (running != nullptr)
            descend(running, 0);
        return std::move(found_);
    }

private:
    void descend(const lyd_node *siblings, size_t depth) {
        if (depth == pattern_.steps.size()) {
            found_.push_back(yfw::gnmi::edit_at(schemas_, path_, yang::Operation::remove));
            return;
        }
        const PatternStep &step = pattern_.steps[depth];
        if (names_one_entry(step)) {
            if (const lyd_node *entry = entry_with_keys(siblings, step))
                enter(entry, step, step.keys, depth);
            return;
        }
        for (const lyd_node *node = siblings; node != nullptr; node = node->next) {
            if (node->schema != step.node)
                continue;
            const auto keys = keys_of(node, step);
            if (!keys.has_value())
                continue;
            enter(node, step, *keys, depth);
            if (node->schema->nodetype == LYS_LEAFLIST) // all values at once
                return;
        }
    }

    void enter(const lyd_node *node, const PatternStep &step,
               const std::vector<std::optional<std::string>> &keys, size_t depth) {
        path_.steps.push_back({step.node, keys});
        descend(lyd_child(node), depth + 1);
        path_.steps.pop_back();
    }

    const yang::Schemas &schemas_;
    const PathPattern &pattern_;
    PathPattern path_;
    std::vector<yang::EditNode> found_;
};

} // namespace

std::vector<yang::EditNode> removals(const yang::Schemas &schemas, const PathPattern &pattern,
                                     const lyd_node *running) {
    return Finder(schemas, pattern).find(running);
}

} // namespace yfw::gnmi
