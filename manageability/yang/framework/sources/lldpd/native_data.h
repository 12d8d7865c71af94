// An lldpd's state as native data.
#ifndef YFW_SOURCES_LLDPD_NATIVE_DATA_H
#define YFW_SOURCES_LLDPD_NATIVE_DATA_H

#include <string>

#include "sources/lldpd/lldpd_state.h"
#include "yang/data_tree.h"

namespace yfw::sources::lldpd {

// The operational data: "Tarvo-QD-ethernet-lldp-oper" with a single node. What lldpd does not know is absent.
yang::DataTree operational_data(const ly_ctx *context, const State &state);

// The operational data of a single neighbor, whose device id depends on the others on its port.
yang::DataTree neighbor_data(const ly_ctx *context, const std::string &interface, const std::string &device,
                             const Neighbor &neighbor);

// The daemon's running configuration: "Tarvo-QD-ethernet-lldp-cfg" and "Tarvo-QD-ifmgr-cfg". Omits an interval
// outside the native timer's range, texts that a YANG string cannot hold, and, while LLDP is off, the interval,
// the selection of TLVs and the ports' settings.
yang::DataTree configuration_data(const ly_ctx *context, const State &state);

// The range of the native timer, in seconds.
inline constexpr uint32_t shortest_interval = 5;
inline constexpr uint32_t longest_interval = 65534;

} // namespace yfw::sources::lldpd

#endif
