// Third-party clients, over SSH with a key: they read, lock, edit and commit.
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/run_program.h"
#include "netconf_server.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/running_yfw.h"

namespace yfw::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

using Words = std::vector<std::string>;

Finished run(const Words &words) {
    return yfw::run(words, -1, std::chrono::minutes(2));
}

bool is_required() {
    return std::getenv("CI") != nullptr || std::getenv("YFW_REQUIRE_CLIENTS") != nullptr;
}

// The path of a program; nothing when it is not installed.
std::optional<std::string> program(const std::string &name) {
    try {
        return find_program(name, name, "the test");
    } catch (const std::exception &) {
        return std::nullopt;
    }
}

// Registries fail now and then, so tries several times.
Finished installed_by(const std::string &npm, const std::string &prefix, const std::string &package) {
    constexpr int attempts = 3;
    Finished finished;
    for (int i = 0; i < attempts; i++) {
        finished =
            run({npm, "install", "--prefix", prefix, "--ignore-scripts", "--no-audit", "--no-fund", package});
        if (finished.status == 0)
            break;
    }
    return finished;
}

// A server started without --socket, with its private sshd.
class ATryoutServer : public testing::Test {
protected:
    void SetUp() override {
        if (!program("sshd").has_value() || !program("ssh-keygen").has_value())
            return missing("openssh-server");
        std::filesystem::copy(YFW_EXAMPLES_DIR "/r1", files_.path() / "device");
        setenv("XDG_STATE_HOME", (files_.path() / "state").c_str(), 1);
        server_.emplace(Words{"serve", "--device", (files_.path() / "device").string()});
        const std::optional<std::string> line = server_->line_with({"127.0.0.1:", "user", "key"});
        ASSERT_TRUE(line.has_value()) << server_->errors();
        port_ = word_after(*line, "127.0.0.1:");
        user_ = word_after(*line, "user ");
        key_ = word_after(*line, "key ");
    }

    // Killed, it could not remove its keys.
    void TearDown() override {
        if (!server_.has_value())
            return;
        if (server_->runs())
            server_->signal(SIGTERM);
        EXPECT_EQ(server_->wait(), 0) << server_->errors();
    }

    static void missing(const std::string &package) {
        if (is_required())
            FAIL() << package << " is missing";
        GTEST_SKIP() << package << " is missing";
    }

    static std::string word_after(const std::string &line, const std::string &start) {
        const size_t at = line.find(start) + start.size();
        return line.substr(at, line.find_first_of(", \n", at) - at);
    }

    std::string script(const std::string &name) const {
        return std::string(YFW_NETCONF_SCRIPTS_DIR "/") + name;
    }
    std::string in_files(const std::string &name) const { return (files_.path() / name).string(); }

    TemporaryDirectory files_;
    std::optional<RunningYfw> server_;
    std::string port_, user_, key_;
};

// A killed server cannot remove its keys; the next server does, but leaves those of running servers.
TEST_F(ATryoutServer, RemovesWhatAKilledOneLeftBehind) {
    RunningYfw killed({"serve", "--device", in_files("device"), "--store", in_files("other.db")});
    const std::optional<std::string> line = killed.line_with({"127.0.0.1:", "user", "key"});
    ASSERT_TRUE(line.has_value()) << killed.errors();
    const std::filesystem::path left = word_after(*line, "key ");
    killed.signal(SIGKILL);
    killed.wait();
    ASSERT_TRUE(std::filesystem::exists(left));
    RunningYfw next({"serve", "--device", in_files("device"), "--store", in_files("other.db")});
    ASSERT_TRUE(next.line_with({"127.0.0.1:", "user", "key"}).has_value()) << next.errors();
    EXPECT_FALSE(std::filesystem::exists(left.parent_path()));
    EXPECT_TRUE(std::filesystem::exists(key_));
    next.signal(SIGTERM);
    EXPECT_EQ(next.wait(), 0) << next.errors();
}

