#include "frontends/gnmi/data/matching.h"

#include <algorithm>

namespace yfw::gnmi {
namespace {

using Index = Snapshot::Index;

// Keys are the first children of their entry, in schema order.
bool has_keys(const Snapshot &snapshot, Index entry, const PatternStep &step) {
    Index key = Snapshot::first_child(entry);
    for (const auto &wanted : step.keys) {
        if (key >= snapshot[entry].end || (wanted.has_value() && *wanted != snapshot[key].value))
            return false;
        key = snapshot[key].end;
    }
    return true;
}

class Matcher {
public:
    Matcher(const Snapshot &snapshot, const PathPattern &pattern) : snapshot_(snapshot), pattern_(pattern) {}

    std::vector<Index> find() {
        descend(Snapshot::root, 0);
        return std::move(found_);
    }

private:
    void descend(Index node, size_t depth) {
        if (depth == pattern_.steps.size()) {
            found_.push_back(node);
            return;
        }
        const PatternStep &step = pattern_.steps[depth];
        bool is_value_found = false;
        for (Index at = Snapshot::first_child(node); at < snapshot_[node].end; at = snapshot_[at].end) {
            const lysc_node *schema = snapshot_[at].schema;
            if (schema != step.node || (is_value_found && schema->nodetype == LYS_LEAFLIST))
                continue;
            is_value_found = true;
            if (has_keys(snapshot_, at, step))
                descend(at, depth + 1);
        }
    }

    const Snapshot &snapshot_;
    const PathPattern &pattern_;
    std::vector<Index> found_;
};

} // namespace

std::vector<Index> matches(const Snapshot &snapshot, const PathPattern &pattern) {
    return Matcher(snapshot, pattern).find();
}

bool is_selected(const Snapshot &snapshot, Index node, const std::vector<PathPattern> &patterns) {
    std::vector<Index> chain;
    for (Index at = node; at != Snapshot::root; at = snapshot[at].parent)
        chain.insert(chain.begin(), at);
    return std::any_of(patterns.begin(), patterns.end(), [&](const PathPattern &pattern) {
        if (pattern.steps.size() > chain.size())
            return false;
        for (size_t i = 0; i < pattern.steps.size(); i++)
            if (snapshot[chain[i]].schema != pattern.steps[i].node ||
                !has_keys(snapshot, chain[i], pattern.steps[i]))
                return false;
        return true;
    });
}

Index end_of_values(const Snapshot &snapshot, Index first) {
    const Index parent_end = snapshot[snapshot[first].parent].end;
    Index at = first;
    while (at < parent_end && snapshot[at].schema == snapshot[first].schema)
        at = snapshot[at].end;
    return at;
}

} // namespace yfw::gnmi
