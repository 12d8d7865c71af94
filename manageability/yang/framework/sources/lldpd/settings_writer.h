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

// Writes the settings that differ from the running ones. Undoes what it has written when a write fails.
class SettingsWriter {
public:
    explicit SettingsWriter(const Connection &connection);

    // `keeps_interval`: keep the daemon's own interval when none is wanted. Throws Error.
    void write(const WantedSettings &wanted, bool keeps_interval);

private:
    void change_all(const WantedSettings &wanted, bool keeps_interval);
    void change_ports(const WantedSettings &wanted);
    void change(lldpctl_key_t key, const char *what, long now, long wanted);
    void change(lldpctl_key_t key, const char *what, const std::optional<std::string> &now,
                const std::optional<std::string> &wanted);
    void check(const lldpctl_atom_t *same, const std::string &doing) const;
    void set(lldpctl_key_t key, const char *what, long value);
    void set(lldpctl_key_t key, const char *what, const std::optional<std::string> &value);
    void set_status(const std::string &name, lldpctl_atom_t *port, const PortStatus &status);
    void restore_status(const std::string &name, const PortStatus &status);
    void transmit_now();
    void take_back() noexcept;

    const Connection &connection_;
    Atom configuration_;
    std::vector<std::function<void()>> undo_; // run in reverse order
};

} // namespace yfw::sources::lldpd

#endif
