// Waiting for what takes its time.
#pragma once

#include <chrono>
#include <functional>

namespace yfw::test {

/// Asks again and again until it is true or the time is up; then false.
bool eventually(const std::function<bool()> &condition,
                std::chrono::milliseconds limit = std::chrono::seconds(20));

} // namespace yfw::test
