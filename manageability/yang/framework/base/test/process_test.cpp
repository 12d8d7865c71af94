// Starting, waiting for and ending processes.
#include "base/process.h"

#include <csignal>
#include <stdexcept>

#include <fcntl.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/descriptor.h"
#include "base/process_identity.h"
#include "support/eventually.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using testing::HasSubstr;

constexpr std::chrono::seconds patience{30};

Program shell(const std::string &script) {
    return Program{.arguments = {"/bin/sh", "-c", script}};
}

// What the program prints on its standard output, and its status.
struct Said {
    std::string text;
    std::optional<int> status;
};

Said said_by(Program program) {
    Pipe output;
    program.output = output.write_end.get();
    Process process(program);
    output.write_end.close();
    Said said;
    while (append_from(output.read_end.get(), said.text)) {
    }
    said.status = process.wait(patience);
    return said;
}

TEST(AStartedProgram, tells_its_exit_status) {
    EXPECT_EQ(Process(shell("exit 3")).wait(patience), 3);
}

TEST(AStartedProgram, that_a_signal_ends_tells_the_signal) {
    EXPECT_EQ(Process(shell("kill -TERM $$")).wait(patience), 128 + SIGTERM);
}

TEST(AStartedProgram, that_still_runs_after_the_time_has_no_status) {
    Process process(Program{.arguments = {"/bin/sleep", "600"}});
    EXPECT_EQ(process.wait(std::chrono::milliseconds(20)), std::nullopt);
    EXPECT_TRUE(process.runs());
}

TEST(AStartedProgram, reads_nothing_unless_it_is_given_something) {
    EXPECT_EQ(said_by(shell("cat; echo end")).text, "end\n");
}

TEST(AStartedProgram, reads_what_it_is_given) {
    Pipe input;
    ASSERT_TRUE(write_all(input.write_end.get(), "text"));
    input.write_end.close();
    Program program{.arguments = {"/bin/cat"}};
    program.input = input.read_end.get();
    EXPECT_EQ(said_by(program).text, "text");
}

TEST(AStartedProgram, has_the_environment_it_is_given_and_no_other) {
    EXPECT_EQ(said_by(Program{.arguments = {"/usr/bin/env"}, .environment = {"A=1", "B=2"}}).text,
              "A=1\nB=2\n");
}

TEST(AStartedProgram, works_where_it_is_told_to) {
    EXPECT_EQ(said_by(Program{.arguments = {"/bin/pwd"}, .directory = "/usr"}).text, "/usr\n");
}

TEST(AStartedProgram, is_looked_up_in_the_path_when_its_name_has_no_slash) {
    EXPECT_EQ(said_by(Program{.arguments = {"echo", "found"}}).text, "found\n");
}

