#include <ctime>

#include <gtest/gtest.h>

#include "yfw_map.h"

namespace yfw::platform {
namespace {

std::uint64_t nanoseconds_since_boot() {
    timespec now{};
    clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U + static_cast<std::uint64_t>(now.tv_nsec);
}

TEST(UptimeStamp, LiesBetweenTwoReadingsOfTheClockSinceBoot) {
    const std::uint64_t before = nanoseconds_since_boot();
    const std::uint64_t stamp = fts_get_stamp_fast();
    const std::uint64_t after = nanoseconds_since_boot();
    EXPECT_LE(before, stamp);
    EXPECT_LE(stamp, after);
}

} // namespace
} // namespace yfw::platform
