// Programs that are run to completion.
#include "base/run_program.h"

#include <csignal>

#include <fcntl.h>
#include <sys/stat.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
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
    const Finished finished = run({"/bin/sh", "-c", "kill -TERM $$"});
    EXPECT_EQ(finished.status, 128 + SIGTERM);
    EXPECT_EQ(finished.reason(), "signal 15");
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
        FAIL() << "the program was started";
    } catch (const std::runtime_error &error) {
        EXPECT_THAT(error.what(), HasSubstr("/nonexistent/program"));
    }
}

constexpr std::chrono::seconds patience{30};

TEST(AProgram, is_given_its_input_whole) {
    const std::string text(300000, 'g');
    EXPECT_EQ(run(Program{.arguments = {"/bin/cat"}}, text, patience).output, text);
}

TEST(AProgram, that_does_not_read_its_input_ends_all_the_same) {
    EXPECT_EQ(run(Program{.arguments = {"/bin/true"}}, std::string(300000, 'g'), patience).status, 0);
}

TEST(AProgram, writes_what_has_a_descriptor_of_its_own_there) {
    const yfw::test::TemporaryDirectory files;
    const Descriptor file(::open(files.add("output", "").c_str(), O_WRONLY | O_CLOEXEC));
    const Program program{.arguments = {"/bin/sh", "-c", "echo one; echo two >&2"}, .output = file.get()};
    const Finished finished = run(program, "", patience);
    EXPECT_EQ(yfw::test::read_file(files.path() / "output"), "one\n");
    EXPECT_EQ(finished.output, "");
    EXPECT_EQ(finished.errors, "two\n");
}

// A server may be started with SIGCHLD ignored; its children then leave no exit status.
TEST(AProgram, has_its_status_also_where_children_are_ignored) {
    ::signal(SIGCHLD, SIG_IGN);
    EXPECT_EQ(run({"/bin/sh", "-c", "exit 3"}).status, 3);
    EXPECT_EQ(::signal(SIGCHLD, SIG_DFL), SIG_IGN);
}

TEST(AProgram, that_ends_its_output_but_not_itself_is_ended) {
    const Program program{.arguments = {"/bin/sh", "-c", "exec sleep 60 >&- 2>&-"}};
    EXPECT_THROW(run(program, "", std::chrono::milliseconds(300)), TookTooLong);
}

TEST(ASearchForAProgram, finds_it_in_the_first_directory_that_has_it) {
    const yfw::test::TemporaryDirectory empty, full;
    ::chmod(full.add("tool", "#!/bin/sh\n").c_str(), 0755);
    EXPECT_EQ(find_program("tool", "tools", "a test", {empty.path(), full.path()}),
              (full.path() / "tool").string());
}

TEST(ASearchForAProgram, that_fails_says_who_needs_it_and_which_package_to_install) {
    const yfw::test::TemporaryDirectory empty;
    try {
        find_program("tool", "some-package", "the server", {empty.path()});
        FAIL() << "the program was found";
    } catch (const Error &error) {
        EXPECT_STREQ(error.what(), "the server needs the program 'tool': install the package some-package");
        EXPECT_EQ(error.status(), 0U);
    }
}

} // namespace
} // namespace yfw::test
