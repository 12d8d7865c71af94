// The access rules as data of the server: who may read and edit them, and what they count (RFC 8341).
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_rules.h"
#include "support/files.h"

namespace yfw::test {
namespace {

using testing::HasSubstr;
using testing::Not;

const std::string nacm_namespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-acm";
const std::string eth2 = "/oc:lldp/oc:interfaces/oc:interface[oc:name='eth2']";

std::string nacm_edit(const std::string &content) {
    return "<nacm xmlns=\"" + nacm_namespace + "\" xmlns:nc=\"" + base_namespace +
           "\" xmlns:l=\"http://openconfig.net/yang/lldp\">" + content + "</nacm>";
}

// The user who runs the tests is the recovery user; `writer` and `reader` are subject to the rules.
class TheRules : private WithRules, public NetconfTest {
protected:
    explicit TheRules(const std::string &content = writable)
        : WithRules(content), NetconfTest({"--nacm", rules_.path(), "--recovery-user", own_user(), "--readers",
                                           readers, "--writers", writers}) {}
    void SetUp() override {
        if (!users_obstacle().empty())
            GTEST_SKIP() << users_obstacle();
    }

    Xml rules_of(NetconfClient &client) {
        const Xml reply = client.rpc("<get>" + subtree("<nacm xmlns=\"" + nacm_namespace + "\"/>") + "</get>");
        const Xml *data = reply.child("data");
        const Xml *found = data != nullptr ? data->child("nacm") : nullptr;
        return found != nullptr ? *found : Xml();
    }
    std::string file() const { return read_file(rules_.path()); }
    std::filesystem::path rules_file() const { return rules_.path(); }
    NetconfClient client_of(const std::string &user) {
        return NetconfClient(server().socket(), {base_1_0, base_1_1}, user);
    }

