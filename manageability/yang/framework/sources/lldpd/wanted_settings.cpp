#include "sources/lldpd/wanted_settings.h"

#include <cstring>
#include <initializer_list>
#include <string_view>

#include "base/error.h"
#include "yang/tree_text.h"

namespace yfw::sources::lldpd {
namespace {

constexpr std::string_view cfg_module = "Tarvo-QD-ethernet-lldp-cfg";
constexpr std::string_view ifmgr_module = "Tarvo-QD-ifmgr-cfg";

const lyd_node *child(const lyd_node *siblings, std::string_view module, std::string_view name) {
    for (const lyd_node *node = siblings; node != nullptr; node = node->next)
        if (node->schema != nullptr && name == node->schema->name && module == node->schema->module->name)
            return node;
    return nullptr;
}

const lyd_node *below(const lyd_node *top, std::initializer_list<const char *> names) {
    for (const char *name : names)
        top = top != nullptr ? child(lyd_child(top), cfg_module, name) : nullptr;
    return top;
}

std::optional<std::string> text(const lyd_node *leaf) {
    return leaf != nullptr ? std::optional<std::string>(lyd_get_value(leaf)) : std::nullopt;
}

bool holds(const lyd_node *top, std::initializer_list<const char *> names) {
    return text(below(top, names)) == "true";
}

[[noreturn]] void refuse(const lyd_node *node, const std::string &reason) {
    throw Error(ErrorTag::operation_not_supported, yang::path_of(node), reason);
}

// A chassis id without a type is sent as local, too.
bool is_local(const lyd_node *kind) {
    return kind == nullptr || text(kind) == "local";
}

void refuse_what_lldpd_cannot(const lyd_node *lldp) {
    for (const char *tlv : {"system-name", "system-description", "port-description"})
        if (holds(lldp, {"tlv-select", tlv, "disable"}))
            refuse(below(lldp, {"tlv-select", tlv, "disable"}), "lldpd always sends this TLV");
    for (const char *time : {"holdtime", "reinit"})
        if (const lyd_node *leaf = below(lldp, {time}))
            refuse(leaf, "lldpd does not let this time be set");
    const lyd_node *kind = below(lldp, {"chassis-id-type"});
    if (!is_local(kind))
        refuse(kind, "lldpd sends a configured chassis id as \"local\" only");
    if (kind != nullptr && below(lldp, {"chassis-id"}) == nullptr)
        refuse(kind, "lldpd sends a \"local\" chassis id only when \"chassis-id\" is set");
}

// An interface's own switch takes precedence over the global one.
PortStatus port_status(const lyd_node *lldp, bool everywhere) {
    const lyd_node *enable = below(lldp, {"enable"});
    const bool speaks = enable != nullptr ? text(enable) == "true" : everywhere;
    return {speaks && !holds(lldp, {"transmit", "disable"}), speaks && !holds(lldp, {"receive", "disable"})};
}

void read_ports(const lyd_node *configuration, WantedSettings &wanted) {
    const lyd_node *all = child(configuration, ifmgr_module, "interface-configurations");
    for (const lyd_node *entry = all != nullptr ? lyd_child(all) : nullptr; entry != nullptr;
         entry = entry->next) {
        const lyd_node *lldp = below(entry, {"lldp"});
        const std::optional<std::string> name = text(child(lyd_child(entry), ifmgr_module, "interface-name"));
        const bool in_force = text(child(lyd_child(entry), ifmgr_module, "active")) == "act";
        const bool has_settings = lldp != nullptr && lyd_child(lldp) != nullptr; // others may be left empty
        if (!has_settings || !name.has_value() || !in_force)
            continue;
        const PortStatus status = port_status(lldp, wanted.everywhere);
        wanted.runs = wanted.runs || status.transmits || status.receives;
        wanted.ports.emplace(*name, status);
    }
}

} // namespace

PortStatus WantedSettings::of_port(const std::string &name) const {
    const auto port = ports.find(name);
    return port != ports.end() ? port->second : PortStatus{everywhere, everywhere};
}

WantedSettings wanted_settings(const lyd_node *configuration) {
    refuse_what_lldpd_cannot(child(configuration, cfg_module, "lldp"));
    return supported_settings(configuration);
}

WantedSettings supported_settings(const lyd_node *configuration) {
    const lyd_node *lldp = child(configuration, cfg_module, "lldp");
    WantedSettings wanted;
    wanted.everywhere = holds(lldp, {"enable"});
    wanted.runs = wanted.everywhere;
    if (const auto interval = text(below(lldp, {"timer"})))
        wanted.transmit_interval = static_cast<uint32_t>(std::stoul(*interval));
    wanted.system_name = text(below(lldp, {"system-name"}));
    wanted.system_description = text(below(lldp, {"system-description"}));
    if (is_local(below(lldp, {"chassis-id-type"})))
        wanted.chassis_id = text(below(lldp, {"chassis-id"}));
    wanted.advertises_capabilities = !holds(lldp, {"tlv-select", "system-capabilities", "disable"});
    wanted.advertises_addresses = !holds(lldp, {"tlv-select", "management-address", "disable"});
    read_ports(configuration, wanted);
    return wanted;
}

} // namespace yfw::sources::lldpd
