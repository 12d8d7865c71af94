// A server and the command line on one store.
#include <csignal>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_server.h"
#include "support/child_process.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

const std::string original = "r1.example.net";
const std::string confirmed_commit_of_ten_minutes = "<commit><confirmed/></commit>";

class OneStore : public NetconfProcessTest {
protected:
    Outcome run(std::vector<std::string> words) {
        const std::vector<std::string> device{"--device", server().device().string()};
        words.insert(words.begin() + 1, device.begin(), device.end());
        return run_yfw({.arguments = words});
    }
    Outcome set_name(const std::string &name) { return run({"set", "/lldp/config/system-name", name}); }
    std::string stored_name() { return run({"get", "/lldp/config/system-name"}).output; }
    void expect_refused(const Outcome &outcome, const std::string &reason) {
        EXPECT_EQ(outcome.status, 2) << outcome.output;
        EXPECT_THAT(outcome.errors,
                    AllOf(HasSubstr(reason), HasSubstr("session " + client->session_id()),
                          HasSubstr("user " + own_user()),
                          HasSubstr("process number " + std::to_string(server().process().number())),
                          HasSubstr("[in-use]")));
    }
    fs::path lock_file() {
        for (const fs::directory_entry &entry :
             fs::recursive_directory_iterator(server().directory() / "state"))
            if (entry.path().extension() == ".lock")
                return entry.path();
        return {};
    }

    std::optional<NetconfClient> client{std::in_place, server().socket()};
};

// --- locks ---

TEST_F(OneStore, IsNotEditedByTheCommandLineWhileASessionHasLockedRunning) {
    expect_ok(client->rpc(lock("running")));
    expect_refused(set_name("theirs"), "locked");
    EXPECT_EQ(name(*client), original);
    expect_ok(client->rpc(edit_config("running", name_edit("mine"))));
    expect_refused(run({"rollback", "0"}), "locked");
    expect_ok(client->rpc(unlock("running")));
    EXPECT_EQ(set_name("theirs").status, 0);
    EXPECT_EQ(name(*client), "theirs");
}

TEST_F(OneStore, IsReadByTheCommandLineWhileItIsLocked) {
    expect_ok(client->rpc(lock("running")));
    EXPECT_THAT(stored_name(), HasSubstr(original));
    EXPECT_EQ(run({"set", "/lldp/config/system-name", "theirs", "--dry-run"}).status, 0);
}

TEST_F(OneStore, IsFreeWhenTheSessionThatLockedItEnds) {
    expect_ok(client->rpc(lock("running")));
    client.reset();
    EXPECT_TRUE(eventually([&] { return set_name("theirs").status == 0; }));
}

TEST_F(OneStore, IsFreeWhenTheServerThatLockedItIsKilled) {
    expect_ok(client->rpc(lock("running")));
    server().process().signal(SIGKILL);
    ASSERT_TRUE(server().process().wait().has_value());
    const Outcome outcome = set_name("theirs");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
}

TEST_F(OneStore, IsEditedByTheCommandLineWhileTheCandidateIsLocked) {
    expect_ok(client->rpc(lock("candidate")));
    EXPECT_EQ(set_name("theirs").status, 0);
}

// --- events ---

TEST_F(OneStore, TellsSubscribersOfACommitOfTheCommandLine) {
    expect_ok(client->rpc(create_subscription()));
    ASSERT_EQ(run({"commit", "--", "set", "/lldp/config/system-name", "theirs", "delete",
                   "/lldp/config/system-description"})
                  .status,
              0);
    const Xml change = next_event(*client, config_change);
    const Xml *by = change.child("changed-by");
    ASSERT_NE(by, nullptr) << change.printed;
    EXPECT_EQ(by->text_at("username"), own_user());
    EXPECT_EQ(by->text_at("session-id"), "0"); // RFC 6470: no NETCONF session
    EXPECT_THAT(edits_of(change),
                testing::UnorderedElementsAre(Edited{"/lldp/config/system-name", "merge"},
                                              Edited{"/lldp/config/system-description", "delete"}));
}

TEST_F(OneStore, TellsSubscribersOfARollbackOfTheCommandLine) {
    ASSERT_EQ(set_name("theirs").status, 0);
    expect_ok(client->rpc(create_subscription()));
    ASSERT_EQ(run({"rollback", "0"}).status, 0);
    const Xml change = next_event(*client, config_change);
    EXPECT_EQ(change.text_at("changed-by/username"), own_user()) << change.printed;
    EXPECT_THAT(edits_of(change), IsEmpty());
}

TEST_F(OneStore, TellsEachCommitOnceAndInOrder) {
    expect_ok(client->rpc(create_subscription()));
    NetconfClient editor(server().socket());
    std::vector<std::string> by;
    for (int i = 0; i < 3; i++) {
        ASSERT_EQ(set_name("theirs" + std::to_string(i)).status, 0);
        expect_ok(editor.rpc(edit_config("running", name_edit("mine" + std::to_string(i)))));
        by.insert(by.end(), {"0", editor.session_id()});
    }
    std::vector<std::string> told;
    for (size_t i = 0; i < by.size(); i++)
        told.push_back(next_event(*client, config_change).text_at("changed-by/session-id"));
    EXPECT_EQ(told, by);
    expect_ok(client->rpc(edit_config("running", name_edit("fence"))));
    EXPECT_EQ(next_event(*client, config_change).text_at("changed-by/session-id"), client->session_id());
}

