// What a native configuration wants of an lldpd.
#ifndef YFW_SOURCES_LLDPD_WANTED_SETTINGS_H
#define YFW_SOURCES_LLDPD_WANTED_SETTINGS_H

#include <map>
#include <optional>
#include <string>

#include "sources/lldpd/lldpd_state.h"
#include "yang/data_tree.h"

namespace yfw::sources::lldpd {

struct WantedSettings {
    bool runs = false;                         // some interface speaks LLDP
    bool everywhere = false;                   // also the interfaces without settings of their own do
    std::optional<uint32_t> transmit_interval; // seconds; nothing: not configured
    std::optional<std::string> system_name;
    std::optional<std::string> system_description;
    std::optional<std::string> chassis_id;
    bool advertises_capabilities = true;
    bool advertises_addresses = true;
    std::map<std::string, PortStatus, std::less<>> ports; // those with LLDP settings

    PortStatus of_port(const std::string &name) const;
};

// Throws Error that names the native node for what lldpd cannot do: to leave out a system name, a system
// description or a port description, to send a chassis id of another kind than "local", to keep another hold
// or reinitialization time than its own.
WantedSettings wanted_settings(const lyd_node *configuration);

} // namespace yfw::sources::lldpd

#endif
