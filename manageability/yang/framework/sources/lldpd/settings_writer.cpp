#include "sources/lldpd/settings_writer.h"

#include "base/error.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/reader.h"
#include "yang/yang_text.h"

namespace yfw::sources::lldpd {
namespace {

// The interval to use when a whole configuration wants none. One outside the native timer's range was not
// configured by us and is kept.
uint32_t interval_without_a_timer(uint32_t now) {
    const bool configurable = now >= shortest_interval && now <= longest_interval;
    return configurable ? usual_interval : now;
}

constexpr const char *cfg_module = "Tarvo-QD-ethernet-lldp-cfg";

std::string native_path(const char *leaf) {
    return std::string("/") + cfg_module + ":lldp/" + leaf;
}

// A native leaf that is present only when it is true.
std::optional<std::string> true_if(bool is_set) {
    return is_set ? std::optional<std::string>("true") : std::nullopt;
}

std::optional<std::string> truth(long flag) {
    return flag != 0 ? "true" : "false";
}

} // namespace

struct SettingsWriter::Setting {
    lldpctl_key_t key;
    const char *doing;                                    // what changing it does
    const char *leaf;                                     // below the native top node
    std::optional<std::string> (*native)(long) = nullptr; // the leaf's value, unless it is a text
};

const SettingsWriter::Setting SettingsWriter::pause{lldpctl_k_config_paused, "pausing or resuming", "enable",
                                                    [](long paused) { return truth(paused == 0); }};
const SettingsWriter::Setting SettingsWriter::interval{
    lldpctl_k_config_tx_interval, "setting the transmit interval", "timer",
    [](long seconds) { return std::optional(std::to_string(seconds)); }};
const SettingsWriter::Setting SettingsWriter::system_name{lldpctl_k_config_hostname, "setting the system name",
                                                          "system-name"};
const SettingsWriter::Setting SettingsWriter::system_description{
    lldpctl_k_config_description, "setting the system description", "system-description"};
const SettingsWriter::Setting SettingsWriter::chassis_id{lldpctl_k_config_cid_string, "setting the chassis id",
                                                         "chassis-id"};
const SettingsWriter::Setting SettingsWriter::capabilities{
    lldpctl_k_config_chassis_cap_advertise, "selecting the capabilities TLV",
    "tlv-select/system-capabilities/disable", [](long advertised) { return true_if(advertised == 0); }};
const SettingsWriter::Setting SettingsWriter::addresses{
    lldpctl_k_config_chassis_mgmt_advertise, "selecting the management address TLV",
    "tlv-select/management-address/disable", [](long advertised) { return true_if(advertised == 0); }};

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

std::vector<PendingSetting> SettingsWriter::pending(const WantedSettings &wanted) {
    std::vector<PendingSetting> found;
    pending_ = &found;
    try {
        change_all(nullptr, wanted);
    } catch (...) {
        pending_ = nullptr;
        throw;
    }
    pending_ = nullptr;
    if (!wanted.transmit_interval.has_value())
        for (PendingSetting &setting : found)
            if (setting.path == native_path(interval.leaf))
                setting.wanted.reset();
    return found;
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
        change(pause, now.paused, 1);
    if (touched(&WantedSettings::transmit_interval))
        change(interval, now.transmit_interval,
               wanted.transmit_interval.value_or(
                   before == nullptr ? interval_without_a_timer(now.transmit_interval) : usual_interval));
    if (touched(&WantedSettings::system_name))
        change(system_name, now.system_name, wanted.system_name);
    if (touched(&WantedSettings::system_description))
        change(system_description, now.system_description, wanted.system_description);
    // Nobody hears of an edit from a device with an empty chassis id, which somebody else has set.
    if (touched(&WantedSettings::chassis_id) || now.chassis_id == "")
        change(chassis_id, now.chassis_id, wanted.chassis_id);
    if (touched(&WantedSettings::advertises_capabilities))
        change(capabilities, now.advertises_capabilities, wanted.advertises_capabilities);
    if (touched(&WantedSettings::advertises_addresses))
        change(addresses, now.advertises_addresses, wanted.advertises_addresses);
    change_ports(before, wanted);
    if (touched(&WantedSettings::runs) && wanted.runs)
        change(pause, now.paused, 0);
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
        if (pending_ != nullptr)
            return note_port(name, now, status);
        undo_.emplace_back([this, name, now] { restore_status(name, now); });
        set_status(name, port, status);
    });
}

void SettingsWriter::change(const Setting &setting, long now, long wanted) {
    if (now == wanted)
        return;
    if (pending_ != nullptr) {
        pending_->push_back({native_path(setting.leaf), setting.native(wanted), setting.native(now)});
        return;
    }
    undo_.emplace_back([=, this] { set(setting.key, setting.doing, now); });
    set(setting.key, setting.doing, wanted);
}

void SettingsWriter::change(const Setting &setting, const std::optional<std::string> &now,
                            const std::optional<std::string> &wanted) {
    if (now == wanted)
        return;
    if (pending_ != nullptr) {
        pending_->push_back({native_path(setting.leaf), wanted, now});
        return;
    }
    undo_.emplace_back([=, this] { set(setting.key, setting.doing, now); });
    set(setting.key, setting.doing, wanted);
}

void SettingsWriter::note_port(const std::string &name, const PortStatus &now, const PortStatus &wanted) {
    const std::string entry =
        "/Tarvo-QD-ifmgr-cfg:interface-configurations/interface-configuration[active='act']"
        "[interface-name=" +
        yang::quoted_literal(name) + "]/" + cfg_module + ":lldp/";
    const auto note = [&](const char *leaf, bool is_wanted, bool is_now) {
        if (is_wanted != is_now)
            pending_->push_back({entry + leaf, true_if(is_wanted), true_if(is_now)});
    };
    note("transmit/disable", !wanted.transmits, !now.transmits);
    note("receive/disable", !wanted.receives, !now.receives);
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
