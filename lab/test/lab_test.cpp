#include "lab/lab.h"

#include <csignal>

#include <gmock/gmock.h>
#include <sys/stat.h>

#include "base/error.h"
#include "lab/programs.h"
#include "lab/test/lab_program.h"

namespace yfw::lab::test {
namespace {

namespace fs = std::filesystem;
using namespace nlohmann::literals;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

class ALaboratory : public LabTest {
protected:
    void make(const std::string &topology = two_routers) {
        const auto outcome = lab("up", {"--topology", topology_file(topology), "--tx-interval", "1"});
        ASSERT_EQ(outcome.status, 0) << outcome.errors;
        output_ = outcome.output;
    }
    std::string ip_netns(const std::string &command, const std::string &name) const {
        return run({ip_program(), "netns", command, name}).errors;
    }

    std::string output_;
};

TEST_F(ALaboratory, of_two_routers_hears_what_each_sends) {
    make();
    ASSERT_TRUE(eventually(
        [&] { return names_heard("b", "eth7").size() == 1 && names_heard("a", "eth1").size() == 1; }));
    EXPECT_THAT(names_heard("a", "eth1"), ElementsAre("b.example.net"));
    const nlohmann::json heard = neighbors("b", "eth7").at(0);
    EXPECT_EQ(heard.at("/chassis/0/name/0/value"_json_pointer), "a.example.net");
    EXPECT_EQ(heard.at("/chassis/0/descr/0/value"_json_pointer), "The \"first\" router");
    EXPECT_EQ(heard.at("/port/0/id/0/type"_json_pointer), "ifname");
    EXPECT_EQ(heard.at("/port/0/id/0/value"_json_pointer), "eth1");
    EXPECT_EQ(heard.at("/unknown-tlvs/0/unknown-tlv/0/value"_json_pointer), "61,00,63");
}

TEST_F(ALaboratory, leaves_nothing_when_it_is_down) {
    make();
    EXPECT_THAT(left_over(), Not(IsEmpty()));
    const auto outcome = lab("down");
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(left_over(), IsEmpty());
}

TEST_F(ALaboratory, that_is_down_may_be_ended_again) {
    const auto outcome = lab("down");
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.output, "laboratory " + place().name + " is not up\n");
}

TEST_F(ALaboratory, forwards_lldp_on_a_segment_to_all_of_it) {
    make(R"({"routers": [{"name": "a"}, {"name": "b"}, {"name": "c"}],
             "segments": [{"name": "lan", "ports": ["a:eth1", "b:eth1", "c:eth5"]}]})");
    const auto hears = [&](const char *router, const char *interface) {
        return names_heard(router, interface);
    };
    ASSERT_TRUE(eventually([&] {
        return hears("a", "eth1").size() == 2 && hears("b", "eth1").size() == 2 &&
               hears("c", "eth5").size() == 2;
    }));
    EXPECT_THAT(hears("a", "eth1"), ElementsAre("b", "c"));
    EXPECT_THAT(hears("b", "eth1"), ElementsAre("a", "c"));
    EXPECT_THAT(hears("c", "eth5"), ElementsAre("a", "b"));
}

TEST_F(ALaboratory, of_two_hundred_cables_is_heard_on_each) {
    nlohmann::json links = nlohmann::json::array();
    for (int number = 1; number <= 200; ++number)
        links.push_back({"a:eth" + std::to_string(number), "b:eth" + std::to_string(number)});
    make(nlohmann::json{{"routers", R"([{"name": "a"}, {"name": "b"}])"_json}, {"links", links}}.dump());
    const auto recorded = lab("record", {(directory_of_files() / "recordings").string()});
    EXPECT_EQ(recorded.status, 0) << recorded.errors;
    EXPECT_THAT(recorded.errors, Not(HasSubstr("has not heard"))) << recorded.errors;
    EXPECT_THAT(names_heard("a", "eth200"), ElementsAre("b"));
    EXPECT_THAT(names_heard("b", "eth1"), ElementsAre("a"));
}

