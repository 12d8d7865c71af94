#include "base/process.h"

#include <csignal>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/error.h"
#include "base/process_identity.h"
#include "support/eventually.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using testing::HasSubstr;

TEST(AProgram, gets_its_arguments_as_they_are) {
    const std::string odd = "a b; $(touch x) \"'*";
    EXPECT_EQ(run({"/bin/echo", "-n", odd}).output, odd);
}

TEST(AProgram, gives_its_status_and_the_first_line_of_what_it_complains_about) {
    const Finished finished = run({"/bin/sh", "-c", "echo one >&2; echo two >&2; exit 3"});
    EXPECT_EQ(finished.status, 3);
    EXPECT_EQ(finished.reason(), "one");
}

TEST(AProgram, that_says_nothing_has_its_status_as_the_reason) {
    EXPECT_EQ(run({"/bin/sh", "-c", "exit 4"}).reason(), "exit status 4");
}

TEST(AProgram, that_a_signal_ends_has_the_signal_in_its_status) {
    EXPECT_EQ(run({"/bin/sh", "-c", "kill -TERM $$"}).status, 128 + SIGTERM);
}

TEST(AProgram, may_print_more_than_a_pipe_holds_on_both_streams) {
    const Finished finished = run({"/bin/sh", "-c", "head -c 300000 /dev/zero >&2; head -c 400000 /dev/zero"});
    EXPECT_EQ(finished.output.size(), 400000U);
    EXPECT_EQ(finished.errors.size(), 300000U);
}

TEST(AProgram, that_takes_too_long_is_ended) {
    EXPECT_THROW(run({"/bin/sleep", "60"}, -1, std::chrono::milliseconds(50)), std::runtime_error);
}

TEST(AProgram, that_is_not_there_is_named) {
    try {
        run({"/nonexistent/program"});
        FAIL() << "was started";
    } catch (const std::runtime_error &error) {
        EXPECT_THAT(error.what(), HasSubstr("/nonexistent/program"));
    }
}

TEST(ASearchForAProgram, finds_it_in_the_first_directory_that_has_it) {
    const yfw::test::TemporaryDirectory empty, full;
    ::chmod(full.add("tool", "#!/bin/sh\n").c_str(), 0755);
    EXPECT_EQ(find_program("tool", "tools", {empty.path(), full.path()}), (full.path() / "tool").string());
}

TEST(ASearchForAProgram, that_fails_says_which_package_to_install) {
    const yfw::test::TemporaryDirectory empty;
    try {
        find_program("lldpd", "some-package", {empty.path()});
        FAIL() << "was found";
    } catch (const Error &error) {
        EXPECT_THAT(error.what(), HasSubstr("install the package some-package"));
        EXPECT_EQ(error.status(), 0U);
    }
}

// A child process that sleeps until it is ended.
class Sleeper {
public:
    Sleeper() {
        std::string name = "/bin/sleep", time = "600";
        char *arguments[] = {name.data(), time.data(), nullptr};
        posix_spawn(&number_, name.c_str(), nullptr, nullptr, arguments, environ);
    }
    ~Sleeper() {
        kill(number_, SIGKILL);
        waitpid(number_, nullptr, 0);
    }
    Sleeper(const Sleeper &) = delete;
    Sleeper &operator=(const Sleeper &) = delete;
    pid_t number() const { return number_; }

private:
    pid_t number_ = -1;
};

TEST(AnIdentity, is_that_of_a_running_process) {
    const Sleeper sleeper;
    const auto identity = identity_of(sleeper.number());
    ASSERT_TRUE(identity);
    EXPECT_TRUE(is_running(*identity));
}

TEST(AnIdentity, with_another_start_is_not_that_of_the_process_with_its_number) {
    const Sleeper sleeper;
    ProcessIdentity other = *identity_of(sleeper.number());
    ++other.start;
    EXPECT_FALSE(is_running(other));
}

TEST(AnIdentity, protects_a_later_process_from_the_signals_to_the_former) {
    const Sleeper sleeper;
    ProcessIdentity former = *identity_of(sleeper.number());
    --former.start;
    send_signal(former, SIGKILL);
    // A signal that was sent would end it before this one is delivered to it.
    send_signal(*identity_of(sleeper.number()), SIGTERM);
    int status = 0;
    ASSERT_EQ(waitpid(sleeper.number(), &status, 0), sleeper.number());
    EXPECT_EQ(WTERMSIG(status), SIGTERM);
}

TEST(AnIdentity, ends_with_the_process_also_while_its_status_waits_to_be_read) {
    const Sleeper sleeper;
    const ProcessIdentity identity = *identity_of(sleeper.number());
    send_signal(identity, SIGKILL);
    EXPECT_TRUE(yfw::test::eventually([&] { return !is_running(identity); }, std::chrono::seconds(30)));
}

// The process may exit between any two steps of the inspection.
TEST(AnIdentity, of_a_process_that_goes_meanwhile_is_none_and_no_error) {
    for (int i = 0; i < 300; i++) {
        const pid_t number = fork();
        ASSERT_GE(number, 0);
        if (number == 0)
            _exit(0);
        std::thread reaper([number] { waitpid(number, nullptr, 0); });
        for (int k = 0; k < 50; k++)
            EXPECT_NO_THROW(identity_of(number));
        reaper.join();
        EXPECT_EQ(identity_of(number), std::nullopt);
    }
}

} // namespace
} // namespace yfw::test
