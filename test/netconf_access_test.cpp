// Readers, writers and everybody else; invalid rules files.
#include <csignal>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "netconf_events.h"
#include "netconf_rules.h"

namespace yfw::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string original = "r1.example.net";

std::string kill_session(const std::string &session) {
    return "<kill-session><session-id>" + session + "</session-id></kill-session>";
}

class NetconfAccess : public NetconfRules {
protected:
    explicit NetconfAccess(const std::string &rules = "") : NetconfRules(rules) {}
    void SetUp() override {
        NetconfRules::SetUp();
        if (!IsSkipped() && !HasFailure())
            root.emplace(server().socket());
    }
    std::optional<NetconfClient> root;
};

struct OperationCase {
    const char *name;
    std::string operation;
};

std::string name_of(const testing::TestParamInfo<OperationCase> &test) {
    return test.param.name;
}

// --- readers ---

class AReader : public NetconfAccess, public testing::WithParamInterface<OperationCase> {};

TEST_P(AReader, IsRefusedWithNothingChanged) {
    expect_ok(root->rpc(edit_config("candidate", name_edit("edited"))));
    NetconfClient client = client_of(reader);
    const Xml reply = client.rpc(GetParam().operation);
    EXPECT_EQ(error_tag(reply), "access-denied") << reply.printed;
    EXPECT_EQ(name(*root), original);
    EXPECT_EQ(name(*root, "candidate"), "edited");
    expect_ok(root->rpc(lock("running")));
    EXPECT_EQ(name(client), original);
}

INSTANTIATE_TEST_SUITE_P(
    With, AReader,
    testing::Values(
        OperationCase{"AnEditOfRunning", edit_config("running", name_edit("new"))},
        OperationCase{"AnEditOfTheCandidate", edit_config("candidate", name_edit("new"))},
        OperationCase{"AnEmptyEdit", edit_config("running", "")},
        OperationCase{"ATestOfAnEdit",
                      edit_config("running", name_edit("new"), "<test-option>test-only</test-option>")},
        OperationCase{"AnEditOfData", edit_data("running", name_edit("new"))},
        OperationCase{"ACopy", "<copy-config><target><running/></target><source><candidate/></source>"
                               "</copy-config>"},
        OperationCase{"ADelete", "<delete-config><target><running/></target></delete-config>"},
        OperationCase{"ALockOfRunning", lock("running")},
        OperationCase{"ALockOfTheCandidate", lock("candidate")}, OperationCase{"ACommit", "<commit/>"},
        OperationCase{"AConfirmedCommit", "<commit><confirmed/></commit>"},
        OperationCase{"ACancelledCommit", "<cancel-commit/>"}, OperationCase{"ADiscard", "<discard-changes/>"}),
    name_of);

TEST_F(NetconfAccess, OfAReaderKillsNoSession) {
    NetconfClient client = client_of(reader), victim(server().socket());
    EXPECT_EQ(error_tag(client.rpc(kill_session(victim.session_id()))), "access-denied");
    EXPECT_EQ(name(victim), original);
}

class AReadOfAReader : public NetconfAccess, public testing::WithParamInterface<OperationCase> {};

TEST_P(AReadOfAReader, IsAnswered) {
    NetconfClient client = client_of(reader);
    const Xml reply = client.rpc(GetParam().operation);
    EXPECT_EQ(error_tag(reply), "") << reply.printed;
}

INSTANTIATE_TEST_SUITE_P(
    By, AReadOfAReader,
    testing::Values(OperationCase{"Get", "<get/>"}, OperationCase{"GetConfig", get_config("candidate")},
                    OperationCase{"GetData", get_data("running")},
                    OperationCase{"GetSchema",
                                  "<get-schema xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\">"
                                  "<identifier>openconfig-lldp</identifier></get-schema>"},
                    OperationCase{"Subscription", create_subscription()},
                    OperationCase{"Close", "<close-session/>"}),
    name_of);

TEST_F(NetconfAccess, OfAReaderShowsWhatRootIsShown) {
    NetconfClient client = client_of(reader);
    EXPECT_EQ(openconfig_of(client.rpc("<get>" + subtree(lldp("")) + "</get>")),
              openconfig_of(root->rpc("<get>" + subtree(lldp("")) + "</get>")));
}

// --- writers and other users ---

TEST_F(NetconfAccess, OfAWriterEditsAndIsNamedInWhatIsTold) {
    NetconfClient client = client_of(writer);
    expect_ok(root->rpc(create_subscription()));
    expect_ok(client.rpc(edit_config("running", name_edit("new"))));
    EXPECT_EQ(name(*root), "new");
    EXPECT_EQ(next_event(*root, config_change).text_at("changed-by/username"), writer);
    expect_ok(client.rpc(lock("running")));
}

TEST_F(NetconfAccess, IsNotForWhoBelongsToNeitherGroup) {
    Connection connection(server().socket(), stranger);
    const std::optional<std::string> all = connection.until_closed();
    ASSERT_TRUE(all.has_value());
    EXPECT_THAT(*all, Not(HasSubstr("session-id")));
    EXPECT_EQ(name(*root), original);
}

