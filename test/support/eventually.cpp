#include "support/eventually.h"

#include <thread>

namespace yfw::test {

bool eventually(const std::function<bool()> &condition, std::chrono::milliseconds limit) {
    using Clock = std::chrono::steady_clock;
    constexpr std::chrono::milliseconds pause{10};
    for (const auto deadline = Clock::now() + limit; !condition();) {
        if (Clock::now() >= deadline)
            return false;
        std::this_thread::sleep_for(pause);
    }
    return true;
}

} // namespace yfw::test