TEST_F(ATryoutServer, RefusesAPortThatIsTaken) {
    RunningYfw second(
        {"serve", "--device", in_files("device"), "--store", in_files("other.db"), "--port", port_});
    EXPECT_NE(second.wait(), 0);
    EXPECT_THAT(second.errors(), HasSubstr("port " + port_ + " on 127.0.0.1 failed: Address already in use"));
}

TEST(AServer, RefusesAGroupThatDoesNotExist) {
    for (const char *option : {"--readers", "--writers"}) {
        const Outcome outcome = run_yfw({{"serve", option, "no-such-group"}});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.errors,
                  "yfw: " + std::string(option) + ": this machine has no group \"no-such-group\"\n");
    }
}

TEST_F(ATryoutServer, GivesNoShell) {
    const std::optional<std::string> ssh = program("ssh");
    if (!ssh.has_value())
        return missing("openssh-client");
    const Finished finished = run({*ssh, "-F", "none", "-p", port_, "-i", key_, "-o", "IdentitiesOnly=yes",
                                   "-o", "BatchMode=yes", "-o", "StrictHostKeyChecking=no", "-o",
                                   "UserKnownHostsFile=/dev/null", user_ + "@127.0.0.1", "echo a-shell"});
    EXPECT_THAT(finished.output, testing::Not(HasSubstr("a-shell")));
    EXPECT_THAT(finished.output, HasSubstr("<hello")) << finished.reason();
}

TEST_F(ATryoutServer, EndsWithItsSshServer) {
    const std::string server = std::to_string(server_->number());
    ASSERT_EQ(run({"/usr/bin/pkill", "-KILL", "-P", server, "sshd"}).status, 0);
    EXPECT_EQ(server_->wait(), 2);
    EXPECT_THAT(server_->errors(), HasSubstr("sshd: has ended"));
    EXPECT_FALSE(std::filesystem::exists(key_));
    server_.reset();
}

TEST_F(ATryoutServer, CleansUpWhenItsTerminalCloses) {
    server_->signal(SIGHUP);
    EXPECT_EQ(server_->wait(), 0) << server_->errors();
    EXPECT_FALSE(std::filesystem::exists(key_));
    server_.reset();
}

TEST_F(ATryoutServer, ServesNcclient) {
    if (run({"/usr/bin/python3", "-c", "import ncclient"}).status != 0)
        return missing("python3-ncclient");
    const Finished finished = run({"/usr/bin/python3", script("ncclient_session.py"), port_, user_, key_});
    EXPECT_EQ(finished.status, 0) << finished.reason();
    EXPECT_THAT(lines_of(finished.output),
                ElementsAre("session: numbered", "candidate: True",
                            "neighbors: r2.example.net,r3.example.net,r4.example.net,r2.example.net",
                            "one: eth1", "by-xpath: eth2", "name: r1.example.net", "committed: by-ncclient",
                            "told: /lldp/config/system-name", "refused: unknown-element",
                            "cancelled: by-ncclient", "schema: openconfig-lldp", "end: closed"));
}

TEST_F(ATryoutServer, ServesYangcli) {
    const std::optional<std::string> yangcli = program("yangcli");
    if (!yangcli.has_value())
        return missing("yangcli");
    std::filesystem::copy(script("yangcli.script"), files_.path());
    files_.add("edit.xml", lldp("<config><system-name>by-yangcli</system-name></config>"));
    const Finished finished =
        run({"/usr/bin/env", "-C", files_.path().string(), "HOME=" + files_.path().string(), *yangcli,
             "--server=127.0.0.1", "--ncport=" + port_, "--user=" + user_, "--password=none",
             "--private-key=" + key_, "--public-key=" + key_ + ".pub", "--batch-mode",
             "--run-script=" + in_files("yangcli.script"), "--log-level=info",
             "--modpath=" YFW_MODELS_DIR ":/usr/share/yuma/modules"});
    EXPECT_EQ(finished.status, 0) << finished.reason();
    EXPECT_THAT(finished.output, HasSubstr("Protocol version set to: RFC 6241 (base:1.1)"));
    EXPECT_THAT(finished.output, testing::Not(HasSubstr("RPC Error Reply"))) << finished.output;
    EXPECT_THAT(finished.output, HasSubstr("system-name r2.example.net")) << finished.output;
    EXPECT_THAT(finished.output, HasSubstr("system-name by-yangcli")) << finished.output;
}