TEST_F(ALaboratory, tells_its_routers_links_and_the_next_commands) {
    make();
    const std::string device = "lldpd:" + place().socket("a").string();
    EXPECT_THAT(output_, HasSubstr("a  running  " + device));
    EXPECT_THAT(output_, HasSubstr("a:eth1 --- b:eth7"));
    EXPECT_THAT(output_, HasSubstr("yfw get /lldp --device " + device));
    const nlohmann::json told = status();
    EXPECT_EQ(told.at("state"), "up");
    EXPECT_EQ(told.at("/routers/0/device"_json_pointer), device);
    EXPECT_EQ(told.at("/routers/1/running"_json_pointer), true);
    EXPECT_EQ(told.at("links"), R"([["a:eth1", "b:eth7"]])"_json);
}

TEST_F(ALaboratory, that_is_not_there_is_down) {
    EXPECT_EQ(status().at("state"), "down");
}

TEST_F(ALaboratory, tells_which_daemon_does_not_run_and_is_still_removed) {
    make();
    const std::vector<pid_t> all = processes();
    ASSERT_FALSE(all.empty());
    for (const pid_t process : all)
        kill(process, SIGKILL);
    ASSERT_TRUE(eventually([&] { return processes().empty(); }));
    EXPECT_EQ(status().at("/routers/0/running"_json_pointer), false);
    EXPECT_EQ(lab("down").status, 0);
    EXPECT_THAT(left_over(), IsEmpty());
}

TEST_F(ALaboratory, that_is_up_is_not_made_again) {
    make();
    const auto before = processes();
    const auto outcome = lab("up");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("is already up"));
    EXPECT_EQ(processes(), before);
}

TEST_F(ALaboratory, leaves_a_namespace_that_is_not_its_own) {
    const std::string foreign = place().name + "-b";
    ASSERT_EQ(ip_netns("add", foreign), "");
    const auto outcome = lab("up", {"--topology", topology_file(two_routers)});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr(foreign + ": a network namespace with this name already exists"));
    EXPECT_THAT(left_over(), ElementsAre("namespace " + foreign, HasSubstr("mount ")));
    EXPECT_EQ(ip_netns("del", foreign), "");
    EXPECT_THAT(left_over(), IsEmpty());
}

TEST_F(ALaboratory, leaves_a_process_of_somebody_else_in_its_namespaces) {
    make();
    const auto inside = [&] { return run({ip_program(), "netns", "pids", place().name + "-a"}).output; };
    const std::string daemons = inside();
    Process guest(
        Program{.arguments = {ip_program(), "netns", "exec", place().name + "-a", "/bin/sleep", "600"}});
    EXPECT_TRUE(eventually([&] { return inside().find(std::to_string(guest.number())) != std::string::npos; }));
    EXPECT_EQ(lab("down").status, 0);
    EXPECT_TRUE(guest.runs()) << "the guest was killed";
    EXPECT_THAT(left_over(), IsEmpty());
}

TEST_F(ALaboratory, leaves_the_machines_own_run_alone) {
    make();
    struct stat own {};
    ASSERT_EQ(stat("/run", &own), 0);
    ASSERT_FALSE(processes().empty());
    for (const pid_t process : processes()) {
        const std::string root = "/proc/" + std::to_string(process) + "/root";
        struct stat of_process {};
        if (stat((root + "/run").c_str(), &of_process) == 0) { // missing for a process in its chroot
            EXPECT_NE(of_process.st_dev, own.st_dev) << process;
        }
    }
}

TEST_F(ALaboratory, stays_when_another_one_is_removed) {
    make();
    const std::string name = place().name + "x", base = directory_of_files().string();
    const auto other = [&](const char *command, std::vector<std::string> more = {}) {
        std::vector<std::string> all{"lab", command, "--name", name, "--dir", base};
        all.insert(all.end(), more.begin(), more.end());
        return yfw::test::run_yfw({all});
    };
    const auto made = other("up", {"--topology", topology_file(two_routers)});
    EXPECT_EQ(made.status, 0) << made.errors;
    EXPECT_EQ(other("down").status, 0);
    EXPECT_FALSE(fs::exists(directory_of_files() / ("lab-" + name)));
    EXPECT_TRUE(eventually([&] { return names_heard("b", "eth7").size() == 1; }));
}