    NetconfClient recovery{server().socket()};
};

TEST_F(TheRules, AreReadByTheRecoveryUserAlone) {
    EXPECT_EQ(rules_of(recovery).text_at("write-default"), "permit");
    NetconfClient other = client_of(writer);
    EXPECT_EQ(rules_of(other).name, "");
    EXPECT_THAT(recovery.capabilities(), testing::Contains(testing::StartsWith(nacm_namespace + "?")));
}

TEST_F(TheRules, ArePartOfTheRunningConfigurationWithoutTheirCounters) {
    const Xml reply = recovery.rpc(get_config("running", subtree("<nacm xmlns=\"" + nacm_namespace + "\"/>")));
    EXPECT_EQ(reply.text_at("data/nacm/write-default"), "permit") << reply.printed;
    EXPECT_THAT(reply.printed, Not(HasSubstr("denied-operations")));
}

// --- counters ---

class TheirCounters : public TheRules {
protected:
    TheirCounters()
        : TheRules(writable + rules_for("*", rpc_rule("ietf-netconf", "validate", "deny") +
                                                 data_rule(eth2, "create update delete", "deny") +
                                                 notification_rule("ietf-netconf-notifications",
                                                                   "netconf-config-change", "deny"))) {}
};

TEST_F(TheirCounters, CountWhatTheyDeny) {
    NetconfClient other = client_of(writer), subscriber = client_of(reader);
    for (const char *counter : {"denied-operations", "denied-data-writes", "denied-notifications"})
        EXPECT_EQ(rules_of(recovery).text_at(counter), "0") << counter;
    expect_ok(subscriber.rpc(create_subscription()));
    EXPECT_EQ(error_tag(other.rpc("<validate><source><running/></source></validate>")), "access-denied");
    for (int i = 0; i < 2; i++)
        EXPECT_EQ(error_tag(other.rpc(edit_config("running", interface_edit("eth2", "false")))),
                  "access-denied");
    expect_ok(other.rpc(edit_config("running", name_edit("new"))));
    expect_ok(other.rpc("<close-session/>"));
    next_event(subscriber, session_end); // the change before it was withheld
    const Xml rules = rules_of(recovery);
    EXPECT_EQ(rules.text_at("denied-operations"), "1");
    EXPECT_EQ(rules.text_at("denied-data-writes"), "2");
    EXPECT_EQ(rules.text_at("denied-notifications"), "1");
}

// --- edits ---

const std::string denial = "<rule-list><name>limits</name><group>*</group><rule><name>eth2</name><path>/l:lldp/"
                           "l:interfaces/l:interface"
                           "[l:name='eth2']</path><access-operations>create update "
                           "delete</access-operations><action>deny</action></rule>"
                           "</rule-list>";

TEST_F(TheRules, AreEditedWithEffectOnOpenSessions) {
    NetconfClient other = client_of(writer);
    expect_ok(other.rpc(edit_config("running", interface_edit("eth2", "false"))));
    expect_ok(recovery.rpc(edit_config("running", nacm_edit(denial))));
    EXPECT_EQ(error_tag(other.rpc(edit_config("running", interface_edit("eth2", "true")))), "access-denied");
    EXPECT_EQ(rules_of(recovery).text_at("rule-list/name"), "limits");
    expect_ok(recovery.rpc(edit_config(
        "running", nacm_edit("<rule-list nc:operation=\"delete\"><name>limits</name></rule-list>"))));
    expect_ok(other.rpc(edit_config("running", interface_edit("eth2", "true"))));
}

TEST_F(TheRules, AreKeptInTheirFile) {
    expect_ok(recovery.rpc(edit_config("running", nacm_edit(denial))));
    EXPECT_THAT(file(), HasSubstr("limits"));
    server().stop();
    server().start();
    NetconfClient other = client_of(writer);
    EXPECT_EQ(error_tag(other.rpc(edit_config("running", interface_edit("eth2", "false")))), "access-denied");
}

TEST_F(TheRules, AreEditedByTheNewerOperationToo) {
    expect_ok(recovery.rpc(edit_data("running", nacm_edit("<enable-nacm>false</enable-nacm>"))));
    EXPECT_EQ(rules_of(recovery).text_at("enable-nacm"), "false");
}

TEST_F(TheRules, AreAnEvent) {
    NetconfClient subscriber(server().socket());
    expect_ok(subscriber.rpc(create_subscription()));
    expect_ok(recovery.rpc(edit_config("running", nacm_edit("<read-default>deny</read-default>"))));
    const Xml change = next_event(subscriber, config_change);
    EXPECT_THAT(edits_of(change), testing::ElementsAre(Edited{"/nacm/read-default", "merge"}));
}

TEST_F(TheRules, AreNotEditedByOthers) {
    NetconfClient other = client_of(writer);
    const std::string before = file();
    expect_error(other.rpc(edit_config("running", nacm_edit("<enable-nacm>false</enable-nacm>"))),
                 "application", "access-denied");
    EXPECT_EQ(file(), before);
    EXPECT_EQ(rules_of(recovery).text_at("denied-data-writes"), "1");
}

struct RefusedEdit {
    const char *name;
    std::string operation;
    std::string tag;
};

class AnEditOfTheRules : public TheRules, public testing::WithParamInterface<RefusedEdit> {};

TEST_P(AnEditOfTheRules, IsRefusedAndChangesNothing) {
    const std::string before = file();
    const Xml reply = recovery.rpc(GetParam().operation);
    EXPECT_EQ(error_tag(reply), GetParam().tag) << reply.printed;
    EXPECT_EQ(file(), before);
}

INSTANTIATE_TEST_SUITE_P(
    With, AnEditOfTheRules,
    testing::Values(
        RefusedEdit{"AnInvalidValue", edit_config("running", nacm_edit("<read-default>maybe</read-default>")),
                    "invalid-value"},
        RefusedEdit{
            "APathToNothing",
            edit_config("running", nacm_edit("<rule-list><name>x</name><rule><name>y</name><path>/l:none"
                                             "</path><action>deny</action></rule></rule-list>")),
            "invalid-value"},
        RefusedEdit{"NoAction",
                    edit_config("running",
                                nacm_edit("<rule-list><name>x</name><rule><name>y</name></rule></rule-list>")),
                    "invalid-value"},
        RefusedEdit{"ACounter", edit_config("running", nacm_edit("<denied-operations>0</denied-operations>")),
                    "unknown-element"},
        RefusedEdit{"AnUnknownLeaf", edit_config("running", nacm_edit("<nonsense/>")), "unknown-element"},
        RefusedEdit{
            "ADeletionOfNothing",
            edit_config("running", nacm_edit("<rule-list nc:operation=\"delete\"><name>x</name></rule-list>")),
            "data-missing"},
        RefusedEdit{"TheCandidate", edit_config("candidate", nacm_edit("<enable-nacm>false</enable-nacm>")),
                    "operation-not-supported"}),
    [](const auto &test) { return test.param.name; });

TEST_F(TheRules, AreNotEditedWhileRunningIsLockedByAnother) {
    NetconfClient holder = client_of(writer);
    expect_ok(holder.rpc(lock("running")));
    expect_error(recovery.rpc(edit_config("running", nacm_edit("<enable-nacm>false</enable-nacm>"))),
                 "protocol", "in-use");
}

// --- together with the configuration of the device ---

// The content of the reply's <data>.
std::string content_of(const Xml &reply) {
    std::string text;
    const Xml *data = reply.child("data");
    for (const Xml &top : data != nullptr ? data->children : std::vector<Xml>())
        text += top.printed;
    return text;
}

std::string replaced(std::string text, const std::string &what, const std::string &by) {
    const size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what << " in " << text;
    return at == std::string::npos ? text : text.replace(at, what.size(), by);
}

std::string copy_config(const std::string &target, const std::string &config) {
    return "<copy-config><target><" + target + "/></target><source><config>" + config +
           "</config></source></copy-config>";
}

class TheWholeConfiguration : public TheRules {
protected:
    TheWholeConfiguration()
        : TheRules("<write-default>permit</write-default>" + rules_for("*", data_rule(eth2, "delete", "deny")) +
                   rules_for(writers, module_rule("ietf-netconf-acm", "read", "permit"))) {}