TEST(AStartedProgram, has_what_it_inherits_as_its_descriptor_three) {
    const TemporaryDirectory files;
    const std::string file = files.add("kept", "");
    const Descriptor kept(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
    const Program program{.arguments = {"/bin/readlink", "/proc/self/fd/3"}, .inherited = kept.get()};
    EXPECT_EQ(said_by(program).text, file + "\n");
}

TEST(AStartedProgram, has_no_descriptor_that_is_not_to_be_inherited) {
    const Descriptor other(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    EXPECT_NE(
        said_by(Program{.arguments = {"/usr/bin/test", "-e", "/proc/self/fd/" + std::to_string(other.get())}})
            .status,
        0);
}

TEST(AStartedProgram, may_have_this_ones_streams_the_other_way_round) {
    Pipe output;
    Program program = shell("echo out; echo err >&2");
    const Process writer = Process::copy([&] {
        ::dup2(output.write_end.get(), STDOUT_FILENO);
        ::dup2(::open("/dev/null", O_WRONLY), STDERR_FILENO);
        program.output = STDERR_FILENO;
        program.errors = STDOUT_FILENO;
        return Process(program).wait(patience).value_or(1);
    });
    output.write_end.close();
    std::string text;
    while (append_from(output.read_end.get(), text)) {
    }
    EXPECT_EQ(text, "err\n");
}

TEST(AStartedProgram, gets_signals_that_this_process_keeps_from_itself) {
    sigset_t terminate, before;
    sigemptyset(&terminate);
    sigaddset(&terminate, SIGTERM);
    ::pthread_sigmask(SIG_BLOCK, &terminate, &before);
    const auto usual = ::signal(SIGINT, SIG_IGN);
    Process blocked(Program{.arguments = {"/bin/sleep", "600"}}), ignored(shell("kill -INT $$; exit 3"));
    ::signal(SIGINT, usual);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    blocked.signal(SIGTERM);
    EXPECT_EQ(blocked.wait(patience), 128 + SIGTERM);
    EXPECT_EQ(ignored.wait(patience), 128 + SIGINT);
}

TEST(AStartedProgram, is_in_the_group_of_this_process_or_in_its_own) {
    Program program{.arguments = {"/bin/sleep", "600"}};
    EXPECT_EQ(::getpgid(Process(program).number()), ::getpgid(0));
    program.in_own_group = true;
    const Process apart(program);
    EXPECT_EQ(::getpgid(apart.number()), apart.number());
}

TEST(AStartedProgram, ends_with_its_parent_when_it_is_asked_to) {
    Pipe numbers;
    Process parent = Process::copy([&] {
        Process child(Program{.arguments = {"/bin/sleep", "600"}, .ends_with_parent = true});
        const pid_t number = child.release();
        write_all(numbers.write_end.get(), {reinterpret_cast<const char *>(&number), sizeof number});
        ::pause();
        return 0;
    });
    pid_t number = 0;
    ASSERT_EQ(::read(numbers.read_end.get(), &number, sizeof number), static_cast<ssize_t>(sizeof number));
    const auto child = identity_of(number);
    ASSERT_TRUE(child);
    parent.kill();
    EXPECT_TRUE(eventually([&] { return !is_running(*child); }, patience));
}

TEST(AStartedProgram, goes_with_its_object) {
    std::optional<ProcessIdentity> identity;
    {
        const Process process(Program{.arguments = {"/bin/sleep", "600"}});
        identity = identity_of(process.number());
        ASSERT_TRUE(identity);
    }
    EXPECT_FALSE(is_running(*identity));
}

TEST(AStartedProgram, outlives_its_object_when_that_lets_go_of_it) {
    Process process(Program{.arguments = {"/bin/sleep", "600"}});
    const auto identity = identity_of(process.release());
    process = Process();
    ASSERT_TRUE(identity);
    EXPECT_TRUE(is_running(*identity));
    send_signal(*identity, SIGKILL);
    EXPECT_TRUE(eventually([&] { return !is_running(*identity); }, patience));
}

TEST(AProgramThatIsEnded, may_end_as_it_likes_within_the_time) {
    Pipe output;
    Program program = shell("trap 'exit 4' TERM; echo; while :; do sleep 0.02; done");
    program.output = output.write_end.get();
    Process process(program);
    char byte = 0;
    ASSERT_EQ(::read(output.read_end.get(), &byte, 1), 1); // the trap is set
    EXPECT_EQ(process.end(patience), 4);
}

TEST(AProgramThatIsEnded, is_killed_when_it_takes_longer) {
    Pipe output;
    Program program = shell("trap '' TERM; echo; while :; do sleep 0.02; done");
    program.output = output.write_end.get();
    Process process(program);
    char byte = 0;
    ASSERT_EQ(::read(output.read_end.get(), &byte, 1), 1);
    EXPECT_EQ(process.end(std::chrono::milliseconds(50)), 128 + SIGKILL);
}

TEST(AProgramThatIsEnded, after_it_has_ended_keeps_its_status) {
    Process process(shell("exit 3"));
    ASSERT_EQ(process.wait(patience), 3);
    process.signal(SIGKILL);
    EXPECT_EQ(process.kill(), 3);
}

struct Unstartable {
    std::string name;
    Program program;
    int reason;
};

class AProgramThatCannotBeStarted : public testing::TestWithParam<Unstartable> {};

TEST_P(AProgramThatCannotBeStarted, is_named_with_the_reason) {
    try {
        const Process process(GetParam().program);
        FAIL() << "the program was started";
    } catch (const NotStarted &error) {
        EXPECT_EQ(error.reason(), GetParam().reason);
        EXPECT_THAT(error.what(), HasSubstr(GetParam().program.arguments[0] + ": cannot be started: "));
    }
}

INSTANTIATE_TEST_SUITE_P(
    Reasons, AProgramThatCannotBeStarted,
    testing::Values(Unstartable{"no_file", {.arguments = {"/nonexistent/program"}}, ENOENT},
                    Unstartable{"not_in_the_path", {.arguments = {"yfw-no-such-name"}}, ENOENT},
                    Unstartable{"no_program", {.arguments = {"/etc/passwd"}}, EACCES},
                    Unstartable{
                        "no_directory", {.arguments = {"/bin/true"}, .directory = "/nonexistent"}, ENOENT},
                    Unstartable{"no_descriptor", {.arguments = {"/bin/true"}, .input = 1 << 20}, EBADF}),
    [](const auto &tested) { return tested.param.name; });

TEST(ACopyOfThisProcess, exits_with_what_its_body_returns) {
    EXPECT_EQ(Process::copy([] { return 5; }).wait(patience), 5);
}

TEST(ACopyOfThisProcess, whose_body_throws_exits_with_one) {
    EXPECT_EQ(Process::copy([]() -> int { throw std::runtime_error("no"); }).wait(patience), 1);
}

TEST(NoProcess, does_not_run_and_has_no_status) {
    Process none;
    none.signal(SIGKILL);
    EXPECT_FALSE(none.runs());
    EXPECT_EQ(none.wait(patience), -1);
    EXPECT_EQ(none.kill(), -1);
}

} // namespace
} // namespace yfw::test
