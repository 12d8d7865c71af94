// Applies the wanted settings to an lldpd.
#ifndef YFW_SOURCES_LLDPD_SETTINGS_WRITER_H
#define YFW_SOURCES_LLDPD_SETTINGS_WRITER_H

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "sources/lldpd/connection.h"
#include "sources/lldpd/wanted_settings.h"

namespace yfw::sources::lldpd {

// The status of each of lldpd's ports, by name.
using PortStatuses = std::map<std::string, PortStatus, std::less<>>;
PortStatuses read_port_statuses(const Connection &connection);

// Writes settings where the daemon runs others. Both functions undo what they have written when a write fails,
// and throw Error.
class SettingsWriter {
public:
    explicit SettingsWriter(const Connection &connection) : connection_(connection) {}

    // Writes what differs between the two, and what that needs.
    void apply(const WantedSettings &before, const WantedSettings &after) { write(&before, after); }

    // Writes everything.
    void restore(const WantedSettings &wanted) { write(nullptr, wanted); }

private:
    // `before`: NULL for everything.
    void write(const WantedSettings *before, const WantedSettings &wanted);
    void change_all(const WantedSettings *before, const WantedSettings &wanted);
    void change_ports(const WantedSettings *before, const WantedSettings &wanted);
    void change(lldpctl_key_t key, const char *what, long now, long wanted);
    void change(lldpctl_key_t key, const char *what, const std::optional<std::string> &now,
                const std::optional<std::string> &wanted);
    Atom configuration() const;
    void check(const lldpctl_atom_t *same, const std::string &doing) const;
    void set(lldpctl_key_t key, const char *what, long value);
    void set(lldpctl_key_t key, const char *what, const std::optional<std::string> &value);
    void set_status(const std::string &name, lldpctl_atom_t *port, const PortStatus &status);
    void restore_status(const std::string &name, const PortStatus &status);
    void transmit_now();
    void take_back() noexcept;

    const Connection &connection_;
    std::vector<std::function<void()>> undo_; // run in reverse order
};

} // namespace yfw::sources::lldpd

#endif
