#include <cstdint>
#include <ctime>

#include "yfw_map.h"

extern "C" uint64_t fts_get_stamp_fast(void) {
    constexpr std::uint64_t nanoseconds_per_second = 1'000'000'000;
    // CLOCK_BOOTTIME, not CLOCK_MONOTONIC: time spent suspended counts as uptime.
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * nanoseconds_per_second +
           static_cast<std::uint64_t>(now.tv_nsec);
}
