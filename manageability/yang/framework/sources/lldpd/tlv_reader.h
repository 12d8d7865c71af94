// Reads the organizationally specific TLVs that a neighbor announced.
#ifndef YFW_SOURCES_LLDPD_TLV_READER_H
#define YFW_SOURCES_LLDPD_TLV_READER_H

#include <vector>

#include <lldpctl.h>

#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

// Those of IEEE 802.1, IEEE 802.3 and LLDP-MED that lldpd interprets, then those that it hands on as they came.
// One that lldpd does not tell from a missing one, as a port VLAN id of 0, is missing.
std::vector<CustomTlv> read_tlvs(lldpctl_atom_t *remote_port, lldpctl_atom_t *chassis);

} // namespace yfw::sources::lldpd

#endif
