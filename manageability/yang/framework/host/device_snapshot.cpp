#include "host/device_snapshot.h"

#include <algorithm>
#include <string_view>

namespace yfw::host {

using yang::InstanceNode;

namespace {

const InstanceNode *child(const InstanceNode *parent, const lysc_node *schema) {
    for (const InstanceNode *node = parent->child(); node != nullptr; node = node->next())
        if (node->schema() == schema)
            return node;
    return nullptr;
}

std::string value(const InstanceNode *parent, const lysc_node *schema) {
    const InstanceNode *leaf = child(parent, schema);
    return leaf != nullptr ? leaf->value() : "";
}

// Calls `visit` with every instance of the last node of `way`, whose first is `at`'s.
template <class Visit>
void visit_instances(const InstanceNode *at, const std::vector<const lysc_node *> &way, size_t depth,
                     Visit &&visit) {
    if (depth + 1 == way.size()) {
        visit(at);
        return;
    }
    for (const InstanceNode *node = at->child(); node != nullptr; node = node->next())
        if (node->schema() == way[depth + 1])
            visit_instances(node, way, depth + 1, visit);
}

bool is_meant(const InstanceNode *entry, const DeviceQuestions::Entries &entries) {
    for (const auto &[leaf, wanted] : entries.where)
        if (value(entry, leaf) != wanted)
            return false;
    if (entries.holding == nullptr)
        return true;
    const InstanceNode *holder = child(entry, entries.holding);
    return holder != nullptr && holder->child() != nullptr;
}

} // namespace

const InstanceNode *DeviceSnapshot::top(const lysc_node *schema) const {
    const bool is_apart = native_.configuration.has_value() && (schema->flags & LYS_CONFIG_W) != 0;
    return (is_apart ? *native_.configuration : native_.data)->top(schema);
}

template <class Visit> void DeviceSnapshot::for_each(const lysc_node *schema, Visit &&visit) const {
    std::vector<const lysc_node *> way;
    for (const lysc_node *node = schema; node != nullptr; node = node->parent)
        way.insert(way.begin(), node);
    if (const InstanceNode *found = top(way.front()))
        visit_instances(found, way, 0, visit);
}

std::vector<std::string> DeviceSnapshot::names(const DeviceQuestions::Entries &entries) const {
    std::vector<std::string> found;
    for_each(entries.list, [&](const InstanceNode *entry) {
        if (is_meant(entry, entries))
            found.push_back(value(entry, entries.name));
    });
    return found;
}

std::optional<bool> DeviceSnapshot::enabled_globally() const {
    std::optional<bool> enabled;
    if (questions_.enabled.has_value())
        for_each(questions_.enabled->leaf,
                 [&](const InstanceNode *leaf) { enabled = questions_.enabled->on == leaf->value(); });
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
    const std::unordered_set<std::string> &interfaces = index_->interfaces([this] {
        std::unordered_set<std::string> found;
        for (const DeviceQuestions::Entries &entries : questions_.interfaces)
            for (std::string &name : names(entries))
                found.insert(std::move(name));
        return found;
    });
    return interfaces.contains(std::string(display_name));
}

} // namespace yfw::host
