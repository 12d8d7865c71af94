#include "sources/lldpd/native_data.h"

#include <cstdio>
#include <map>
#include <string_view>
#include <utility>

#include "sources/lldpd/native_writer.h"
#include "sources/lldpd/neighbor_ids.h"
#include "yang/octet_text.h"
#include "yang/yang_text.h"

namespace yfw::sources::lldpd {
namespace {

constexpr const char *oper_module = "Tarvo-QD-ethernet-lldp-oper";
constexpr const char *cfg_module = "Tarvo-QD-ethernet-lldp-cfg";
constexpr const char *ifmgr_module = "Tarvo-QD-ifmgr-cfg";

// The capability letters, lowest bit first.
constexpr std::string_view capability_letters = "OPBWRTCS";

std::optional<std::string> letters(uint16_t capabilities) {
    std::string text;
    for (size_t bit = 0; bit < capability_letters.size(); bit++)
        if ((capabilities >> bit & 1) != 0)
            text += (text.empty() ? "" : ",") + std::string(1, capability_letters[bit]);
    return text.empty() ? std::nullopt : std::optional(text);
}

// Native counters have 32 bits and wrap around to 0.
std::optional<uint64_t> wrapped(const std::optional<uint64_t> &count) {
    return count.has_value() ? std::optional<uint64_t>(static_cast<uint32_t>(*count)) : std::nullopt;
}

void write_addresses(const Inner &detail, const std::vector<ManagementAddress> &addresses) {
    if (addresses.empty())
        return;
    const Inner list = detail.inner("network-addresses");
    for (const ManagementAddress &address : addresses) {
        const Inner entry = list.inner("lldp-addr-entry");
        const bool is_ipv6 = address.text.find(':') != std::string::npos;
        const Inner inner = entry.inner("address");
        inner.leaf("address-type", std::string(is_ipv6 ? "ipv6" : "ipv4"));
        inner.leaf(is_ipv6 ? "ipv6-address" : "ipv4-address", address.text);
        entry.leaf("if-num", address.interface_number);
    }
}

void write_tlvs(const Inner &mib, const std::vector<CustomTlv> &tlvs) {
    if (tlvs.empty())
        return;
    const Inner list = mib.inner("org-def-tlv-list");
    for (const CustomTlv &tlv : tlvs) {
        const Inner entry = list.inner("lldp-org-def-tlv-entry");
        char oui[sizeof "00:00:00"];
        std::snprintf(oui, sizeof oui, "%02x:%02x:%02x", tlv.oui[0], tlv.oui[1], tlv.oui[2]);
        entry.leaf("oui", std::string(oui));
        entry.leaf("tlv-subtype", uint64_t{tlv.subtype});
        if (!tlv.octets.empty())
            entry.leaf("tlv-value", yang::octet_text(tlv.octets));
    }
}

void write_neighbor(const Inner &entry, const std::string &interface, const std::string &device,
                    const Neighbor &neighbor) {
    const Chassis &chassis = neighbor.chassis;
    entry.leaf("receiving-interface-name", interface);
    entry.leaf("device-id", device);
    entry.leaf("chassis-id", id_text(chassis.id, chassis.id_octets));
    entry.leaf("port-id-detail", id_text(neighbor.port_id, neighbor.port_id_octets));
    entry.leaf("hold-time", neighbor.time_to_live);
    const Inner detail = entry.inner("detail");
    write_addresses(detail, chassis.addresses);
    detail.leaf("port-description", clean(neighbor.port_description));
    detail.leaf("system-name", clean(chassis.name));
    detail.leaf("system-description", clean(chassis.description));
    if (chassis.capabilities.has_value()) {
        detail.leaf("system-capabilities", letters(chassis.capabilities->available));
        detail.leaf("enabled-capabilities", letters(chassis.capabilities->enabled));
    }
    detail.leaf("last-update", neighbor.last_update);
    detail.leaf("age", neighbor.age);
    const Inner mib = entry.inner("mib");
    if (chassis.capabilities.has_value())
        mib.leaf("combined-capabilities",
                 uint64_t{chassis.capabilities->available} << 16 | chassis.capabilities->enabled);
    mib.leaf("chassis-id-sub-type", chassis.id_subtype);
    mib.leaf("port-id-sub-type", neighbor.port_id_subtype);
    write_tlvs(mib, neighbor.tlvs);
}

// One entry per interface and device; a device heard several times appears several times in its entry.
void write_neighbors(const Inner &node, const std::vector<Port> &ports) {
    const Inner details = node.inner("neighbors").inner("details");
    for (const Port &port : ports) {
        std::map<std::string, Inner> entries;
        std::vector<const Neighbor *> neighbors;
        for (const Neighbor &neighbor : port.neighbors)
            neighbors.push_back(&neighbor);
        const std::vector<std::string> devices = device_ids(neighbors);
        for (size_t i = 0; i < devices.size(); i++) {
            auto entry = entries.find(devices[i]);
            if (entry == entries.end())
                entry = entries.emplace(devices[i], details.entry("detail", port.name, devices[i])).first;
            write_neighbor(entry->second.inner("lldp-neighbor"), port.name, devices[i], *neighbors[i]);
        }
    }
}

void write_counters(const Inner &to, const Counters &counters) {
    to.leaf("transmitted-packets", wrapped(counters.transmitted));
    to.leaf("received-packets", wrapped(counters.received));
    to.leaf("discarded-packets", wrapped(counters.discarded));
    to.leaf("unrecognized-tl-vs", wrapped(counters.unrecognized));
}

void add(std::optional<uint64_t> &sum, const std::optional<uint64_t> &count) {
    if (count.has_value())
        sum = sum.value_or(0) + *count;
}

Counters sum_of(const std::vector<Port> &ports) {
    Counters sum;
    for (const Port &port : ports) {
        add(sum.transmitted, port.counters.transmitted);
        add(sum.received, port.counters.received);
        add(sum.discarded, port.counters.discarded);
        add(sum.unrecognized, port.counters.unrecognized);
        add(sum.aged_out, port.counters.aged_out);
    }
    return sum;
}

void write_interfaces(const Inner &node, const std::vector<Port> &ports, const DaemonSettings &settings) {
    const Inner interfaces = node.inner("interfaces");
    for (const Port &port : ports) {
        const Inner entry = interfaces.entry("interface", port.name);
        entry.leaf("tx-enabled",
                   uint64_t{port.status.transmits && !settings.paused && !settings.receives_only});
        entry.leaf("rx-enabled", uint64_t{port.status.receives && !settings.paused});
        write_counters(entry.inner("interface-stats"), port.counters);
    }
}

// lldpd has no per-interface switch: what a port does not do is marked disabled, and the rest follows the
// global switch.
void write_switches(const Inner &lldp, const PortStatus &status) {
    if (!status.transmits && !status.receives)
        lldp.leaf("enable", std::string("false"));
    if (!status.transmits)
        lldp.inner("transmit").leaf("disable", std::string("true"));
    if (!status.receives)
        lldp.inner("receive").leaf("disable", std::string("true"));
}

void write_suppression(const Inner &lldp, const DaemonSettings &settings) {
    if (settings.advertises_capabilities && settings.advertises_addresses)
        return;
    const Inner select = lldp.inner("tlv-select");
    select.leaf("tlv-select-enter", std::string("true"));
    if (!settings.advertises_capabilities)
        select.inner("system-capabilities").leaf("disable", std::string("true"));
    if (!settings.advertises_addresses)
        select.inner("management-address").leaf("disable", std::string("true"));
}

// Somebody else may have set a text that a YANG string cannot hold, or an empty chassis id.
void write_texts(const Inner &lldp, const DaemonSettings &settings) {
    const auto configured = [](const std::optional<std::string> &text) {
        return text.has_value() && yang::is_yang_text(*text) ? text : std::nullopt;
    };
    lldp.leaf("system-name", configured(settings.system_name));
    lldp.leaf("system-description", configured(settings.system_description));
    const std::optional<std::string> chassis_id = clean(settings.chassis_id);
    lldp.leaf("chassis-id", chassis_id);
    if (chassis_id.has_value())
        lldp.leaf("chassis-id-type", std::string("local"));
}

// A mapping may take a timer or a selection of TLVs to mean that LLDP is on, so these are left out while it is
// off.
void write_global(const Inner &lldp, const DaemonSettings &settings) {
    lldp.leaf("enable", std::string(settings.paused ? "false" : "true"));
    const uint32_t interval = settings.transmit_interval;
    if (!settings.paused && interval >= shortest_interval && interval <= longest_interval)
        lldp.leaf("timer", uint64_t{interval});
    write_texts(lldp, settings);
    if (!settings.paused)
        write_suppression(lldp, settings);
}

} // namespace

yang::DataTree operational_data(const ly_ctx *context, const State &state) {
    yang::DataTree data;
    const Inner lldp(context, oper_module, "lldp", data);
    const Inner info = lldp.inner("global-lldp").inner("lldp-info");
    const std::optional<std::string> name = clean(state.local.name);
    info.leaf("chassis-id", clean(state.local.id));
    info.leaf("chassis-id-sub-type", state.local.id_subtype);
    info.leaf("system-name", name);
    info.leaf("system-description", clean(state.local.description));
    const Inner node = lldp.inner("nodes").entry("node", name.value_or("lldpd"));
    write_neighbors(node, state.ports);
    write_interfaces(node, state.ports, state.settings);
    const Counters sums = sum_of(state.ports);
    const Inner statistics = node.inner("statistics");
    write_counters(statistics, sums);
    statistics.leaf("aged-out-entries", wrapped(sums.aged_out));
    return data;
}

yang::DataTree neighbor_data(const ly_ctx *context, const std::string &interface, const std::string &device,
                             const Neighbor &neighbor) {
    yang::DataTree data;
    const Inner node = Inner(context, oper_module, "lldp", data).inner("nodes").entry("node", "lldpd");
    const Inner detail = node.inner("neighbors").inner("details").entry("detail", interface, device);
    write_neighbor(detail.inner("lldp-neighbor"), interface, device, neighbor);
    return data;
}

yang::DataTree configuration_data(const ly_ctx *context, const State &state) {
    yang::DataTree data;
    const bool paused = state.settings.paused;
    write_global(Inner(context, cfg_module, "lldp", data), state.settings);
    const Inner interfaces(context, ifmgr_module, "interface-configurations", data);
    for (const Port &port : state.ports) {
        const Inner entry = interfaces.entry("interface-configuration", "act", port.name);
        if (!paused && port.status != PortStatus{})
            write_switches(entry.inner("lldp", cfg_module), port.status);
    }
    return data;
}

} // namespace yfw::sources::lldpd
