// The texts by which neighbors are known.
#ifndef YFW_SOURCES_LLDPD_NEIGHBOR_IDS_H
#define YFW_SOURCES_LLDPD_NEIGHBOR_IDS_H

#include <optional>
#include <string>
#include <vector>

#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

// The native models' identifiers for the neighbors of one port, in the order given.
//
// A device id is the neighbor's system name, or "[DISABLED]" when it announced none or one that is not valid
// text. Clients know a neighbor by its device id and its port id, joined by "#" and cut to 255 octets. Where
// that would not be its alone, or could not be taken apart again, the device id ends with "~" and sixteen
// digits made of what identifies the neighbor, chassis id and port id (IEEE Std 802.1AB clause 9.2.7.7.1). It
// is then the same in whatever order the neighbors are listed, and stays when others come and go, except when
// the first neighbor with the same ids comes or the last one goes.
std::vector<std::string> device_ids(const std::vector<const Neighbor *> &neighbors);

// The device id of a neighbor that is alone on its port.
std::string device_id(const Neighbor &neighbor);

// What identifies a neighbor on its port (clause 9.2.7.7.1), as a key.
std::string msap(const Neighbor &neighbor);

// Text of a neighbor as a YANG string; nothing when it is empty, or holds what no YANG string can.
std::optional<std::string> clean(const std::optional<std::string> &text);

// A chassis or port id as a YANG string: the text, or the octets in hexadecimal, separated by colons, when the
// text is not all of them or no YANG string can hold it. Nothing when both are empty.
std::optional<std::string> id_text(const std::string &text, const std::string &octets);

} // namespace yfw::sources::lldpd

#endif
