#include "sources/lldpd/settings_writer.h"

#include "base/error.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/reader.h"

namespace yfw::sources::lldpd {
namespace {

// The interval to use when a whole configuration wants none. One outside the native timer's range was not
// configured by us and is kept.
uint32_t interval_without_a_timer(uint32_t now) {
    const bool configurable = now >= shortest_interval && now <= longest_interval;
    return configurable ? usual_interval : now;
}

} // namespace

PortStatuses read_port_statuses(const Connection &connection) {
    PortStatuses statuses;
    for_each_port(connection, [&](const std::string &name, lldpctl_atom_t *port) {
        statuses.emplace(name, read_status(port));
    });
    return statuses;
}

void SettingsWriter::write(const WantedSettings *before, const WantedSettings &wanted) {
    try {
        change_all(before, wanted);
    } catch (...) {
        take_back();
        throw;
    }
    if (wanted.runs && !undo_.empty())
        transmit_now();
    undo_.clear();
}

// Neighbors learn of the change at once, not after the next interval. A failure is ignored: this is not a
// setting.
void SettingsWriter::transmit_now() {
    const Atom settings(lldpctl_get_configuration(connection_.handle()));
    if (settings != nullptr)
        lldpctl_atom_set_int(settings.get(), lldpctl_k_config_tx_interval, -1);
}

// Pausing comes first and resuming last, so that no frame is sent with half of the settings.
void SettingsWriter::change_all(const WantedSettings *before, const WantedSettings &wanted) {
    const DaemonSettings now = read_settings(connection_);
    const auto touched = [&](auto WantedSettings::*setting) {
        return before == nullptr || before->*setting != wanted.*setting;
    };
    if (touched(&WantedSettings::runs) && !wanted.runs)
        change(lldpctl_k_config_paused, "pausing", now.paused, 1);
    if (touched(&WantedSettings::transmit_interval))
        change(lldpctl_k_config_tx_interval, "setting the transmit interval", now.transmit_interval,
               wanted.transmit_interval.value_or(
                   before == nullptr ? interval_without_a_timer(now.transmit_interval) : usual_interval));
    if (touched(&WantedSettings::system_name))
        change(lldpctl_k_config_hostname, "setting the system name", now.system_name, wanted.system_name);
    if (touched(&WantedSettings::system_description))
        change(lldpctl_k_config_description, "setting the system description", now.system_description,
               wanted.system_description);
    // Nobody hears of an edit from a device with an empty chassis id, which somebody else has set.
    if (touched(&WantedSettings::chassis_id) || now.chassis_id == "")
        change(lldpctl_k_config_cid_string, "setting the chassis id", now.chassis_id, wanted.chassis_id);
    if (touched(&WantedSettings::advertises_capabilities))
        change(lldpctl_k_config_chassis_cap_advertise, "selecting the capabilities TLV",
               now.advertises_capabilities, wanted.advertises_capabilities);
    if (touched(&WantedSettings::advertises_addresses))
        change(lldpctl_k_config_chassis_mgmt_advertise, "selecting the management address TLV",
               now.advertises_addresses, wanted.advertises_addresses);
    change_ports(before, wanted);
    if (touched(&WantedSettings::runs) && wanted.runs)
        change(lldpctl_k_config_paused, "resuming", now.paused, 0);
}

// The ports of a paused daemon are left alone: it neither sends nor listens, and all of them are written before
// it resumes.
void SettingsWriter::change_ports(const WantedSettings *before, const WantedSettings &wanted) {
    if (!wanted.runs)
        return;
    const bool all = before == nullptr || !before->runs;
    if (!all && before->everywhere == wanted.everywhere && before->ports == wanted.ports)
        return;
    for_each_port(connection_, [&](const std::string &name, lldpctl_atom_t *port) {
        const PortStatus now = read_status(port);
        const PortStatus status = wanted.of_port(name);
        if (status == now || (!all && status == before->of_port(name)))
            return;
        undo_.emplace_back([this, name, now] { restore_status(name, now); });
        set_status(name, port, status);
    });
}

void SettingsWriter::change(lldpctl_key_t key, const char *what, long now, long wanted) {
    if (now == wanted)
        return;
    undo_.emplace_back([=, this] { set(key, what, now); });
    set(key, what, wanted);
}

void SettingsWriter::change(lldpctl_key_t key, const char *what, const std::optional<std::string> &now,
                            const std::optional<std::string> &wanted) {
    if (now == wanted)
        return;
    undo_.emplace_back([=, this] { set(key, what, now); });
    set(key, what, wanted);
}

// The library sends back all settings as this atom holds them, so it is read anew before each change: what
// somebody else has set meanwhile would be lost.
Atom SettingsWriter::configuration() const {
    return connection_.expect(lldpctl_get_configuration(connection_.handle()), "reading the configuration");
}

// On success the library returns the same atom that was passed in, not a new reference to it.
void SettingsWriter::check(const lldpctl_atom_t *same, const std::string &doing) const {
    if (same == nullptr)
        connection_.fail(doing);
}

void SettingsWriter::set(lldpctl_key_t key, const char *what, long value) {
    const Atom settings = configuration();
    check(lldpctl_atom_set_int(settings.get(), key, value), what);
}

void SettingsWriter::set(lldpctl_key_t key, const char *what, const std::optional<std::string> &value) {
    const Atom settings = configuration();
    check(lldpctl_atom_set_str(settings.get(), key, value.has_value() ? value->c_str() : nullptr), what);
}

void SettingsWriter::set_status(const std::string &name, lldpctl_atom_t *port, const PortStatus &status) {
    check(lldpctl_atom_set_int(port, lldpctl_k_port_status, status_value(connection_, status)),
          "setting the status of " + name);
}

void SettingsWriter::restore_status(const std::string &name, const PortStatus &status) {
    for_each_port(connection_, [&](const std::string &found, lldpctl_atom_t *port) {
        if (found == name)
            set_status(name, port, status);
    });
}

// Undoes as much as the daemon accepts; the caller reports the original failure.
void SettingsWriter::take_back() noexcept {
    while (!undo_.empty()) {
        try {
            undo_.back()();
        } catch (const Error &) {
        }
        undo_.pop_back();
    }
}

} // namespace yfw::sources::lldpd
