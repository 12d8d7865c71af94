// Descriptors, pipes and wakeups.
#include "base/descriptor.h"

#include <csignal>

#include <fcntl.h>
#include <poll.h>

#include <gtest/gtest.h>

#include "base/system_error.h"
#include "base/wakeup.h"

namespace yfw::test {
namespace {

bool is_open(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) >= 0;
}

bool is_readable(int descriptor) {
    pollfd open{descriptor, POLLIN, 0};
    return ::poll(&open, 1, 0) > 0;
}

TEST(ADescriptor, closes_with_its_object) {
    int number = -1;
    {
        const Descriptor descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
        number = descriptor.get();
        ASSERT_TRUE(is_open(number));
    }
    EXPECT_FALSE(is_open(number));
}

TEST(ADescriptor, goes_to_the_object_it_is_moved_to) {
    Descriptor first(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    const int number = first.get();
    const Descriptor second(std::move(first));
    EXPECT_EQ(second.get(), number);
    EXPECT_TRUE(is_open(number));
}

TEST(ADescriptor, that_is_released_stays_open) {
    Descriptor descriptor(::open("/dev/null", O_RDONLY | O_CLOEXEC));
    const Descriptor other(descriptor.release());
    EXPECT_FALSE(descriptor.is_open());
    descriptor.close();
    EXPECT_TRUE(is_open(other.get()));
}

TEST(APipe, gives_what_was_written_until_its_end) {
    Pipe pipe;
    ASSERT_TRUE(write_all(pipe.write_end.get(), "one"));
    ASSERT_TRUE(write_all(pipe.write_end.get(), "two"));
    pipe.write_end.close();
    std::string text;
    EXPECT_TRUE(append_from(pipe.read_end.get(), text));
    EXPECT_FALSE(append_from(pipe.read_end.get(), text));
    EXPECT_EQ(text, "onetwo");
}

TEST(APipe, is_not_inherited_by_programs) {
    const Pipe pipe;
    EXPECT_EQ(::fcntl(pipe.read_end.get(), F_GETFD), FD_CLOEXEC);
    EXPECT_EQ(::fcntl(pipe.write_end.get(), F_GETFD), FD_CLOEXEC);
}

TEST(Writing, that_fails_says_why) {
    const auto usual = ::signal(SIGPIPE, SIG_IGN);
    Pipe pipe;
    pipe.read_end.close();
    EXPECT_FALSE(write_all(pipe.write_end.get(), "text"));
    EXPECT_EQ(errno, EPIPE);
    ::signal(SIGPIPE, usual);
}

TEST(Reading, that_fails_appends_nothing) {
    std::string text = "before";
    EXPECT_FALSE(append_from(-1, text));
    EXPECT_EQ(text, "before");
}

TEST(AWakeup, is_readable_once_it_was_given_until_it_is_cleared) {
    const Wakeup wakeup;
    EXPECT_FALSE(is_readable(wakeup.descriptor()));
    wakeup.wake();
    wakeup.wake();
    EXPECT_TRUE(is_readable(wakeup.descriptor()));
    wakeup.clear();
    EXPECT_FALSE(is_readable(wakeup.descriptor()));
}

TEST(AWakeup, that_nobody_gave_can_be_cleared) {
    const Wakeup wakeup;
    wakeup.clear();
    EXPECT_FALSE(is_readable(wakeup.descriptor()));
}

TEST(ASystemError, is_told_in_the_systems_words) {
    EXPECT_EQ(system_error_text(ENOENT), "No such file or directory");
    errno = EACCES;
    EXPECT_EQ(system_error_text(), "Permission denied");
}

} // namespace
} // namespace yfw::test
