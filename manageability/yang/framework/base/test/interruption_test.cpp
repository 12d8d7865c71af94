// Work that nobody waits for any more.
#include <thread>

#include <gtest/gtest.h>

#include "base/interruption.h"

namespace yfw::test {
namespace {

TEST(Work, GoesOnWhereNothingMayInterruptIt) {
    EXPECT_NO_THROW(end_if_interrupted());
}

TEST(InterruptibleWork, EndsAtTheNextStepOnceItIsUnwanted) {
    bool is_unwanted = false;
    const Interruptible interruptible([&] { return is_unwanted; });
    EXPECT_NO_THROW(end_if_interrupted());
    is_unwanted = true;
    EXPECT_THROW(end_if_interrupted(), Interrupted);
}

TEST(InterruptibleWork, IsThatOfOneThreadAndScope) {
    {
        const Interruptible outer([] { return true; });
        std::thread([] { EXPECT_NO_THROW(end_if_interrupted()); }).join();
        {
            const Interruptible inner([] { return false; });
            EXPECT_NO_THROW(end_if_interrupted());
        }
        EXPECT_THROW(end_if_interrupted(), Interrupted);
    }
    EXPECT_NO_THROW(end_if_interrupted());
}

} // namespace
} // namespace yfw::test
