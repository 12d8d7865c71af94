// Processes are told apart even when their numbers are reused.
#include "base/process_identity.h"

#include <chrono>
#include <csignal>
#include <thread>

#include <gtest/gtest.h>

#include "base/process.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

constexpr std::chrono::seconds patience{30};

const Program sleep{.arguments = {"/bin/sleep", "600"}};

TEST(AnIdentity, is_that_of_a_running_process) {
    const Process sleeper(sleep);
    const auto identity = identity_of(sleeper.number());
    ASSERT_TRUE(identity);
    EXPECT_TRUE(is_running(*identity));
}

TEST(AnIdentity, with_another_start_is_not_that_of_the_process_with_its_number) {
    const Process sleeper(sleep);
    ProcessIdentity other = *identity_of(sleeper.number());
    ++other.start;
    EXPECT_FALSE(is_running(other));
}

TEST(AnIdentity, protects_a_later_process_from_the_signals_to_the_former) {
    Process sleeper(sleep);
    ProcessIdentity former = *identity_of(sleeper.number());
    --former.start;
    send_signal(former, SIGKILL);
    // Had SIGKILL been sent, it would have ended the process before this signal could.
    send_signal(*identity_of(sleeper.number()), SIGTERM);
    EXPECT_EQ(sleeper.wait(patience), 128 + SIGTERM);
}

TEST(AnIdentity, ends_with_the_process_also_while_its_status_waits_to_be_read) {
    const Process sleeper(sleep);
    const ProcessIdentity identity = *identity_of(sleeper.number());
    send_signal(identity, SIGKILL);
    EXPECT_TRUE(yfw::test::eventually([&] { return !is_running(identity); }, patience));
}

// The process may exit between any two steps of the lookup.
TEST(AnIdentity, of_a_process_that_goes_meanwhile_is_none_and_no_error) {
    for (int i = 0; i < 300; i++) {
        Process process = Process::copy([] { return 0; });
        const pid_t number = process.number();
        std::thread reaper([&process] { process.wait(patience); });
        for (int k = 0; k < 50; k++)
            EXPECT_NO_THROW(identity_of(number));
        reaper.join();
        EXPECT_EQ(identity_of(number), std::nullopt);
    }
}

} // namespace
} // namespace yfw::test
