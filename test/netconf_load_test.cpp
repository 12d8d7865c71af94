// Many clients, clients that do not read, and an idle server.
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <set>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include <sys/resource.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/child_process.h"
#include "support/eventually.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

class NetconfLoad : public NetconfProcessTest {};

TEST_F(NetconfLoad, OfAHundredIdleConnectionsIsNoticedByNobody) {
    std::vector<std::unique_ptr<NetconfClient>> idle;
    std::vector<std::unique_ptr<Connection>> silent;
    for (int i = 0; i < 50; i++) {
        idle.push_back(std::make_unique<NetconfClient>(server().socket()));
        silent.push_back(std::make_unique<Connection>(server().socket()));
    }
    NetconfClient client(server().socket());
    const auto start = Clock::now();
    for (int i = 0; i < 100; i++)
        EXPECT_EQ(name(client), "r1.example.net");
    EXPECT_LT(Clock::now() - start, seconds(10));
    for (const auto &each : idle)
        EXPECT_EQ(name(*each), "r1.example.net");
}

TEST_F(NetconfLoad, OfAThousandSessionsLeavesNothingBehind) {
    const auto one_session = [this](bool closes) {
        NetconfClient client(server().socket());
        EXPECT_NE(client.rpc(get_config("running")).child("data"), nullptr);
        if (closes)
            expect_ok(client.rpc("<close-session/>"));
    };
    one_session(true);
    const auto before = server().descriptors();
    for (int i = 0; i < 1000; i++)
        one_session(i % 2 == 0);
    EXPECT_TRUE(eventually([&] { return server().descriptors() <= before; })) << server().descriptors();
    EXPECT_LT(server().peak_memory(), (200u << 20) + kept_by_sanitizer);
}

TEST_F(NetconfLoad, OfSessionsAtTheSameTimeIsAnsweredRight) {
    std::vector<std::thread> threads;
    for (int i = 0; i < 8; i++)
        threads.emplace_back([this, i] {
            NetconfClient client(server().socket());
            for (int k = 0; k < 20; k++) {
                const std::string wanted = "n" + std::to_string(i) + "-" + std::to_string(k);
                expect_ok(client.rpc(edit_config("running", name_edit(wanted))));
                EXPECT_NE(client.rpc("<get/>").child("data"), nullptr);
            }
        });
    for (std::thread &each : threads)
        each.join();
    NetconfClient client(server().socket());
    EXPECT_THAT(name(client), testing::MatchesRegex("n[0-7]-19"));
}

// A device with an answer of about a megabyte.
std::string many_neighbors() {
    std::string details;
    for (int i = 0; i < 10000; i++) {
        const std::string device = "neighbor-" + std::to_string(i);
        details += native_neighbor("eth1", device,

                                   element("chassis-id", "00:53:00:00:00:01"));
    }
    return native_neighbors(details);
}

TEST(AClientThatReadsNothing, HoldsUpNobodyAndTakesLittleMemory) {
    const TemporaryDirectory device;
    device.add("config.xml", read_file(YFW_EXAMPLES_DIR "/r1/config.xml"));
    device.add("oper.xml", many_neighbors());
    NetconfServer server({}, Runs::as_program, device.path());
    NetconfClient other(server.socket());
    const std::string answer = other.rpc("<get/>").printed;
    ASSERT_GT(answer.size(), 900u << 10);
    const auto before = server.peak_memory();
    NetconfClient greedy(server.socket());
    int sent = 0;
    while (sent < 1000 && greedy.connection().send(in_one_chunk(rpc_message("<get/>")), seconds(1)))
        sent++;
    EXPECT_GT(sent, 10);
    for (int i = 0; i < 20; i++) {
        const auto start = Clock::now();
        EXPECT_EQ(other.rpc(get_config("running")).child("rpc-error"), nullptr);
        EXPECT_LT(Clock::now() - start, seconds(2));
    }
    EXPECT_LT(server.peak_memory() - before, 100u << 20);
    for (int i = 0; i < 20; i++) // now the client reads
        EXPECT_GT(greedy.receive_text().size(), 900u << 10);
}

