#include "host/device_snapshot.h"

#include <algorithm>
#include <string_view>

namespace yfw::host {
namespace {

constexpr std::string_view cfg_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg";
constexpr std::string_view oper_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper";
constexpr std::string_view ifmgr_ns = "urn:tarvo:yang:Tarvo-QD-ifmgr-cfg";

const lyd_node *child(const lyd_node *parent, std::string_view name) {
    for (const lyd_node *node = parent != nullptr ? lyd_child(parent) : nullptr; node != nullptr;
         node = node->next)
        if (node->schema != nullptr && name == node->schema->name)
            return node;
    return nullptr;
}

std::string value(const lyd_node *parent, std::string_view name) {
    const lyd_node *leaf = child(parent, name);
    return leaf != nullptr ? lyd_get_value(leaf) : "";
}

// Calls `visit` with every child by this name.
template <class Visit> void for_each(const lyd_node *parent, std::string_view name, Visit &&visit) {
    for (const lyd_node *node = parent != nullptr ? lyd_child(parent) : nullptr; node != nullptr;
         node = node->next)
        if (node->schema != nullptr && name == node->schema->name)
            visit(node);
}

bool is_active(const lyd_node *interface) {
    return value(interface, "active") == "act";
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

std::optional<bool> DeviceSnapshot::global_lldp_enabled() const {
    const lyd_node *enable = child(top(schemas_.native_root(cfg_ns, "lldp")), "enable");
    if (enable == nullptr)
        return std::nullopt;
    return std::string_view(lyd_get_value(enable)) == "true";
}

std::vector<std::string> DeviceSnapshot::interfaces_with_lldp_configuration() const {
    std::vector<std::string> names;
    const lyd_node *configurations = top(schemas_.native_root(ifmgr_ns, "interface-configurations"));
    for_each(configurations, "interface-configuration", [&](const lyd_node *interface) {
        const lyd_node *lldp = child(interface, "lldp");
        if (is_active(interface) && lldp != nullptr && lyd_child(lldp) != nullptr)
            names.push_back(value(interface, "interface-name"));
    });
    std::sort(names.begin(), names.end());
    return names;
}

bool DeviceSnapshot::interface_exists(std::string_view display_name) const {
    if (!interfaces_)
        collect_interfaces();
    return interfaces_->contains(std::string(display_name));
}

void DeviceSnapshot::collect_interfaces() const {
    interfaces_.emplace();
    for_each(top(schemas_.native_root(ifmgr_ns, "interface-configurations")), "interface-configuration",
             [&](const lyd_node *interface) {
                 if (is_active(interface))
                     interfaces_->insert(value(interface, "interface-name"));
             });
    for_each(child(top(schemas_.native_root(oper_ns, "lldp")), "nodes"), "node", [&](const lyd_node *node) {
        for_each(child(node, "interfaces"), "interface",
                 [&](const lyd_node *interface) { interfaces_->insert(value(interface, "interface-name")); });
    });
}

} // namespace yfw::host
