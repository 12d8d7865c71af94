// Waits for a condition.
#pragma once

#include <chrono>
#include <functional>

namespace yfw::test {

/// Polls the condition; returns true as soon as it holds, and false when the time is up.
bool eventually(const std::function<bool()> &condition,
                std::chrono::milliseconds limit = std::chrono::seconds(20));

} // namespace yfw::test
