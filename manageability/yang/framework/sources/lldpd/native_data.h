// An lldpd's state as native data.
#ifndef YFW_SOURCES_LLDPD_NATIVE_DATA_H
#define YFW_SOURCES_LLDPD_NATIVE_DATA_H

#include <string>

#include "sources/lldpd/lldpd_state.h"
#include "yang/data_tree.h"

namespace yfw::sources::lldpd {

// The operational data: "Tarvo-QD-ethernet-lldp-oper", with one node. What lldpd does not know is absent.
yang::DataTree operational_data(const ly_ctx *context, const State &state);

// The operational data of one neighbor alone.
yang::DataTree neighbor_data(const ly_ctx *context, const std::string &interface, const Neighbor &neighbor);

// The configuration that the daemon runs with: "Tarvo-QD-ethernet-lldp-cfg" and "Tarvo-QD-ifmgr-cfg". An
// interval that the native timer cannot hold is left out.
yang::DataTree configuration_data(const ly_ctx *context, const State &state);

// The identifier by which the native models know a neighbor: its system name, "[DISABLED]" when it told none,
// or one that is no text.
std::string device_id(const Neighbor &neighbor);

// Seconds that the native timer takes.
inline constexpr uint32_t shortest_interval = 5;
inline constexpr uint32_t longest_interval = 65534;

} // namespace yfw::sources::lldpd

#endif
