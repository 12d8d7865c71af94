// The time of day as text.
#ifndef YFW_BASE_UTC_TIME_H
#define YFW_BASE_UTC_TIME_H

#include <string>

namespace yfw {

// Now, to the second, UTC: "2000-01-31T23:59:59Z" (RFC 3339).
std::string utc_now();

} // namespace yfw

#endif
