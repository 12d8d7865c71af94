// The statuses that the host's own operations return.
#ifndef YFW_HOST_HOST_STATUS_H
#define YFW_HOST_HOST_STATUS_H

#include "ymap_status.h"

namespace yfw::host {

inline constexpr terrno status_bad_argument = 0x8091a001u;
inline constexpr terrno status_unknown_path = 0x8091a002u;
inline constexpr terrno status_not_found = 0x8091a003u;
inline constexpr terrno status_leafref_mismatch = 0x8091a004u;
inline constexpr terrno status_empty_stack = 0x8091a005u;

} // namespace yfw::host

#endif
