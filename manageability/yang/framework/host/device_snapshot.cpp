#include "host/device_snapshot.h"

#include <algorithm>
#include <string_view>

namespace yfw::host {
namespace {

const lyd_node *child(const lyd_node *parent, const lysc_node *schema) {
    for (const lyd_node *node = lyd_child(parent); node != nullptr; node = node->next)
        if (node->schema == schema)
            return node;
    return nullptr;
}

std::string value(const lyd_node *parent, const lysc_node *schema) {
    const lyd_node *leaf = child(parent, schema);
    return leaf != nullptr ? lyd_get_value(leaf) : "";
}

// Calls `visit` with every instance of the last node of `way`, whose first is `at`'s.
template <class Visit>
void visit_instances(const lyd_node *at, const std::vector<const lysc_node *> &way, size_t depth,
                     Visit &&visit) {
    if (depth + 1 == way.size()) {
        visit(at);
        return;
    }
    for (const lyd_node *node = lyd_child(at); node != nullptr; node = node->next)
        if (node->schema == way[depth + 1])
            visit_instances(node, way, depth + 1, visit);
}

bool is_meant(const lyd_node *entry, const DeviceQuestions::Entries &entries) {
    for (const auto &[leaf, wanted] : entries.where)
        if (value(entry, leaf) != wanted)
            return false;
    if (entries.holding == nullptr)
        return true;
    const lyd_node *holder = child(entry, entries.holding);
    return holder != nullptr && lyd_child(holder) != nullptr;
}

} // namespace

const lyd_node *DeviceSnapshot::top(const lysc_node *schema) const {
    const bool is_apart = native_.configuration.has_value() && (schema->flags & LYS_CONFIG_W) != 0;
    const yang::SharedData &forest = is_apart ? *native_.configuration : native_.data;
    for (const lyd_node *node = forest.get(); node != nullptr; node = node->next)
        if (node->schema == schema)
            return node;
    return nullptr;
}

template <class Visit> void DeviceSnapshot::for_each(const lysc_node *schema, Visit &&visit) const {
    std::vector<const lysc_node *> way;
    for (const lysc_node *node = schema; node != nullptr; node = node->parent)
        way.insert(way.begin(), node);
    if (const lyd_node *found = top(way.front()))
        visit_instances(found, way, 0, visit);
}

std::vector<std::string> DeviceSnapshot::names(const DeviceQuestions::Entries &entries) const {
    std::vector<std::string> found;
    for_each(entries.list, [&](const lyd_node *entry) {
        if (is_meant(entry, entries))
            found.push_back(value(entry, entries.name));
    });
    return found;
}

std::optional<bool> DeviceSnapshot::enabled_globally() const {
    std::optional<bool> enabled;
    if (questions_.enabled.has_value())
        for_each(questions_.enabled->leaf,
                 [&](const lyd_node *leaf) { enabled = questions_.enabled->on == lyd_get_value(leaf); });
    return enabled;
}

std::vector<std::string> DeviceSnapshot::configured_interfaces() const {
    if (!questions_.configured_interfaces.has_value())
        return {};
    std::vector<std::string> found = names(*questions_.configured_interfaces);
    std::sort(found.begin(), found.end());
    return found;
}

bool DeviceSnapshot::interface_exists(std::string_view display_name) const {
    if (!interfaces_) {
        interfaces_.emplace();
        for (const DeviceQuestions::Entries &entries : questions_.interfaces)
            for (std::string &name : names(entries))
                interfaces_->insert(std::move(name));
    }
    return interfaces_->contains(std::string(display_name));
}

} // namespace yfw::host