TEST(AClientThatReadsNothing, LeavesItsAnswerOutOfMemory) {
    constexpr size_t clients = 8;
    const TemporaryDirectory device;
    device.add("config.xml", read_file(YFW_EXAMPLES_DIR "/r1/config.xml"));
    device.add("oper.xml", many_neighbors());
    NetconfServer server({}, Runs::as_program, device.path());
    NetconfClient other(server.socket());
    for (size_t i = 0; i < clients; i++) // what the workers keep for themselves
        ASSERT_GT(other.rpc("<get/>").printed.size(), 900u << 10);
    const auto before = server.private_memory();
    std::vector<std::unique_ptr<NetconfClient>> silent;
    for (size_t i = 0; i < clients; i++) {
        silent.push_back(std::make_unique<NetconfClient>(server.socket()));
        ASSERT_TRUE(silent.back()->connection().send(in_one_chunk(rpc_message("<get/>")), seconds(1)));
    }
    for (const auto &each : silent) // its answer is made
        ASSERT_TRUE(each->connection().has_more(patience));
    const auto allowed = before + clients * (1u << 20) + kept_by_sanitizer;
    EXPECT_TRUE(eventually([&] { return server.private_memory() < allowed; })) << server.private_memory();
    for (const auto &each : silent)
        EXPECT_GT(each->receive_text().size(), 900u << 10);
}

// utime plus stime of the server's process, in clock ticks.
unsigned long ticks(pid_t process) {
    std::string text = read_file("/proc/" + std::to_string(process) + "/stat");
    std::istringstream fields(text.substr(text.rfind(')') + 1));
    std::string skipped;
    for (int i = 3; i < 14; i++)
        fields >> skipped;
    unsigned long user = 0, system = 0;
    fields >> user >> system;
    return user + system;
}

// New sessions wait for descriptors; meanwhile the server neither spins nor fills its log.
TEST_F(NetconfLoad, OfMoreSessionsThanThereAreDescriptorsWaits) {
    const pid_t process = NetconfClient(server().socket()).connection().server();
    const rlimit few{40, 40};
    ASSERT_EQ(prlimit(process, RLIMIT_NOFILE, &few, nullptr), 0);
    const unsigned long before = ticks(process);
    std::vector<std::unique_ptr<Connection>> many;
    for (int i = 0; i < 60; i++)
        many.push_back(std::make_unique<Connection>(server().socket()));
    EXPECT_FALSE(many.back()->has_more(std::chrono::seconds(2)));
    EXPECT_LT(ticks(process) - before, 50u);
    EXPECT_LT(server().process().errors().size(), 2000u);
    many.erase(many.begin(), many.end() - 1);
    EXPECT_NE(many.back()->receive_to("</hello>"), "");
}

TEST_F(NetconfLoad, OfNothingTakesNoTime) {
    NetconfClient idle(server().socket());
    EXPECT_EQ(name(idle), "r1.example.net");
    const Connection silent(server().socket());
    const pid_t process = idle.connection().server();
    unsigned long last = ticks(process);
    EXPECT_FALSE(eventually([&] { return ticks(process) > last + 2; }, milliseconds(500)));
}

TEST_F(NetconfLoad, OfNothingTakesNoTimeAfterAConfirmedCommitEither) {
    NetconfClient client(server().socket());
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc("<commit><confirmed/></commit>"));
    const pid_t process = client.connection().server();
    unsigned long last = ticks(process);
    EXPECT_FALSE(eventually([&] { return ticks(process) > last + 2; }, milliseconds(500)));
}

// --- requests that nobody waits for any more ---

// A device with so many neighbors that an expensive filter is evaluated in a process of its own, for seconds.
class AnExpensiveFilter : public testing::Test {
protected:
    AnExpensiveFilter() {
        std::string neighbors;
        for (int i = 0; i < 5000; i++)
            neighbors += native_neighbor("eth1", "device-" + std::to_string(i), "");
        directory_.add("oper.xml", native_neighbors(neighbors));
        server.emplace(std::vector<std::string>{}, Runs::as_program, directory_.path());
        client.emplace(server->socket());
        std::string nodes = "//node()"; // each union compares all pairs of nodes
        for (int i = 0; i < 100; i++)
            nodes += "|//node()";
        client->send(rpc_message("<get><filter type=\"xpath\" select=\"" + nodes + "\"/></get>"));
    }
    // Whether the server has a child process.
    bool is_evaluated() {
        const std::string parent = std::to_string(server->process().number());
        for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
            std::ifstream stat(entry.path() / "stat");
            std::string number, name, state, above;
            if (stat >> number >> name >> state >> above && above == parent)
                return true;
        }
        return false;
    }

private:
    TemporaryDirectory directory_;

protected:
    std::optional<NetconfServer> server;
    std::optional<NetconfClient> client;
};

TEST_F(AnExpensiveFilter, IsNotEvaluatedAfterItsSessionHasEnded) {
    NetconfClient killer(server->socket());
    ASSERT_TRUE(eventually([this] { return is_evaluated(); }));
    expect_ok(killer.rpc("<kill-session><session-id>" + client->session_id() + "</session-id></kill-session>"));
    EXPECT_TRUE(eventually([this] { return !is_evaluated(); }, milliseconds(1000)));
}