TEST_F(ATryoutServer, ServesNodeNetconf) {
    const std::optional<std::string> npm = program("npm"), node = program("node");
    if (!npm.has_value() || !node.has_value())
        return missing("npm");
    const std::string prefix = in_files("npm");
    std::filesystem::create_directory(prefix);
    const Finished install = installed_by(*npm, prefix, "node-netconf@1.1.2");
    if (install.status != 0)
        return missing("the npm package node-netconf (" + install.reason() + ")");
    const Finished finished = run({"/usr/bin/env", "NETCONF_PACKAGE=" + prefix + "/node_modules/node-netconf",
                                   *node, script("node_session.js"), port_, user_, key_});
    EXPECT_EQ(finished.status, 0) << finished.reason();
    EXPECT_THAT(lines_of(finished.output),
                ElementsAre("session: numbered", "interfaces: eth1,eth2,eth3", "one: eth1",
                            "name: r1.example.net", "uncommitted: r1.example.net", "committed: by-node",
                            "refused: rpcError", "end: closed"));
}

// An SSH client that sends all its requests at once, as from a file.
TEST_F(ATryoutServer, ServesSshWithRequestsFromAFile) {
    const std::optional<std::string> ssh = program("ssh");
    if (!ssh.has_value())
        return missing("openssh-client");
    const std::string requests =
        files_.add("requests", with_end_of_message(hello_message({base_1_0})) +
                                   with_end_of_message(rpc_message(get_config("running"), "first")) +
                                   with_end_of_message(rpc_message("<close-session/>", "last")));
    const Finished finished =
        run({"/bin/sh", "-c",
             *ssh + " -F none -p " + port_ + " -i " + key_ +
                 " -o IdentitiesOnly=yes -o StrictHostKeyChecking=no -o UserKnownHostsFile=/dev/null -s " +
                 user_ + "@127.0.0.1 netconf <" + requests});
    EXPECT_THAT(finished.output, HasSubstr("message-id=\"first\"")) << finished.reason();
    EXPECT_THAT(finished.output, HasSubstr("message-id=\"last\""));
}

TEST_F(ATryoutServer, LetsNobodyInWithoutItsKey) {
    const std::optional<std::string> ssh = program("ssh");
    if (!ssh.has_value())
        return missing("openssh-client");
    const std::string other = in_files("other");
    ASSERT_EQ(run({*program("ssh-keygen"), "-q", "-t", "ed25519", "-N", "", "-f", other}).status, 0);
    const Finished finished = run({*ssh, "-F", "none", "-p", port_, "-i", other, "-o", "IdentitiesOnly=yes",
                                   "-o", "BatchMode=yes", "-o", "StrictHostKeyChecking=no", "-o",
                                   "UserKnownHostsFile=/dev/null", "-s", user_ + "@127.0.0.1", "netconf"});
    EXPECT_EQ(finished.status, 255);
    EXPECT_THAT(finished.output, testing::Not(HasSubstr("hello")));
}

TEST_F(ATryoutServer, LeavesNothingBehind) {
    const std::filesystem::path directory = std::filesystem::path(key_).parent_path();
    ASSERT_TRUE(std::filesystem::exists(directory));
    EXPECT_EQ(std::filesystem::status(key_).permissions() & std::filesystem::perms(077),
              std::filesystem::perms::none);
    server_->signal(SIGTERM);
    ASSERT_EQ(server_->wait(), 0);
    EXPECT_FALSE(std::filesystem::exists(directory));
    const std::optional<std::string> scan = program("ssh-keyscan");
    ASSERT_TRUE(scan.has_value());
    EXPECT_EQ(run({*scan, "-T", "2", "-p", port_, "127.0.0.1"}).output, "");
}

} // namespace
} // namespace yfw::test
