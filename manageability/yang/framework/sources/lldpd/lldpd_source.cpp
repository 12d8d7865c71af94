#include "sources/lldpd/lldpd_source.h"

#include "base/error.h"
#include "sources/lldpd/daemon_run.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/reader.h"
#include "sources/lldpd/settings_writer.h"
#include "sources/lldpd/wanted_settings.h"
#include "sources/lldpd/wire_limits.h"
#include "yang/forest.h"

namespace yfw::sources::lldpd {
namespace {

// Settings for a missing port would be lost silently.
void refuse_missing_ports(const Connection &connection, const WantedSettings &before,
                          const WantedSettings &after) {
    const PortStatuses there = read_port_statuses(connection);
    for (const auto &[name, status] : after.ports)
        if (!there.contains(name) && !before.ports.contains(name))
            throw Error(ErrorTag::invalid_value, "/lldp/interfaces/interface[name='" + name + "']",
                        connection.place() + " has no such interface");
}

// What the daemon has when it runs these settings, as far as it is configured.
State state_under(const WantedSettings &wanted, const PortStatuses &ports) {
    State state;
    state.settings.paused = !wanted.runs;
    state.settings.transmit_interval = wanted.transmit_interval.value_or(usual_interval);
    state.settings.system_name = wanted.system_name;
    state.settings.system_description = wanted.system_description;
    state.settings.chassis_id = wanted.chassis_id;
    state.settings.advertises_capabilities = wanted.advertises_capabilities;
    state.settings.advertises_addresses = wanted.advertises_addresses;
    for (const auto &[name, status] : ports)
        state.ports.push_back({name, wanted.of_port(name), {}, {}});
    return state;
}

void refuse_what_the_daemon_cannot(const Connection &connection, const WantedSettings &before,
                                   const WantedSettings &after) {
    refuse_missing_ports(connection, before, after);
    refuse_what_lldp_cannot_carry(before, after, read_settings(connection).hold_multiplier);
}

} // namespace

std::string LldpdSource::default_socket() {
    return lldpctl_get_default_transport();
}

yang::DataTree LldpdSource::read(const ly_ctx *context) {
    const Connection connection(socket_);
    State state = read_state(connection);
    discoveries_->date(state.ports);
    yang::DataTree data = configuration_data(context, state);
    yang::join(data, operational_data(context, state));
    return data;
}

void LldpdSource::check(const lyd_node *before, const lyd_node *after) {
    const WantedSettings wanted = wanted_settings(after);
    const Connection connection(socket_);
    refuse_what_the_daemon_cannot(connection, supported_settings(before), wanted);
}

void LldpdSource::apply(const lyd_node *before, const lyd_node *after) {
    const WantedSettings from = supported_settings(before);
    const WantedSettings wanted = wanted_settings(after);
    const Connection connection(socket_);
    refuse_what_the_daemon_cannot(connection, from, wanted);
    SettingsWriter(connection).apply(from, wanted);
}

// A configuration that an earlier version has stored may hold values that are now refused. Leaving them out
// lets the device run, and the configuration be edited.
void LldpdSource::restore(const lyd_node *configuration) {
    const WantedSettings wanted = wanted_settings(configuration);
    const Connection connection(socket_);
    const uint32_t hold_multiplier = read_settings(connection).hold_multiplier;
    SettingsWriter(connection).restore(without_what_lldp_cannot_carry(wanted, hold_multiplier));
}

std::vector<PendingSetting> LldpdSource::pending(const lyd_node *configuration) {
    const WantedSettings wanted = supported_settings(configuration);
    const Connection connection(socket_);
    return SettingsWriter(connection).pending(wanted);
}

std::optional<yang::DataTree> LldpdSource::as_read(const ly_ctx *context, const lyd_node *configuration) {
    const Connection connection(socket_);
    const WantedSettings wanted = supported_settings(configuration);
    return configuration_data(context, state_under(wanted, read_port_statuses(connection)));
}

std::optional<std::string> LldpdSource::instance() {
    return daemon_run(socket_);
}

} // namespace yfw::sources::lldpd
