// What LLDP cannot carry, although an lldpd takes it.
#ifndef YFW_SOURCES_LLDPD_WIRE_LIMITS_H
#define YFW_SOURCES_LLDPD_WIRE_LIMITS_H

#include "sources/lldpd/wanted_settings.h"

namespace yfw::sources::lldpd {

// Throws Error with the native node for a change to a setting that no frame can carry: an empty chassis id, a
// text of more than 255 octets, an interval whose time to live exceeds 16 bits. `hold_multiplier`: the
// daemon's.
void refuse_what_lldp_cannot_carry(const WantedSettings &before, const WantedSettings &after,
                                   uint32_t hold_multiplier);

// The settings without those.
WantedSettings without_what_lldp_cannot_carry(WantedSettings settings, uint32_t hold_multiplier);

} // namespace yfw::sources::lldpd

#endif
