// Applies the wanted settings to an lldpd.
#ifndef YFW_SOURCES_LLDPD_SETTINGS_WRITER_H
#define YFW_SOURCES_LLDPD_SETTINGS_WRITER_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "sources/lldpd/connection.h"
#include "sources/lldpd/wanted_settings.h"
#include "sources/native_target.h"

namespace yfw::sources::lldpd {

// The status of each of lldpd's ports, by name.
using PortStatuses = std::map<std::string, PortStatus, std::less<>>;
PortStatuses read_port_statuses(const Connection &connection);

// Writes settings where the daemon runs others. apply() and restore() undo what they have written when a write
// fails. Every function throws Error.
class SettingsWriter {
public:
    explicit SettingsWriter(const Connection &connection) : connection_(connection) {}

    // Writes what differs between the two, and what that needs.
    void apply(const WantedSettings &before, const WantedSettings &after) { write(&before, after); }

    // Writes everything.
    void restore(const WantedSettings &wanted) { write(nullptr, wanted); }

    // What restore() would write; writes nothing.
    std::vector<PendingSetting> pending(const WantedSettings &wanted);

private:
    struct Setting;
    static const Setting pause, interval, system_name, system_description, chassis_id, capabilities, addresses;

    // `before`: NULL for everything.
    void write(const WantedSettings *before, const WantedSettings &wanted);
    void change_all(const WantedSettings *before, const WantedSettings &wanted);
    void change_ports(const WantedSettings *before, const WantedSettings &wanted);
    void change(const Setting &setting, long now, long wanted);
    void change(const Setting &setting, const std::optional<std::string> &now,
                const std::optional<std::string> &wanted);
    void note_port(const std::string &name, const PortStatus &now, const PortStatus &wanted);
    Atom configuration() const;
    void check(const lldpctl_atom_t *same, const std::string &doing) const;
    void set(lldpctl_key_t key, const char *what, long value);
    void set(lldpctl_key_t key, const char *what, const std::optional<std::string> &value);
    void set_status(const std::string &name, lldpctl_atom_t *port, const PortStatus &status);
    void restore_status(const std::string &name, const PortStatus &status);
    void transmit_now();
    void take_back() noexcept;

    const Connection &connection_;
    std::vector<std::function<void()>> undo_;        // run in reverse order
    std::vector<PendingSetting> *pending_ = nullptr; // takes what would be written; NULL: it is written
};

} // namespace yfw::sources::lldpd

#endif
