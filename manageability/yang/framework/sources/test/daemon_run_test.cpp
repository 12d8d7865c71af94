// What identifies a run of a daemon: the same for everybody while it runs, and another after a restart.
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/process.h"
#include "base/unix_socket.h"
#include "fake_daemon.h"
#include "support/eventually.h"
#include "support/files.h"
#include "two_routers.h"

namespace yfw::sources::test {
namespace {

using Instance = std::optional<std::string>;

Instance instance(const std::string &socket) {
    return lldpd::LldpdSource(socket).instance();
}

// As another process sees it, a user's when this one is root's.
std::string seen_by_another_process(const std::string &socket, bool as_nobody = false) {
    Pipe pipe;
    Process process = Process::copy([&] {
        constexpr unsigned nobody = 65534;
        if (as_nobody && geteuid() == 0 && setresuid(nobody, nobody, nobody) != 0)
            return 1;
        return write_all(pipe.write_end.get(), instance(socket).value_or("nothing")) ? 0 : 1;
    });
    pipe.write_end.close();
    std::string text;
    while (append_from(pipe.read_end.get(), text)) {
    }
    EXPECT_EQ(process.wait(std::chrono::minutes(1)), 0);
    return text;
}

TEST(ADaemonThatListens, IsTheSameToEveryConnectionAndProcess) {
    const ListeningSocket listening;
    const Instance first = instance(listening.path());
    ASSERT_TRUE(first.has_value());
    EXPECT_NE(*first, "");
    EXPECT_EQ(instance(listening.path()), first);
    EXPECT_EQ(seen_by_another_process(listening.path()), *first);
}

TEST(ADaemonThatListens, IsTheSameToAnotherUser) {
    const ListeningSocket listening;
    std::filesystem::permissions(listening.directory(), std::filesystem::perms(0755));
    std::filesystem::permissions(listening.path(), std::filesystem::perms(0777));
    EXPECT_EQ(seen_by_another_process(listening.path(), true), instance(listening.path()));
}

TEST(ADaemonThatListens, IsTheSameWhenItAcceptsNobody) {
    ListeningSocket listening(0);
    const Instance first = instance(listening.path());
    listening.fill();
    ASSERT_TRUE(first.has_value());
    EXPECT_EQ(instance(listening.path()), first);
}

TEST(ADaemonThatListens, IsTheSameThroughALink) {
    const ListeningSocket listening;
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path link = directory.path() / "link";
    std::filesystem::create_symlink(listening.path(), link);
    EXPECT_EQ(instance(link.string()), instance(listening.path()));
}

TEST(ADaemonThatListensAnew, IsAnotherOne) {
    const yfw::test::TemporaryDirectory directory;
    const std::string path = (directory.path() / "socket").string();
    Instance last;
    for (int run = 0; run < 20; run++) {
        const Descriptor socket = listen_on_socket(path, 8);
        ASSERT_TRUE(socket.is_open());
        const Instance now = instance(path);
        EXPECT_TRUE(now.has_value());
        EXPECT_NE(now, last);
        last = now;
        std::filesystem::remove(path);
    }
}

TEST(NoDaemon, IsNoRun) {
    const yfw::test::TemporaryDirectory directory;
    EXPECT_EQ(instance((directory.path() / "nowhere").string()), std::nullopt);
    EXPECT_EQ(instance(directory.add("file", "no socket")), std::nullopt);
    EXPECT_EQ(instance(directory.path().string()), std::nullopt);
    EXPECT_EQ(instance((directory.path() / std::string(200, 's')).string()), std::nullopt);
    EXPECT_EQ(instance(""), std::nullopt);
}

TEST(NoDaemon, IsNoRunBehindASocketThatItHasLeft) {
    const yfw::test::TemporaryDirectory directory;
    const std::string left = (directory.path() / "left").string();
    {
        const ListeningSocket listening;
        std::filesystem::rename(listening.path(), left);
    }
    EXPECT_EQ(instance(left), std::nullopt);
}

TEST(ADaemonThatMayNotBeAsked, CannotBeTold) {
    const ListeningSocket listening;
    std::filesystem::permissions(listening.directory(), std::filesystem::perms(0755));
    std::filesystem::permissions(listening.path(), std::filesystem::perms(0));
    if (geteuid() == 0) {
        EXPECT_EQ(seen_by_another_process(listening.path(), true), "nothing");
    } else {
        EXPECT_EQ(instance(listening.path()), std::nullopt);
    }
}

// --- lldpd, in a network namespace ---

class ARun : public TwoRouters {};

TEST_F(ARun, IsTheSameToEveryConnectionAndProcessUntilTheDaemonIsRestarted) {
    const std::string socket = lab().socket("a");
    const Instance first = instance(socket);
    ASSERT_TRUE(first.has_value());
    lldpcli({"configure", "system", "hostname", "changed"});
    EXPECT_EQ(instance(socket), first);
    EXPECT_EQ(seen_by_another_process(socket), *first);
    lab().kill_daemon("a");
    EXPECT_TRUE(yfw::test::eventually([&] { return instance(socket) == std::nullopt; })); // its other process ends, too
    lab().start_daemon("a");
    const Instance second = instance(socket);
    EXPECT_TRUE(second.has_value());
    EXPECT_NE(second, first);
    EXPECT_EQ(seen_by_another_process(socket), *second);
}

TEST_F(ARun, IsOneDaemonsAlone) {
    EXPECT_NE(instance(lab().socket("a")), instance(lab().socket("b")));
}

TEST_F(ARun, GoesOnWhileTheDaemonStandsStill) {
    const Instance first = instance(lab().socket("a"));
    lab().stop_daemon("a");
    EXPECT_EQ(instance(lab().socket("a")), first);
    lab().continue_daemon("a");
}

} // namespace
} // namespace yfw::sources::test