// The groups are checked before the rules.
class ALenientRule : public NetconfAccess {
protected:
    ALenientRule() : NetconfAccess(writable + rules_for("*", module_rule("*", "*", "permit"))) {}
};

TEST_F(ALenientRule, LetsNoReaderWriteAndNoStrangerIn) {
    NetconfClient client = client_of(reader);
    for (const std::string &operation :
         {edit_config("running", name_edit("new")), lock("running"), kill_session(root->session_id())})
        EXPECT_EQ(error_tag(client.rpc(operation)), "access-denied") << operation;
    Connection connection(server().socket(), stranger);
    EXPECT_TRUE(connection.until_closed().has_value());
    EXPECT_EQ(name(*root), original);
}

// --- invalid files ---

struct FileCase {
    const char *name;
    std::string content;
};

class ARulesFile : public testing::Test {
protected:
    // Starts a server with the rules, which must exit with an error.
    void expect_refused(const std::string &file) {
        const std::string socket = (files_.path() / "netconf.sock").string();
        std::filesystem::copy(YFW_EXAMPLES_DIR "/r1", files_.path() / "device");
        setenv("XDG_STATE_HOME", (files_.path() / "state").c_str(), 1);
        RunningYfw server(
            {"serve", "--device", (files_.path() / "device").string(), "--socket", socket, "--nacm", file});
        EXPECT_EQ(server.wait(), 2);
        EXPECT_EQ(lines_of(server.errors()).size(), 1u) << server.errors();
        EXPECT_THAT(server.errors(), HasSubstr(file));
        EXPECT_EQ(server.output(), "");
        EXPECT_FALSE(std::filesystem::exists(socket));
    }
    TemporaryDirectory files_;
};

class AWrongRulesFile : public ARulesFile, public testing::WithParamInterface<FileCase> {};

TEST_P(AWrongRulesFile, IsRefusedBeforeAnythingIsServed) {
    expect_refused(files_.add("rules.xml", GetParam().content));
}

TEST_F(ARulesFile, IsRefusedWhenItIsMissing) {
    expect_refused((files_.path() / "missing.xml").string());
}

TEST_F(ARulesFile, IsRefusedWhenItIsADirectory) {
    expect_refused(files_.path().string());
}

TEST_F(ARulesFile, IsRefusedWhenItIsAPipe) {
    const std::string pipe = (files_.path() / "pipe").string();
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    expect_refused(pipe);
}

TEST_F(ARulesFile, IsRefusedWhenItIsADevice) {
    expect_refused("/dev/zero");
}

TEST_F(ARulesFile, IsRefusedWhenItIsTooLarge) {
    const std::string file = files_.add("rules.xml", "");
    std::filesystem::resize_file(file, std::uintmax_t{20} << 30);
    expect_refused(file);
}

const std::string action = "<action>deny</action>";

INSTANTIATE_TEST_SUITE_P(
    Being, AWrongRulesFile,
    testing::Values(
        FileCase{"Empty", ""}, FileCase{"NoXml", "rules"}, FileCase{"Unclosed", "<nacm>"},
        FileCase{"OfAnotherRoot", "<rules xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-acm\"/>"},
        FileCase{"OfAnotherNamespace", "<nacm xmlns=\"urn:example\"/>"},
        FileCase{"WithAnUnknownElement", nacm("<nonsense/>")},
        FileCase{"WithAnUnknownElementInARule",
                 nacm(rules_for("*", "<rule><name>r</name><nonsense/>" + action + "</rule>"))},
        FileCase{"WithASwitchThatIsAWord", nacm("<enable-nacm>maybe</enable-nacm>")},
        FileCase{"WithAnUnknownDefault", nacm("<read-default>perhaps</read-default>")},
        FileCase{"WithAnUnknownAction", nacm(rules_for("*", module_rule("*", "*", "perhaps")))},
        FileCase{"WithAnUnknownOperation", nacm(rules_for("*", module_rule("*", "write", "deny")))},
        FileCase{"WithARuleWithoutAName", nacm(rules_for("*", "<rule>" + action + "</rule>"))},
        FileCase{"WithARuleWithoutAnAction", nacm(rules_for("*", "<rule><name>r</name></rule>"))},
        FileCase{"WithAListWithoutAName", nacm("<rule-list><group>*</group></rule-list>")},
        FileCase{"WithTwoRulesOfOneName",
                 nacm(rules_for("*", "<rule><name>r</name>" + action + "</rule><rule><name>r</name>" + action +
                                         "</rule>"))},
        FileCase{"WithARuleForAnOperationAndANotification",
                 nacm(rules_for("*", "<rule><name>r</name><rpc-name>get</rpc-name><notification-name>x"
                                     "</notification-name>" +
                                         action + "</rule>"))},
        FileCase{"WithAPathThatIsNone", nacm(rules_for("*", data_rule("/oc:lldp[", "*", "deny")))},
        FileCase{"WithAPathOfAnUndeclaredPrefix", nacm(rules_for("*", data_rule("/x:lldp", "*", "deny")))}),
    [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::test
