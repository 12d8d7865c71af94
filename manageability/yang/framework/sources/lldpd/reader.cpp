#include "sources/lldpd/reader.h"

#include <cstring>
#include <ctime>
#include <functional>
#include <set>

#include <lldp-const.h>

#include "base/error.h"
#include "sources/lldpd/atom_values.h"
#include "sources/lldpd/tlv_reader.h"
#include "yang/yang_text.h"

namespace yfw::sources::lldpd {
namespace {

// Subtype 0 is reserved and means that lldpd does not know the subtype.
std::optional<uint32_t> subtype(lldpctl_atom_t *atom, lldpctl_key_t key) {
    const auto found = number<uint32_t>(atom, key);
    return found != 0U ? found : std::nullopt;
}

// The octets of an id that is a network address: a family, and the address (clause 8.5.2.2, table 8-2). The
// library believes the family and reads beyond an address that is too short for it.
bool is_cut_address(const std::string &octets) {
    constexpr size_t ipv4 = 1 + 4, ipv6 = 1 + 16;
    return octets.empty() || (octets.front() == LLDP_MGMT_ADDR_IP4 && octets.size() < ipv4) ||
           (octets.front() == LLDP_MGMT_ADDR_IP6 && octets.size() < ipv6);
}

std::vector<ManagementAddress> read_addresses(lldpctl_atom_t *chassis) {
    std::vector<ManagementAddress> addresses;
    const Atom list(lldpctl_atom_get(chassis, lldpctl_k_chassis_mgmt));
    for_each(list.get(), [&](lldpctl_atom_t *address) {
        const auto ip = text(address, lldpctl_k_mgmt_ip);
        const auto number_of_interface = number_or_zero<uint32_t>(address, lldpctl_k_mgmt_iface_index);
        if (ip.has_value()) // lldpd keeps only interface numbers that are an ifIndex, which is never 0
            addresses.push_back(
                {*ip, number_of_interface != 0 ? std::optional(number_of_interface) : std::nullopt});
    });
    return addresses;
}

Chassis read_chassis(lldpctl_atom_t *atom) {
    Chassis chassis;
    chassis.id_subtype = subtype(atom, lldpctl_k_chassis_id_subtype);
    chassis.id_octets = octets(atom, lldpctl_k_chassis_id);
    if (chassis.id_subtype != LLDP_CHASSISID_SUBTYPE_ADDR || !is_cut_address(chassis.id_octets))
        chassis.id = text(atom, lldpctl_k_chassis_id).value_or("");
    chassis.name = text(atom, lldpctl_k_chassis_name);
    chassis.description = text(atom, lldpctl_k_chassis_descr);
    const auto available = number<uint16_t>(atom, lldpctl_k_chassis_cap_available);
    if (available.value_or(0) != 0)
        chassis.capabilities = {*available, number_or_zero<uint16_t>(atom, lldpctl_k_chassis_cap_enabled)};
    chassis.addresses = read_addresses(atom);
    return chassis;
}

// The library reads a text that was set to empty like one that was not set. The announcement tells them apart:
// instead of a text that was not set, the daemon announces one of its own, which is never empty.
std::optional<std::string> configured_text(const Atom &configuration, lldpctl_key_t key, const Atom &chassis,
                                           lldpctl_key_t announced) {
    const auto set = text(configuration.get(), key);
    return set.has_value() || text(chassis.get(), announced).has_value() ? set : std::optional<std::string>("");
}

Atom local_chassis(const Connection &connection) {
    return connection.expect(lldpctl_get_local_chassis(connection.handle()), "reading the chassis");
}

DaemonSettings settings_of(const Connection &connection, const Atom &chassis) {
    const Atom atom =
        connection.expect(lldpctl_get_configuration(connection.handle()), "reading the configuration");
    DaemonSettings settings;
    settings.paused = number_or_zero<int>(atom.get(), lldpctl_k_config_paused) != 0;
    settings.receives_only = number_or_zero<int>(atom.get(), lldpctl_k_config_receiveonly) != 0;
    settings.transmit_interval =
        number<uint32_t>(atom.get(), lldpctl_k_config_tx_interval).value_or(settings.transmit_interval);
    settings.hold_multiplier =
        number<uint32_t>(atom.get(), lldpctl_k_config_tx_hold).value_or(settings.hold_multiplier);
    settings.system_name = configured_text(atom, lldpctl_k_config_hostname, chassis, lldpctl_k_chassis_name);
    settings.system_description =
        configured_text(atom, lldpctl_k_config_description, chassis, lldpctl_k_chassis_descr);
    settings.chassis_id = configured_text(atom, lldpctl_k_config_cid_string, chassis, lldpctl_k_chassis_id);
    settings.advertises_capabilities =
        number<int>(atom.get(), lldpctl_k_config_chassis_cap_advertise).value_or(1) != 0;
    settings.advertises_addresses =
        number<int>(atom.get(), lldpctl_k_config_chassis_mgmt_advertise).value_or(1) != 0;
    return settings;
}

Port read_port(const std::string &name, lldpctl_atom_t *atom) {
    Port port;
    port.name = name;
    port.status = read_status(atom);
    port.counters = {number<uint64_t>(atom, lldpctl_k_tx_cnt), number<uint64_t>(atom, lldpctl_k_rx_cnt),
                     number<uint64_t>(atom, lldpctl_k_rx_discarded_cnt),
                     number<uint64_t>(atom, lldpctl_k_rx_unrecognized_cnt),
                     number<uint64_t>(atom, lldpctl_k_ageout_cnt)};
    const Atom list(lldpctl_atom_get(atom, lldpctl_k_port_neighbors));
    for_each(list.get(), [&](lldpctl_atom_t *remote) {
        if (speaks_lldp(remote))
            port.neighbors.push_back(read_neighbor(remote));
    });
    return port;
}

using VisitPort = std::function<void(const std::string &, lldpctl_atom_t *)>;

// Calls `visit` with the name and the atom of each interface, until it returns false.
void for_each_interface(const Connection &connection,
                        const std::function<bool(const std::string &, lldpctl_atom_t *)> &visit) {
    const Atom interfaces =
        connection.expect(lldpctl_get_interfaces(connection.handle()), "reading the interfaces");
    bool goes_on = true;
    for_each(interfaces.get(), [&](lldpctl_atom_t *interface) {
        const std::string name = text(interface, lldpctl_k_interface_name).value_or("");
        goes_on = goes_on && (!yang::is_yang_text(name) || visit(name, interface));
    });
}

bool has_interface(const Connection &connection, const std::string &name) {
    bool is_there = false;
    for_each_interface(connection, [&](const std::string &found, lldpctl_atom_t *) {
        is_there = found == name;
        return !is_there;
    });
    return is_there;
}

// Visits the ports that are not in `seen`, and adds them to it. When asked for an interface that has vanished
// since it was listed, lldpd sends what its library cannot read; the rest needs another connection.
void visit_ports(const Connection &connection, std::set<std::string> &seen, const VisitPort &visit) {
    std::string lost;
    for_each_interface(connection, [&](const std::string &name, lldpctl_atom_t *interface) {
        if (!seen.insert(name).second)
            return true;
        const Atom port(lldpctl_get_port(interface));
        if (port != nullptr)
            visit(name, port.get());
        else if (lldpctl_last_error(connection.handle()) == LLDPCTL_ERR_SERIALIZATION)
            lost = name;
        else if (lldpctl_last_error(connection.handle()) != LLDPCTL_ERR_NOT_EXIST)
            connection.fail("reading the interface " + name);
        return lost.empty();
    });
    if (lost.empty())
        return;
    const Connection another(connection.socket(), connection.bound());
    if (has_interface(another, lost))
        connection.fail("reading the interface " + lost);
    visit_ports(another, seen, visit);
}

// The library's words for a port's status.
struct StatusWord {
    const char *word;
    PortStatus status;
};
constexpr StatusWord status_words[] = {{"RX and TX", {true, true}},
                                       {"TX only", {true, false}},
                                       {"RX only", {false, true}},
                                       {"disabled", {false, false}}};

} // namespace

bool speaks_lldp(lldpctl_atom_t *remote_port) {
    return text(remote_port, lldpctl_k_port_protocol) == "LLDP";
}

PortStatus read_status(lldpctl_atom_t *port) {
    const std::string word = text(port, lldpctl_k_port_status).value_or("");
    for (const StatusWord &known : status_words)
        if (word == known.word)
            return known.status;
    return {};
}

long status_value(const Connection &connection, const PortStatus &status) {
    for (const StatusWord &known : status_words) {
        if (known.status != status)
            continue;
        for (lldpctl_map_t *value = lldpctl_key_get_map(lldpctl_k_port_status);
             value != nullptr && value->string != nullptr; value++)
            if (std::strcmp(value->string, known.word) == 0)
                return value->value;
    }
    throw Error(ErrorTag::operation_failed, connection.place(),
                "this lldpd's library cannot set the status of a port");
}

Neighbor read_neighbor(lldpctl_atom_t *remote_port) {
    Neighbor neighbor;
    const Atom chassis(lldpctl_atom_get(remote_port, lldpctl_k_port_chassis));
    if (chassis != nullptr)
        neighbor.chassis = read_chassis(chassis.get());
    neighbor.port_id_subtype = subtype(remote_port, lldpctl_k_port_id_subtype);
    neighbor.port_id_octets = octets(remote_port, lldpctl_k_port_id);
    if (neighbor.port_id_subtype != LLDP_PORTID_SUBTYPE_ADDR || !is_cut_address(neighbor.port_id_octets))
        neighbor.port_id = text(remote_port, lldpctl_k_port_id).value_or("");
    neighbor.port_description = text(remote_port, lldpctl_k_port_descr);
    neighbor.time_to_live = number<uint32_t>(remote_port, lldpctl_k_port_ttl);
    if (neighbor.time_to_live == 0U) // not reported with the port
        neighbor.time_to_live.reset();
    neighbor.changed_at = number<uint64_t>(remote_port, lldpctl_k_port_age);
    const auto now = static_cast<uint64_t>(std::time(nullptr));
    if (neighbor.changed_at.has_value())
        neighbor.last_update = now > *neighbor.changed_at ? now - *neighbor.changed_at : 0;
    neighbor.age = neighbor.last_update;
    neighbor.tlvs = read_tlvs(remote_port, chassis.get());
    return neighbor;
}

void for_each_port(const Connection &connection, const VisitPort &visit) {
    std::set<std::string> seen;
    visit_ports(connection, seen, visit);
}

DaemonSettings read_settings(const Connection &connection) {
    return settings_of(connection, local_chassis(connection));
}

State read_state(const Connection &connection) {
    State state;
    const Atom chassis = local_chassis(connection);
    state.settings = settings_of(connection, chassis);
    state.local = read_chassis(chassis.get());
    for_each_port(connection, [&](const std::string &name, lldpctl_atom_t *port) {
        state.ports.push_back(read_port(name, port));
    });
    return state;
}

} // namespace yfw::sources::lldpd