    std::string read() { return content_of(recovery.rpc(get_config("running"))); }
    std::string name_now() { return name(recovery); }

    const std::string rules_before = file();
};

TEST_F(TheWholeConfiguration, IsTakenAsItWasRead) {
    const std::string config = read();
    EXPECT_THAT(config, testing::AllOf(HasSubstr("<lldp"), HasSubstr("<nacm")));
    for (const char *target : {"running", "candidate"})
        expect_ok(recovery.rpc(copy_config(target, config)));
    expect_ok(recovery.rpc(edit_config("running", config)));
    expect_ok(recovery.rpc("<validate><source><config>" + config + "</config></source></validate>"));
    EXPECT_EQ(file(), rules_before);
    EXPECT_EQ(read(), config);
}

TEST_F(TheWholeConfiguration, IsTakenFromAUserWhoMayReadTheRulesOnlyAndLeavesThemAlone) {
    NetconfClient other = client_of(writer);
    const std::string config = content_of(other.rpc(get_config("running")));
    EXPECT_THAT(config, HasSubstr("<nacm"));
    expect_ok(other.rpc(copy_config("running", replaced(config, "r1.example.net", "new"))));
    EXPECT_EQ(name_now(), "new");
    EXPECT_EQ(file(), rules_before);
    expect_error(other.rpc(copy_config("running", replaced(config, ">permit<", ">deny<"))), "application",
                 "access-denied");
    EXPECT_EQ(file(), rules_before);
}

TEST_F(TheWholeConfiguration, IsChangedInBothPartsAtOnce) {
    const std::string config = replaced(read(), "r1.example.net", "new");
    expect_ok(
        recovery.rpc(copy_config("running", replaced(config, "<write-default>permit", "<write-default>deny"))));
    EXPECT_EQ(name_now(), "new");
    EXPECT_EQ(rules_of(recovery).text_at("write-default"), "deny");
    expect_ok(recovery.rpc(
        edit_config("running", nacm_edit("<write-default>permit</write-default>") + name_edit("newer"))));
    EXPECT_EQ(name_now(), "newer");
    EXPECT_EQ(rules_of(recovery).text_at("write-default"), "permit");
}

TEST_F(TheWholeConfiguration, IsNotChangedWhenEitherPartIsRefused) {
    const std::string config = read();
    const std::string renamed = replaced(config, "r1.example.net", "new");
    const std::string other_rules = replaced(config, "<write-default>permit", "<write-default>deny");
    for (const std::string &refused : {replaced(renamed, "<write-default>permit", "<write-default>perhaps"),
                                       replaced(other_rules, "<enabled>true", "<enabled>perhaps"),
                                       other_rules + name_edit("new"), config + nacm_edit("")}) {
        const Xml reply = recovery.rpc(copy_config("running", refused));
        EXPECT_NE(error_tag(reply), "") << reply.printed;
        EXPECT_EQ(read(), config);
        EXPECT_EQ(file(), rules_before);
    }
}

TEST_F(TheWholeConfiguration, IsNotChangedWhenTheRulesCannotBeWritten) {
    std::filesystem::remove(rules_file());
    EXPECT_EQ(error_tag(recovery.rpc(
                  edit_config("running", nacm_edit("<write-default>deny</write-default>") + name_edit("new")))),
              "operation-failed");
    EXPECT_EQ(name_now(), "r1.example.net");
    EXPECT_EQ(rules_of(recovery).text_at("write-default"), "permit");
}

TEST_F(TheWholeConfiguration, KeepsItsRulesWhenACopyHasNone) {
    expect_ok(recovery.rpc(copy_config("running", name_edit("new"))));
    EXPECT_EQ(name_now(), "new");
    EXPECT_EQ(file(), rules_before);
}

TEST_F(TheWholeConfiguration, HasNoOtherRulesInTheCandidate) {
    const std::string other_rules = replaced(read(), "<write-default>permit", "<write-default>deny");
    expect_error(recovery.rpc(copy_config("candidate", other_rules)), "application", "operation-not-supported");
    EXPECT_EQ(file(), rules_before);
}

// --- what an edit tells about what may not be read ---

class AHiddenNode : public NetconfRules {
protected:
    AHiddenNode()
        : NetconfRules(rules_for("*", data_rule(eth2, "*", "deny") +
                                          data_rule("/oc:lldp/oc:interfaces/oc:interface[oc:name='eth7']", "*",
                                                    "deny")) +
                       writable) {}
};

TEST_F(AHiddenNode, IsNotToldFromOneThatDoesNotExistWhenItIsCreated) {
    NetconfClient client = client_of(writer);
    const auto refusal_of = [&](const std::string &name) {
        const Xml error =
            expect_error(client.rpc(edit_config("running", interface_edit(name, "true", "create"))),
                         "application", "access-denied");
        std::string text = error.printed;
        for (size_t at; (at = text.find(name)) != std::string::npos;)
            text.replace(at, name.size(), "NAME");
        return text;
    };
    EXPECT_EQ(refusal_of("eth2"), refusal_of("eth7"));
}

TEST_F(AHiddenNode, IsNotToldFromOneThatDoesNotExistWhenItIsWritten) {
    NetconfClient client = client_of(writer);
    const auto refusal_of = [&](const std::string &name) {
        const Xml error = expect_error(client.rpc(edit_config("running", interface_edit(name, "false"))),
                                       "application", "access-denied");
        EXPECT_EQ(error.text_at("error-path"),
                  "/oc-lldp:lldp/oc-lldp:interfaces/oc-lldp:interface[oc-lldp:name='" + name + "']");
        return replaced(error.text_at("error-message"), "write", "...");
    };
    EXPECT_EQ(refusal_of("eth2"), refusal_of("eth7"));
}

TEST_F(TheWholeConfiguration, HasPathsInTheErrorsOfItsRules) {
    NetconfClient other = client_of(writer);
    const Xml error =
        expect_error(other.rpc(edit_config("running", nacm_edit("<write-default>deny</write-default>"))),
                     "application", "access-denied");
    EXPECT_EQ(error.text_at("error-path"), "/nacm:nacm/nacm:write-default");
    EXPECT_EQ(error.text_at("error-message"), std::string(writer) + " may not update this node");
}

} // namespace
} // namespace yfw::test