// --- unconfirmed commits ---

TEST_F(OneStore, IsNotEditedByTheCommandLineWhileACommitIsUnconfirmed) {
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc(confirmed_commit_of_ten_minutes));
    expect_refused(set_name("theirs"), "confirm");
    expect_ok(client->rpc("<cancel-commit/>"));
    EXPECT_EQ(name(*client), original);
    EXPECT_EQ(set_name("theirs").status, 0);
    EXPECT_EQ(name(*client), "theirs");
}

TEST_F(OneStore, IsFreeAfterACommitWasConfirmed) {
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc(confirmed_commit_of_ten_minutes));
    expect_ok(client->rpc("<commit/>"));
    EXPECT_EQ(set_name("theirs").status, 0);
}

TEST_F(OneStore, IsNotEditedByAnotherSessionWhileACommitIsUnconfirmed) {
    NetconfClient other(server().socket());
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc(confirmed_commit_of_ten_minutes));
    expect_error(other.rpc(edit_config("running", name_edit("theirs"))), "protocol", "in-use");
    expect_ok(client->rpc("<cancel-commit/>"));
    EXPECT_EQ(name(other), original);
}

// The commit of a server that was killed is rolled back first, whoever comes next.
TEST_F(OneStore, LosesTheUnconfirmedCommitOfAKilledServerBeforeTheCommandLineEditsIt) {
    expect_ok(client->rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client->rpc(confirmed_commit_of_ten_minutes));
    server().process().signal(SIGKILL);
    ASSERT_TRUE(server().process().wait().has_value());
    ASSERT_EQ(run({"set", "/lldp/config/hello-timer", "77"}).status, 0);
    EXPECT_THAT(stored_name(), HasSubstr(original));
    server().start();
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), original);
    EXPECT_THAT(values(next, "running", "/openconfig-lldp:lldp/config/hello-timer"), ElementsAre("77"));
}

// --- two servers ---

TEST_F(OneStore, IsServedByOneServerAlone) {
    const std::string socket = (server().directory() / "second.sock").string();
    const Outcome second = run({"serve", "--socket", socket});
    EXPECT_EQ(second.status, 2);
    EXPECT_THAT(second.errors,
                AllOf(HasSubstr("already served"),
                      HasSubstr("process number " + std::to_string(server().process().number()))));
    EXPECT_FALSE(fs::exists(socket));
    EXPECT_EQ(name(*client), original);
}

TEST_F(OneStore, IsServedAgainAtOnceAfterItsServerWasKilled) {
    server().kill_and_restart();
    NetconfClient next(server().socket());
    EXPECT_EQ(name(next), original);
}

// Neither the lock nor SQLite's log has the other name.
TEST_F(OneStore, IsNeitherServedNorEditedWhileItHasTwoNames) {
    ASSERT_EQ(set_name("theirs").status, 0);
    const fs::path store = lock_file().replace_extension();
    const std::string other_name = (server().directory() / "other-name.db").string();
    fs::create_hard_link(store, other_name);
    const Outcome second =
        run({"serve", "--socket", (server().directory() / "second.sock").string(), "--store", other_name});
    EXPECT_EQ(second.status, 2);
    EXPECT_THAT(second.errors, AllOf(HasSubstr(other_name), HasSubstr("hard links")));
    for (const std::string &name_of_store : {other_name, store.string()})
        EXPECT_THAT(run({"set", "--store", name_of_store, "/lldp/config/system-name", "refused"}).errors,
                    HasSubstr("hard links"));
    EXPECT_THAT(stored_name(), HasSubstr("theirs"));
    fs::remove(other_name);
    EXPECT_EQ(set_name("newer").status, 0);
    EXPECT_EQ(name(*client), "newer");
}

// A process that is killed while it makes the store leaves it with the name that it had until then.
TEST_F(OneStore, LosesTheNameUnderWhichItWasMade) {
    ASSERT_EQ(set_name("theirs").status, 0);
    const fs::path store = lock_file().replace_extension();
    const fs::path left_behind = store.parent_path() / ("." + store.filename().string() + ".new-aB3dE6");
    fs::create_hard_link(store, left_behind);
    EXPECT_EQ(set_name("newer").status, 0);
    EXPECT_FALSE(fs::exists(left_behind));
    EXPECT_EQ(name(*client), "newer");
}

// --- the lock's file ---

TEST_F(OneStore, HasALockForItsUserAlone) {
    const fs::path file = lock_file();
    ASSERT_FALSE(file.empty());
    EXPECT_EQ(fs::status(file).permissions(), fs::perms(0600));
}

TEST_F(OneStore, IsRefusedWhenItsLockIsALink) {
    ASSERT_EQ(set_name("theirs").status, 0);
    const fs::path file = lock_file();
    server().process().signal(SIGTERM);
    ASSERT_EQ(server().process().wait(), 0);
    const std::string target = (server().directory() / "target").string();
    write_file(target, "precious");
    for (const bool is_hard : {false, true}) {
        fs::remove(file);
        is_hard ? fs::create_hard_link(target, file) : fs::create_symlink(target, file);
        EXPECT_THAT(set_name("linked").errors, AllOf(HasSubstr(file.string()), HasSubstr("is a link")));
        EXPECT_THAT(run({"serve", "--socket", server().socket().string()}).errors, HasSubstr("is a link"));
    }
    EXPECT_EQ(read_file(target), "precious");
}

} // namespace
} // namespace yfw::test
