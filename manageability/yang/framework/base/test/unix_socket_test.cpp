// Sockets in the file system.
#include "base/unix_socket.h"

#include <cerrno>
#include <functional>

#include <fcntl.h>
#include <sys/socket.h>

#include <gtest/gtest.h>

#include "base/error.h"
#include "support/files.h"

namespace yfw::test {
namespace {

class ASocket : public testing::Test {
protected:
    std::filesystem::path path() const { return files_.path() / "socket"; }
    // In a directory that exists, but one byte too long.
    std::filesystem::path long_path() const {
        const size_t name = longest_socket_path + 1 - files_.path().native().size() - 1;
        return files_.path() / std::string(name, 'x');
    }

private:
    TemporaryDirectory files_;
};

TEST_F(ASocket, carries_what_is_written_to_who_listens) {
    const Descriptor listening = listen_on_socket(path(), 1);
    ASSERT_TRUE(listening.is_open());
    const Descriptor client = connect_to_socket(path());
    ASSERT_TRUE(client.is_open());
    const Descriptor server(::accept4(listening.get(), nullptr, nullptr, SOCK_CLOEXEC));
    ASSERT_TRUE(write_all(client.get(), "text"));
    std::string text;
    EXPECT_TRUE(append_from(server.get(), text));
    EXPECT_EQ(text, "text");
}

TEST_F(ASocket, that_is_listened_on_is_answered) {
    const Descriptor listening = listen_on_socket(path(), 1);
    EXPECT_TRUE(is_answered(path()));
}

TEST_F(ASocket, that_was_left_behind_is_not_answered) {
    listen_on_socket(path(), 1);
    ASSERT_TRUE(std::filesystem::is_socket(path()));
    EXPECT_FALSE(is_answered(path()));
    EXPECT_FALSE(connect_to_socket(path()).is_open());
    EXPECT_EQ(errno, ECONNREFUSED);
}

TEST_F(ASocket, that_is_not_there_cannot_be_connected_to) {
    EXPECT_FALSE(is_answered(path()));
    EXPECT_FALSE(connect_to_socket(path()).is_open());
    EXPECT_EQ(errno, ENOENT);
}

TEST_F(ASocket, takes_no_path_that_is_taken) {
    const Descriptor first = listen_on_socket(path(), 1);
    const Descriptor second = listen_on_socket(path(), 1);
    EXPECT_FALSE(second.is_open());
    EXPECT_EQ(errno, EADDRINUSE);
}

TEST_F(ASocket, is_not_inherited_by_programs_and_waits_unless_it_is_told_not_to) {
    const Descriptor listening = listen_on_socket(path(), 2, SOCK_NONBLOCK);
    const Descriptor waiting = connect_to_socket(path()), hurrying = connect_to_socket(path(), SOCK_NONBLOCK);
    for (const Descriptor *socket : {&listening, &waiting, &hurrying})
        EXPECT_EQ(::fcntl(socket->get(), F_GETFD), FD_CLOEXEC);
    EXPECT_NE(::fcntl(listening.get(), F_GETFL) & O_NONBLOCK, 0);
    EXPECT_EQ(::fcntl(waiting.get(), F_GETFL) & O_NONBLOCK, 0);
    EXPECT_NE(::fcntl(hurrying.get(), F_GETFL) & O_NONBLOCK, 0);
}

TEST_F(ASocket, may_have_the_longest_path) {
    const std::string path = long_path().string();
    EXPECT_TRUE(listen_on_socket(path.substr(0, longest_socket_path), 1).is_open());
}

TEST_F(ASocket, whose_path_is_too_long_is_named) {
    for (const std::function<void()> &use : {std::function<void()>([this] { connect_to_socket(long_path()); }),
                                             {[this] { is_answered(long_path()); }},
                                             {[this] { listen_on_socket(long_path(), 1); }}})
        try {
            use();
            ADD_FAILURE() << "the path was accepted";
        } catch (const Error &error) {
            EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
            EXPECT_EQ(error.path(), long_path().string());
            EXPECT_STREQ(error.what(), "the socket's path is too long");
        }
}

} // namespace
} // namespace yfw::test