TEST_F(ALaboratory, is_recorded_as_five_files_for_each_router) {
    make();
    const fs::path recordings = directory_of_files() / "recordings";
    const auto outcome = lab("record", {recordings.string()});
    ASSERT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.errors, Not(HasSubstr("warning")));
    const std::pair<const char *, const char *> kinds[] = {{"neighbors", "lldp"},
                                                           {"interfaces", "lldp"},
                                                           {"statistics", "lldp"},
                                                           {"chassis", "local-chassis"},
                                                           {"configuration", "configuration"}};
    for (const char *router : {"a", "b"})
        for (const auto &[kind, top] : kinds) {
            const fs::path file = recordings / (std::string(router) + "-" + kind + ".json");
            EXPECT_TRUE(nlohmann::json::parse(yfw::test::read_file(file)).contains(top)) << file;
        }
    EXPECT_EQ(nlohmann::json::parse(yfw::test::read_file(recordings / "a-neighbors.json"))
                  .at("/lldp/0/interface/0/chassis/0/name/0/value"_json_pointer),
              "b.example.net");
}

TEST_F(ALaboratory, that_is_up_has_a_socket_for_each_router) {
    make();
    std::vector<std::string> sockets;
    for (const LabRouter &router : running_lab(place().name, place().base))
        sockets.push_back(router.name + " " + router.socket.string());
    EXPECT_THAT(sockets, ElementsAre("a " + place().socket("a").string(), "b " + place().socket("b").string()));
}

TEST_F(ALaboratory, that_is_not_up_has_no_sockets) {
    try {
        running_lab(place().name, place().base);
        FAIL() << "the laboratory was found";
    } catch (const Error &error) {
        EXPECT_THAT(error.what(), HasSubstr("laboratory " + place().name + " is not up"));
    }
}

TEST_F(ALaboratory, needs_a_directory_that_the_daemons_can_enter) {
    fs::permissions(directory_of_files(), fs::perms(0700));
    const auto outcome = lab("up", {"--topology", topology_file(two_routers)});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("every user can enter"));
    EXPECT_THAT(left_over(), IsEmpty());
}

TEST_F(ALaboratory, does_not_work_on_a_directory_that_others_can_write_to) {
    fs::create_directory(place().directory());
    fs::permissions(place().directory(), fs::perms(0777));
    const auto outcome = lab("down");
    EXPECT_EQ(outcome.status, 2);
    EXPECT_THAT(outcome.errors, HasSubstr("only root or you"));
    fs::remove(place().directory());
}

TEST_F(ALaboratory, needs_root) {
    ASSERT_EQ(seteuid(65534), 0);
    std::string message;
    uint32_t status = 1;
    try {
        up(place(), default_topology(), 2, [](const std::string &) {});
    } catch (const Error &error) {
        message = error.what();
        status = error.status();
    }
    ASSERT_EQ(seteuid(0), 0);
    EXPECT_THAT(message, HasSubstr("needs root"));
    EXPECT_EQ(status, 0U);
    EXPECT_THAT(left_over(), IsEmpty());
}

struct Misused {
    const char *title;
    std::vector<std::string> words;
    const char *message;
};

TEST(TheLabCommand, refuses_what_it_cannot_use_in_one_line) {
    const Misused cases[] = {
        {"no command", {"lab"}, "subcommand"},
        {"a name with a slash", {"lab", "status", "--name", "a/b"}, "expected a name"},
        {"no base", {"lab", "status", "--dir", "/nonexistent"}, "/nonexistent: expected a directory"},
        {"no topology", {"lab", "up", "--topology", "/nonexistent.json"}, "/nonexistent.json: expected"},
        {"no interval", {"lab", "up", "--tx-interval", "0"}, "--tx-interval"},
    };
    for (const Misused &misused : cases) {
        const auto outcome = yfw::test::run_yfw({misused.words});
        EXPECT_EQ(outcome.status, 2) << misused.title;
        EXPECT_THAT(outcome.errors, HasSubstr(misused.message)) << misused.title;
        EXPECT_EQ(yfw::test::lines_of(outcome.errors).size(), 1U) << misused.title;
        EXPECT_EQ(outcome.output, "") << misused.title;
    }
}

} // namespace
} // namespace yfw::lab::test
