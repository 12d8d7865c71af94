// The settings that a native configuration asks of an lldpd.
#ifndef YFW_SOURCES_LLDPD_WANTED_SETTINGS_H
#define YFW_SOURCES_LLDPD_WANTED_SETTINGS_H

#include <map>
#include <optional>
#include <string>

#include "sources/lldpd/lldpd_state.h"
#include "yang/data_tree.h"

namespace yfw::sources::lldpd {

// The transmit interval when none is configured, in seconds: lldpd's default, and what IEEE Std 802.1AB clause
// 9.2.5.7 recommends.
inline constexpr uint32_t usual_interval = 30;

struct WantedSettings {
    bool runs = false;                         // at least one interface speaks LLDP
    bool everywhere = false;                   // interfaces without their own settings do too
    std::optional<uint32_t> transmit_interval; // seconds; nothing: not configured
    std::optional<std::string> system_name;
    std::optional<std::string> system_description;
    std::optional<std::string> chassis_id;
    bool advertises_capabilities = true;
    bool advertises_addresses = true;
    std::map<std::string, PortStatus, std::less<>> ports; // those with LLDP settings

    PortStatus of_port(const std::string &name) const;
};

// Throws Error with the native node for what lldpd cannot do: suppress the system name, the system description
// or the port description, send a chassis id of a type other than "local", or change its hold or
// reinitialization time.
WantedSettings wanted_settings(const lyd_node *configuration);

// The same without the errors: what lldpd cannot do is left out.
WantedSettings supported_settings(const lyd_node *configuration);

} // namespace yfw::sources::lldpd

#endif
