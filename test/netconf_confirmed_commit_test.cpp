// Commits that are rolled back unless they are confirmed.
#include <csignal>
#include <cstdlib>
#include <optional>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/child_process.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

using std::chrono::seconds;
const std::string original = "r1.example.net";

std::string commit(const std::string &content) {
    return "<commit>" + content + "</commit>";
}

std::string confirmed(int timeout, const std::string &more = "") {
    return commit("<confirmed/><confirm-timeout>" + std::to_string(timeout) + "</confirm-timeout>" + more);
}

constexpr int long_time = 300;
const std::string persist = "<persist>token</persist>";
const std::string persist_id = "<persist-id>token</persist-id>";

class AConfirmedCommit : public NetconfProcessTest {
protected:
    // Commits a new name with a confirmed commit.
    void commit_name(const std::string &name, const std::string &operation) {
        expect_ok(client->rpc(edit_config("candidate", name_edit(name))));
        expect_ok(client->rpc(operation));
        ASSERT_EQ(this->name(other), name);
    }
    bool is_taken_back(seconds limit = seconds(10)) {
        return eventually([this] { return name(other) == original; }, limit);
    }
    // Waits longer than the timeout of these tests, which is one second.
    void expect_kept(const std::string &kept) {
        EXPECT_FALSE(eventually([&] { return name(other) != kept; }, std::chrono::milliseconds(1500)));
    }

    std::optional<NetconfClient> client{std::in_place, server().socket()};
    NetconfClient other{server().socket()};
};

TEST_F(AConfirmedCommit, IsTakenBackAfterItsTimeout) {
    commit_name("new", confirmed(1));
    EXPECT_TRUE(is_taken_back());
    EXPECT_EQ(name(*client), original);
}

TEST_F(AConfirmedCommit, IsKeptWhenItIsConfirmed) {
    commit_name("new", confirmed(1));
    expect_ok(client->rpc("<commit/>"));
    expect_kept("new");
    expect_ok(client->rpc("<close-session/>"));
    expect_kept("new");
}

TEST_F(AConfirmedCommit, IsConfirmedTogetherWithWhatWasEditedSince) {
    commit_name("new", confirmed(long_time));
    expect_ok(client->rpc(edit_config("candidate", name_edit("newer"))));
    expect_ok(client->rpc("<commit/>"));
    EXPECT_EQ(name(other), "newer");
    EXPECT_NE(error_tag(client->rpc("<cancel-commit/>")), "");
}

TEST_F(AConfirmedCommit, IsGivenMoreTimeByAnotherOne) {
    commit_name("new", confirmed(2));
    commit_name("newer", confirmed(long_time));
    expect_kept("newer");
}

TEST_F(AConfirmedCommit, IsTakenBackToBeforeTheFirstOfSeveral) {
    commit_name("new", confirmed(long_time));
    commit_name("newer", confirmed(1));
    EXPECT_TRUE(is_taken_back());
}

TEST_F(AConfirmedCommit, IsTakenBackWhenItIsCancelled) {
    commit_name("new", confirmed(long_time));
    expect_ok(client->rpc("<cancel-commit/>"));
    EXPECT_EQ(name(other), original);
    EXPECT_NE(error_tag(client->rpc("<cancel-commit/>")), "");
}

TEST_F(AConfirmedCommit, IsTakenBackWhenItsSessionCloses) {
    commit_name("new", confirmed(long_time));
    expect_ok(client->rpc("<close-session/>"));
    EXPECT_TRUE(is_taken_back());
}

TEST_F(AConfirmedCommit, IsTakenBackWhenItsSessionVanishes) {
    commit_name("new", confirmed(long_time));
    client.reset();
    EXPECT_TRUE(is_taken_back());
}

