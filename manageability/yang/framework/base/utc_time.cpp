#include "base/utc_time.h"

#include <ctime>

namespace yfw {

std::string utc_now() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    char text[sizeof "2000-01-31T23:59:59Z"];
    std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &parts);
    return text;
}

} // namespace yfw