TEST_F(AnExpensiveFilter, DoesNotKeepTheServerFromEnding) {
    ASSERT_TRUE(eventually([this] { return is_evaluated(); }));
    server->process().signal(SIGTERM);
    EXPECT_EQ(server->process().wait(milliseconds(1000)), 0);
}

// --- the end of the server ---

class NetconfDaemon : public NetconfProcessTest {};

TEST_F(NetconfDaemon, EndsWithStatusZeroWhenItIsToldTo) {
    for (const int signal : {SIGTERM, SIGINT}) {
        NetconfClient client(server().socket());
        EXPECT_EQ(name(client), "r1.example.net");
        Connection silent(server().socket());
        server().process().signal(signal);
        EXPECT_EQ(server().process().wait(), 0);
        EXPECT_FALSE(std::filesystem::exists(server().socket()));
        EXPECT_TRUE(client.connection().until_closed().has_value());
        server().start();
    }
}

TEST_F(NetconfDaemon, GivesUpALongEditThatHasNotChangedAnythingWhenItIsToldToEnd) {
    std::string interfaces;
    for (int i = 0; i < 20000; i++) {
        const std::string name = leaf_edit("name", "e" + std::to_string(i));
        interfaces += "<interface>" + name + "<config>" + name + "</config></interface>";
    }
    NetconfClient client(server().socket());
    const std::string before = everything(client);
    client.send(rpc_message(edit_config("running", lldp("<interfaces>" + interfaces + "</interfaces>"))));
    NetconfClient other(server().socket());
    EXPECT_EQ(name(other), "r1.example.net"); // the edit has arrived by now
    server().process().signal(SIGTERM);
    EXPECT_EQ(server().process().wait(milliseconds(1000)), 0) << "it waits for the edit";
    server().start();
    NetconfClient next(server().socket());
    EXPECT_EQ(everything(next), before);
}

TEST_F(NetconfDaemon, ReplacesASocketThatWasLeftBehind) {
    server().process().signal(SIGKILL);
    server().process().wait();
    ASSERT_TRUE(std::filesystem::exists(server().socket()));
    server().start();
    NetconfClient client(server().socket());
    EXPECT_EQ(name(client), "r1.example.net");
}

TEST_F(NetconfDaemon, RefusesASocketThatAnotherOneServesOn) {
    const Outcome second = run_yfw({.arguments = {"serve", "--device", server().device().string(), "--socket",
                                                  server().socket().string()}});
    EXPECT_NE(second.status, 0);
    EXPECT_THAT(second.errors, testing::HasSubstr(server().socket().string()));
    EXPECT_EQ(lines_of(second.errors).size(), 1u) << second.errors;
    NetconfClient client(server().socket());
    EXPECT_EQ(name(client), "r1.example.net");
}

TEST_F(NetconfDaemon, RefusesAPathThatIsNoSocket) {
    const std::string file = (server().directory() / "file").string();
    write_file(file, "precious");
    const Outcome outcome =
        run_yfw({.arguments = {"serve", "--device", server().device().string(), "--socket", file}});
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(read_file(file), "precious");
}

// The two leaves of each edit belong together.
std::string numbered_edit(int number) {
    const std::string text = std::to_string(number);
    return lldp("<config><system-name>n" + text + "</system-name><system-description>n" + text +
                "</system-description></config>");
}

TEST_F(NetconfDaemon, ThatIsKilledDuringEditsHasOneOfTheirConfigurations) {
    const std::string both =
        "/openconfig-lldp:lldp/config/system-name|/openconfig-lldp:lldp/config/system-description";
    int number = 0, confirmed = -1;
    for (int kill = 0; kill < 30; kill++) {
        NetconfClient client(server().socket());
        std::thread killer([&, delay = std::chrono::microseconds(2000 + 1300 * kill)] {
            const auto until = Clock::now() + delay;
            while (Clock::now() < until)
                std::this_thread::yield();
            server().process().signal(SIGKILL);
        });
        try {
            for (;; number++) {
                expect_ok(client.rpc(edit_config("running", numbered_edit(number))));
                confirmed = number;
            }
        } catch (const std::runtime_error &) { // killed
        }
        killer.join();
        ASSERT_EQ(server().process().wait(), 128 + SIGKILL);
        server().start();
        NetconfClient next(server().socket());
        const std::vector<std::string> found = values(next, "running", both);
        ASSERT_EQ(found.size(), 2u);
        if (confirmed < 0 && found[0] == "r1.example.net")
            continue;
        EXPECT_EQ(found[0], found[1]);
        EXPECT_THAT(found[0], testing::AnyOf("n" + std::to_string(confirmed), "n" + std::to_string(number)));
        confirmed = found[0] == "n" + std::to_string(number) ? number : confirmed;
        number++;
    }
    EXPECT_GT(confirmed, 30);
}

} // namespace
} // namespace yfw::test