// The session may be gone before its commit is made.
TEST_F(AConfirmedCommit, IsTakenBackWhenItsSessionEndsWithIt) {
    for (const std::string &more : {rpc_message("<close-session/>", "3"), std::string()}) {
        for (int i = 0; i < 25; i++) {
            std::optional<NetconfClient> hasty(std::in_place, server().socket(),
                                               std::vector<std::string>{base_1_0});
            expect_ok(hasty->rpc(edit_config("candidate", name_edit("new"))));
            const std::string last = more.empty() ? "" : with_end_of_message(more);
            hasty->connection().send(with_end_of_message(rpc_message(confirmed(long_time), "2")) + last);
            hasty.reset();
            ASSERT_TRUE(is_taken_back()) << i << " " << more;
            ASSERT_TRUE(eventually([&] { // nothing is left of it
                return error_tag(client->rpc(lock("running"))) == "" &&
                       error_tag(client->rpc(unlock("running"))) == "";
            })) << i
                << " " << more;
        }
    }
}

TEST_F(AConfirmedCommit, LeavesNoLockBehindWhenItsSessionEndsWithIt) {
    for (int i = 0; i < 25; i++) {
        std::optional<NetconfClient> hasty(std::in_place, server().socket(),
                                           std::vector<std::string>{base_1_0});
        hasty->connection().send(with_end_of_message(rpc_message(lock("running"))));
        hasty.reset();
        ASSERT_TRUE(eventually([&] { return error_tag(client->rpc(lock("running"))) == ""; })) << i;
        expect_ok(client->rpc(unlock("running")));
    }
}

// There is nothing to go back to.
TEST_F(AConfirmedCommit, EndsLikeAnyOtherWhenItIsEmptyAndTheFirst) {
    expect_ok(client->rpc(confirmed(1)));
    EXPECT_TRUE(eventually([&] { return error_tag(other.rpc("<commit/>")) == ""; }));
    expect_ok(client->rpc(confirmed(long_time)));
    expect_ok(client->rpc("<cancel-commit/>"));
    EXPECT_EQ(name(other), original);
}

TEST_F(AConfirmedCommit, IsTakenBackWhenItsSessionIsKilled) {
    commit_name("new", confirmed(long_time));
    expect_ok(other.rpc("<kill-session><session-id>" + client->session_id() + "</session-id></kill-session>"));
    EXPECT_TRUE(is_taken_back());
}

TEST_F(AConfirmedCommit, IsNeitherConfirmedNorCancelledByAnotherSession) {
    commit_name("new", confirmed(long_time));
    EXPECT_NE(error_tag(other.rpc("<commit/>")), "");
    EXPECT_NE(error_tag(other.rpc("<cancel-commit/>")), "");
    EXPECT_EQ(name(other), "new");
    expect_ok(client->rpc("<cancel-commit/>"));
    EXPECT_EQ(name(other), original);
}

TEST_F(AConfirmedCommit, OutlivesItsSessionWhenItPersists) {
    commit_name("new", confirmed(long_time, persist));
    client.reset();
    expect_kept("new");
    expect_ok(other.rpc(commit(persist_id)));
    EXPECT_NE(error_tag(other.rpc("<cancel-commit>" + persist_id + "</cancel-commit>")), "");
    EXPECT_EQ(name(other), "new");
}

TEST_F(AConfirmedCommit, IsTakenBackAfterItsTimeoutWhenItPersistsToo) {
    commit_name("new", confirmed(2, persist));
    client.reset();
    EXPECT_TRUE(is_taken_back());
}

TEST_F(AConfirmedCommit, IsConfirmedByTheRightTokenAlone) {
    commit_name("new", confirmed(long_time, persist));
    const std::string wrong = "<persist-id>other</persist-id>";
    for (NetconfClient *each : {&*client, &other}) {
        EXPECT_EQ(error_tag(each->rpc(commit(wrong))), "invalid-value");
        EXPECT_EQ(error_tag(each->rpc("<cancel-commit>" + wrong + "</cancel-commit>")), "invalid-value");
        EXPECT_NE(error_tag(each->rpc("<commit/>")), "");
        EXPECT_NE(error_tag(each->rpc("<cancel-commit/>")), "");
    }
    expect_ok(other.rpc("<cancel-commit>" + persist_id + "</cancel-commit>"));
    EXPECT_EQ(name(other), original);
}

