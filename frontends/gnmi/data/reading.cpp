#include "frontends/gnmi/data/reading.h"

#include <algorithm>
#include <set>

#include "yang/forest.h"
#include "yang/node_kind.h"

namespace yfw::gnmi {
namespace {

using Leaves = std::set<const lysc_node *>;

// The mapping reads entries that are named one by one; otherwise, one read serves all of them.
constexpr size_t most_named_entries = 16;

bool has_default(const lysc_node *node) {
    return node != nullptr && node->nodetype == LYS_LEAF && (node->flags & LYS_CONFIG_W) != 0 &&
           reinterpret_cast<const lysc_node_leaf *>(node)->dflt != nullptr;
}

Leaves named_with_defaults(const std::vector<PathPattern> &patterns, host::Content content) {
    Leaves leaves;
    for (const PathPattern &pattern : patterns)
        if (content != host::Content::state && has_default(pattern.node()))
            leaves.insert(pattern.node());
    return leaves;
}

// A default is in use where the entry around it exists, which shows only in what is beside the leaf.
host::ReadRequest request_for(const std::vector<PathPattern> &patterns, host::Content content,
                              const lysc_node *root, const Leaves &defaults) {
    host::ReadRequest request{content, {}, std::nullopt};
    for (PathPattern pattern : patterns) {
        if (defaults.contains(pattern.node()))
            pattern.steps.pop_back();
        if (patterns.size() > most_named_entries)
            for (PatternStep &step : pattern.steps)
                std::fill(step.keys.begin(), step.keys.end(), std::nullopt);
        yang::Path path = program_path(pattern, root);
        const auto is_same = [text = yang::to_string(path)](const yang::Path &other) {
            return yang::to_string(other) == text;
        };
        if (std::none_of(request.paths.begin(), request.paths.end(), is_same))
            request.paths.push_back(std::move(path));
    }
    return request;
}

// Writes libyang's data; of the defaults that nobody set, only those of `defaults`.
void write(const lyd_node *node, const Leaves &defaults, yang::TreeWriter &to) {
    if (yang::is_term(node->schema)) {
        if ((node->flags & LYD_DEFAULT) == 0 || defaults.contains(node->schema))
            to.leaf(node->schema, lyd_get_value(node));
        return;
    }
    to.open(node->schema);
    for (const lyd_node *child = lyd_child(node); child != nullptr; child = child->next)
        write(child, defaults, to);
    to.close();
}

void add_defaults(yang::DataTree &data, const lysc_node *root) {
    lyd_node *top = data.release();
    lyd_new_implicit_module(&top, root->module, LYD_IMPLICIT_NO_STATE, nullptr);
    data.reset(top);
}

} // namespace

std::shared_ptr<const Snapshot> read_snapshot(device::Service &service, const access::UserRules *rules,
                                              const std::vector<PathPattern> &patterns, host::Content content) {
    auto snapshot = std::make_shared<Snapshot>();
    SnapshotWriter writer(*snapshot, now_in_nanoseconds());
    const lysc_node *root = service.device().schemas().openconfig_root();
    const Leaves defaults = named_with_defaults(patterns, content);
    host::SettledAnswer answer = service.device().answer(request_for(patterns, content, root, defaults));
    if (rules == nullptr && defaults.empty()) {
        answer.write(writer);
        return snapshot;
    }
    yang::DataTree data = answer.take_data();
    if (!defaults.empty())
        add_defaults(data, root);
    if (rules != nullptr)
        rules->remove_unreadable(data);
    if (data != nullptr)
        write(data.get(), defaults, writer);
    return snapshot;
}

} // namespace yfw::gnmi