// Cancelling would change a datastore that another session has locked.
TEST_F(AConfirmedCommit, IsNotCancelledByAnotherSessionWhileRunningIsLocked) {
    commit_name("new", confirmed(long_time, persist));
    const std::string cancel = "<cancel-commit>" + persist_id + "</cancel-commit>";
    expect_ok(client->rpc(lock("running")));
    expect_error(other.rpc(cancel), "protocol", "in-use");
    EXPECT_EQ(name(other), "new");
    expect_ok(client->rpc(unlock("running")));
    expect_ok(other.rpc(cancel));
    EXPECT_EQ(name(other), original);
}

TEST_F(AConfirmedCommit, IsGivenMoreTimeFromAnotherSessionByItsToken) {
    commit_name("new", confirmed(2, persist));
    client.reset();
    expect_ok(other.rpc(confirmed(long_time, persist + persist_id)));
    expect_kept("new");
    expect_ok(other.rpc("<cancel-commit>" + persist_id + "</cancel-commit>"));
    EXPECT_EQ(name(other), original);
}

// --- the server ends while a commit is unconfirmed ---

struct EndCase {
    const char *name;
    int signal;
    std::string more;
};

// AddressSanitizer would report the signal at length before it ends the process.
struct ThatDiesOfSignals {
    ThatDiesOfSignals() {
        const char *before = std::getenv("ASAN_OPTIONS");
        setenv("ASAN_OPTIONS", (std::string(before != nullptr ? before : "") + ":handle_segv=0").c_str(), 1);
    }
};

class AConfirmedCommitOfADaemonThatEnds : private ThatDiesOfSignals,
                                          public AConfirmedCommit,
                                          public testing::WithParamInterface<EndCase> {};

TEST_P(AConfirmedCommitOfADaemonThatEnds, IsTakenBackWhenItStartsAgain) {
    commit_name("new", confirmed(long_time, GetParam().more));
    server().process().signal(GetParam().signal);
    ASSERT_TRUE(server().process().wait().has_value());
    server().start();
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), original);
    EXPECT_EQ(name(next, "candidate"), original);
    EXPECT_NE(error_tag(next.rpc("<cancel-commit>" + persist_id + "</cancel-commit>")), "");
    expect_ok(next.rpc(edit_config("candidate", name_edit("later"))));
    expect_ok(next.rpc("<commit/>"));
    server().kill_and_restart();
    NetconfClient last(server().socket());
    EXPECT_EQ(name(last), "later");
}

INSTANTIATE_TEST_SUITE_P(By, AConfirmedCommitOfADaemonThatEnds,
                         testing::Values(EndCase{"Kill", SIGKILL, ""}, EndCase{"Crash", SIGSEGV, ""},
                                         EndCase{"CrashThoughItPersists", SIGSEGV, persist},
                                         EndCase{"Abort", SIGABRT, ""},
                                         EndCase{"KillThoughItPersists", SIGKILL, persist},
                                         EndCase{"Termination", SIGTERM, ""},
                                         EndCase{"TerminationThoughItPersists", SIGTERM, persist}),
                         [](const auto &test) { return test.param.name; });

// Nobody is left to confirm it.
TEST_F(AConfirmedCommit, IsTakenBackByADaemonThatEnds) {
    commit_name("new", confirmed(long_time, persist));
    server().process().signal(SIGTERM);
    ASSERT_EQ(server().process().wait(), 0);
    const Outcome read =
        run_yfw({.arguments = {"get", "/lldp/config/system-name", "--device", server().device().string()}});
    EXPECT_THAT(read.output, testing::HasSubstr(original));
}

TEST_F(AConfirmedCommit, IsKeptByADaemonThatIsKilledAfterItWasConfirmed) {
    commit_name("new", confirmed(long_time));
    expect_ok(client->rpc("<commit/>"));
    server().kill_and_restart();
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), "new");
}

} // namespace
} // namespace yfw::test
