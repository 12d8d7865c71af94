// Access rules for data, operations and notifications (RFC 8341); they apply to root, too.
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_events.h"
#include "netconf_rules.h"
#include "support/child_process.h"
#include "yang/forest.h"

namespace yfw::test {
namespace {

using testing::EndsWith;
using testing::HasSubstr;

const std::string original = "r1.example.net";
const std::string global = "/oc:lldp/oc:config";
const std::string system_name = global + "/oc:system-name";
const std::string list = "/oc:lldp/oc:interfaces/oc:interface";
const std::string eth2 = list + "[oc:name='eth2']";

std::string everybody(const std::string &rules) {
    return rules_for("*", rules);
}

// --- reading ---

struct ReadCase {
    const char *name;
    std::string rules;
    std::string hidden; // an XPath expression for the nodes that are left out; empty: none
};

std::string read_name(const testing::TestParamInfo<ReadCase> &test) {
    return test.param.name;
}

class ARead : public NetconfRules, public testing::WithParamInterface<ReadCase> {
protected:
    ARead() : NetconfRules(GetParam().rules) {}

    // What the command line, to which no rules apply, reads, without the hidden nodes.
    std::string rest_of(const std::string &kind) {
        Tree tree = parse_answer(modules(), Format::xml, told_by_program(kind));
        if (GetParam().hidden.empty())
            return as_text(tree.get());
        for (lyd_node *node : yang::nodes_at(tree.get(), GetParam().hidden))
            yang::remove(tree, node);
        return tree == nullptr ? "" : as_text(tree.get());
    }

private:
    // Asked once: all tests have the same device and do not change it.
    const std::string &told_by_program(const std::string &kind) {
        static std::map<std::string, std::string> told;
        if (const auto known = told.find(kind); known != told.end())
            return known->second;
        std::vector<std::string> words{"get", "/lldp",    "--format",
                                       "xml", "--device", server().device().string()};
        if (!kind.empty())
            words.push_back(kind);
        const Outcome outcome = run_yfw({.arguments = words});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return told[kind] = outcome.output;
    }
};

TEST_P(ARead, LeavesOutWhatIsDeniedWithAllBelowIt) {
    NetconfClient client(server().socket());
    for (const char *datastore : {"running", "candidate"})
        EXPECT_EQ(everything(client, datastore), rest_of("--config"));
    EXPECT_EQ(openconfig_of(client.rpc("<get>" + subtree(lldp("")) + "</get>")), rest_of(""));
    EXPECT_EQ(openconfig_of(client.rpc("<get><filter type=\"xpath\" xmlns:oc=\"http://openconfig.net/yang/"
                                       "lldp\" select=\"/oc:lldp\"/></get>")),
              rest_of(""));
    EXPECT_EQ(openconfig_of(client.rpc(get_data("running"))), rest_of("--config"));
    EXPECT_EQ(
        openconfig_of(client.rpc(get_data("operational", "<subtree-filter>" + lldp("") + "</subtree-filter>"))),
        rest_of(""));
}

std::string deny(const std::string &path, const std::string &operations = "read") {
    return data_rule(path, operations, "deny");
}

std::string permit(const std::string &path, const std::string &operations = "read") {
    return data_rule(path, operations, "permit");
}

std::string group(const std::string &name, const std::string &user) {
    return "<groups><group><name>" + name + "</name><user-name>" + user + "</user-name></group></groups>";
}

const std::string oc_config = "/openconfig-lldp:lldp/config";
const std::string oc_list = "/openconfig-lldp:lldp/interfaces/interface";
const std::string everything_hidden = "/openconfig-lldp:lldp";

INSTANTIATE_TEST_SUITE_P(
    With, ARead,
    testing::Values(
        ReadCase{"NoRules", "<enable-nacm>true</enable-nacm>", ""},
        ReadCase{"AContainerDenied", everybody(deny(global)), oc_config},
        ReadCase{"ALeafDenied", everybody(deny(system_name)), oc_config + "/system-name"},
        ReadCase{"AnEntryDenied", everybody(deny(eth2)), oc_list + "[name='eth2']"},
        ReadCase{"AllEntriesDenied", everybody(deny(list)), oc_list},
        ReadCase{"ALeafOfAllEntriesDenied", everybody(deny(list + "/oc:config/oc:enabled")),
                 oc_list + "/config/enabled"},
        ReadCase{"ALeafOfOneEntryDenied", everybody(deny(eth2 + "/oc:config/oc:enabled")),
                 oc_list + "[name='eth2']/config/enabled"},
        ReadCase{"StateDenied", everybody(deny("/oc:lldp/oc:state")), "/openconfig-lldp:lldp/state"},
        ReadCase{"OneNeighborDenied",
                 everybody(deny(list + "[oc:name='eth1']/oc:neighbors/oc:neighbor"
                                       "[oc:id='r2.example.net#eth1']")),
                 oc_list + "[name='eth1']/neighbors/neighbor[id='r2.example.net#eth1']"},
        ReadCase{"AllDenied", everybody(deny("/oc:lldp")), everything_hidden},
        ReadCase{"SeveralDenied", everybody(deny(global) + deny(eth2)),
                 oc_config + "|" + oc_list + "[name='eth2']"},
        ReadCase{"AnEntryPermittedBeforeAllAreDenied", everybody(permit(eth2) + deny(list)),
                 oc_list + "[name!='eth2']"},
        ReadCase{"AnEntryPermittedAfterAllAreDenied", everybody(deny(list) + permit(eth2)), oc_list},
        ReadCase{"AllPermittedBeforeAPartIsDenied", everybody(permit("/oc:lldp") + deny(global)), ""},
        ReadCase{"AnEntryPermittedBelowWhatIsDenied", everybody(permit(eth2) + deny("/oc:lldp/oc:interfaces")),
                 "/openconfig-lldp:lldp/interfaces"},
        ReadCase{"AllOperationsDenied", everybody(deny(system_name, "*")), oc_config + "/system-name"},
        ReadCase{"SeveralOperationsDenied", everybody(deny(system_name, "create read")),
                 oc_config + "/system-name"},
        ReadCase{"OtherOperationsDenied", everybody(deny(system_name, "create update delete exec")), ""},
        ReadCase{"AModuleDenied", everybody(module_rule("openconfig-lldp", "read", "deny")), everything_hidden},
        ReadCase{"AnotherModuleDenied", everybody(module_rule("ietf-netconf-monitoring", "*", "deny")), ""},
        ReadCase{"AllModulesDeniedForReading", everybody(module_rule("*", "read", "deny")), everything_hidden},
        ReadCase{"ReadingDeniedByDefault", "<read-default>deny</read-default>", everything_hidden},
        ReadCase{"ReadingDeniedByDefaultAndLldpPermitted",
                 "<read-default>deny</read-default>" + everybody(permit("/oc:lldp")), ""},
        ReadCase{"RulesSwitchedOff",
                 "<enable-nacm>false</enable-nacm><read-default>deny</read-default>" +
                     everybody(deny("/oc:lldp", "*")),
                 ""},
        ReadCase{"ARuleForAGroupOfTheFile", group("g", "root") + rules_for("g", deny(global)), oc_config},
        ReadCase{"ARuleForAGroupOfOthers", group("g", "nobody") + rules_for("g", deny(global)), ""},
        ReadCase{"ARuleForAGroupOfTheMachine", rules_for("root", deny(global)), oc_config},
        ReadCase{"ARuleForAGroupOfTheMachineThatDoesNotCount",
                 "<enable-external-groups>false</enable-external-groups>" + rules_for("root", deny(global)),
                 ""},
        ReadCase{"ARuleForAGroupOfTheFileAlone",
                 "<enable-external-groups>false</enable-external-groups>" + group("g", "root") +
                     rules_for("g", deny(global)),
                 oc_config},
        ReadCase{"AListOfOthersBeforeTheOwn",
                 rules_for("nogroup", permit("/oc:lldp")) + rules_for("root", deny(global)), oc_config},
        ReadCase{"TwoListsOfWhichTheFirstDecides",
                 rules_for("root", permit("/oc:lldp")) + everybody(deny(global)), ""}),
    read_name);

// --- the server's own state ---

struct OwnStateCase {
    const char *name;
    std::string rules;
    std::vector<std::string> shown; // the top nodes of <get/>
};

class ARuleForTheServersState : public NetconfRules, public testing::WithParamInterface<OwnStateCase> {
protected:
    ARuleForTheServersState() : NetconfRules(GetParam().rules) {}
};

TEST_P(ARuleForTheServersState, LeavesThis) {
    NetconfClient client(server().socket());
    const Xml reply = client.rpc("<get/>");
    ASSERT_NE(reply.child("data"), nullptr) << reply.printed;
    std::vector<std::string> names;
    for (const Xml &each : reply.child("data")->children)
        names.push_back(each.name);
    EXPECT_THAT(names, testing::UnorderedElementsAreArray(GetParam().shown));
    EXPECT_EQ(reply.at("data/netconf-state/sessions"), nullptr);
}

INSTANTIATE_TEST_SUITE_P(
    That, ARuleForTheServersState,
    testing::Values(OwnStateCase{"DeniesAPart",
                                 everybody(deny("/ncm:netconf-state/ncm:sessions")),
                                 {"lldp", "netconf-state", "netconf", "yang-library", "modules-state"}},
                    OwnStateCase{"DeniesAModule",
                                 everybody(module_rule("ietf-netconf-monitoring", "read", "deny")),
                                 {"lldp", "netconf", "yang-library", "modules-state"}},
                    OwnStateCase{"DeniesAllButLldp",
                                 everybody(permit("/oc:lldp") + module_rule("*", "read", "deny")),
                                 {"lldp"}}),
    [](const auto &test) { return test.param.name; });

// --- filters reveal nothing that may not be read ---

struct GuessCase {
    const char *name;
    std::string operation; // contains GUESS, to be replaced
};

class AGuess : public NetconfRules, public testing::WithParamInterface<GuessCase> {
protected:
    AGuess() : NetconfRules(everybody(deny(system_name) + deny(list + "/oc:neighbors/oc:neighbor/oc:state"))) {}

    std::string answer(NetconfClient &client, const std::string &guess) {
        std::string operation = GetParam().operation;
        operation.replace(operation.find("GUESS"), 5, guess);
        const Xml reply = client.rpc(operation);
        const Xml *data = reply.child("data");
        if (data == nullptr)
            throw std::runtime_error("no <data>: " + reply.printed);
        std::string text;
        for (const Xml &each : data->children)
            text += each.printed;
        return text;
    }
};

TEST_P(AGuess, IsAnsweredTheSameRightOrWrong) {
    NetconfClient client(server().socket());
    EXPECT_EQ(answer(client, original), answer(client, "another"));
    EXPECT_EQ(answer(client, "r2.example.net"), answer(client, "another"));
    EXPECT_THAT(answer(client, original), testing::Not(HasSubstr("<system-name>")));
}

std::string xpath(const std::string &expression) {
    return "<filter type=\"xpath\" xmlns:oc=\"http://openconfig.net/yang/lldp\" select=\"" + expression +
           "\"/>";
}

const std::string name_filter = lldp("<config><system-name>GUESS</system-name></config>");
const std::string name_and_more =
    lldp("<config><system-name>GUESS</system-name><system-description/></config><interfaces/>");
const std::string if_named = "/oc:lldp[oc:config/oc:system-name='GUESS']/oc:interfaces";

INSTANTIATE_TEST_SUITE_P(
    By, AGuess,
    testing::Values(
        GuessCase{"AContentMatch", get_config("running", subtree(name_filter))},
        GuessCase{"AContentMatchBesideOthers", get_config("running", subtree(name_and_more))},
        GuessCase{"AContentMatchOfState",
                  "<get>" +
                      subtree(lldp("<interfaces><interface><neighbors><neighbor><state><system-name>GUESS"
                                   "</system-name></state></neighbor></neighbors></interface></interfaces>")) +
                      "</get>"},
        GuessCase{"APredicate", get_config("running", xpath(if_named))},
        GuessCase{"APredicateThatNegates",
                  get_config("running", xpath("/oc:lldp/oc:interfaces[not(/oc:lldp/oc:config/oc:system-name="
                                              "'GUESS')]"))},
        GuessCase{"AFunction",
                  get_config("running", xpath("/oc:lldp/oc:interfaces[starts-with(../oc:config/oc:system-name, "
                                              "'GUESS')]"))},
        GuessCase{"APredicateOnState",
                  "<get>" +
                      xpath("/oc:lldp/oc:interfaces/oc:interface[oc:neighbors/oc:neighbor/oc:state/"
                            "oc:system-name='GUESS']/oc:name") +
                      "</get>"},
        GuessCase{"ASubtreeOfData",
                  get_data("running", "<subtree-filter>" + name_and_more + "</subtree-filter>")},
        GuessCase{"AnXPathOfData", get_data("running", "<xpath-filter>" + if_named + "</xpath-filter>")}),
    [](const auto &test) { return test.param.name; });

// --- operations ---

struct CallCase {
    const char *name;
    std::string module, operation;
    std::string request;
};

class ACall : public NetconfRules, public testing::WithParamInterface<CallCase> {
protected:
    ACall() : NetconfRules(writable + everybody(rpc_rule(GetParam().module, GetParam().operation, "deny"))) {}
};

TEST_P(ACall, IsRefusedByNameAndOthersAreNot) {
    NetconfClient client(server().socket());
    const Xml reply = client.rpc(GetParam().request);
    EXPECT_EQ(error_tag(reply), "access-denied") << reply.printed;
    EXPECT_THAT(reply.text_at("rpc-error/error-message"), HasSubstr(GetParam().operation));
    EXPECT_EQ(reply.children.size(), 1u);
    expect_ok(client.rpc("<validate><source><running/></source></validate>"));
    expect_ok(client.rpc("<close-session/>"));
}

const std::string base = "ietf-netconf", nmda = "ietf-netconf-nmda";

INSTANTIATE_TEST_SUITE_P(
    Of, ACall,
    testing::Values(
        CallCase{"Get", base, "get", "<get/>"},
        CallCase{"GetConfig", base, "get-config", get_config("running")},
        CallCase{"EditConfig", base, "edit-config", edit_config("running", name_edit("new"))},
        CallCase{"CopyConfig", base, "copy-config",
                 "<copy-config><target><candidate/></target><source><running/></source></copy-config>"},
        CallCase{"Lock", base, "lock", lock("running")}, CallCase{"Unlock", base, "unlock", unlock("running")},
        CallCase{"Commit", base, "commit", "<commit/>"},
        CallCase{"DiscardChanges", base, "discard-changes", "<discard-changes/>"},
        CallCase{"CancelCommit", base, "cancel-commit", "<cancel-commit/>"},
        CallCase{"GetSchema", "ietf-netconf-monitoring", "get-schema",
                 "<get-schema xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\"><identifier>"
                 "openconfig-lldp</identifier></get-schema>"},
        CallCase{"GetData", nmda, "get-data", get_data("running")},
        CallCase{"EditData", nmda, "edit-data", edit_data("running", name_edit("new"))},
        CallCase{"CreateSubscription", "notifications", "create-subscription", create_subscription()},
        CallCase{"AnyOperationOfAnyModule", "*", "get", "<get/>"}),
    [](const auto &test) { return test.param.name; });

struct ExecCase {
    const char *name;
    std::string rules;
    std::string request; // SESSION stands for the id of another session
    std::string tag;     // empty for <ok/>
};

class ACallIn : public NetconfRules, public testing::WithParamInterface<ExecCase> {
protected:
    ACallIn() : NetconfRules(GetParam().rules) {}
};

TEST_P(ACallIn, IsDecidedLikeThis) {
    NetconfClient client(server().socket());
    NetconfClient victim(server().socket());
    std::string request = GetParam().request;
    if (const size_t at = request.find("SESSION"); at != std::string::npos)
        request.replace(at, 7, victim.session_id());
    const Xml reply = client.rpc(request);
    EXPECT_EQ(error_tag(reply), GetParam().tag) << reply.printed;
    if (GetParam().tag.empty()) {
        expect_ok(reply);
    }
}

const std::string kill_session = "<kill-session><session-id>SESSION</session-id></kill-session>";
const std::string delete_config = "<delete-config><target><running/></target></delete-config>";
const std::string validate = "<validate><source><running/></source></validate>";
const std::string denied = "access-denied";
const std::string exec_denied = "<exec-default>deny</exec-default>";

INSTANTIATE_TEST_SUITE_P(
    A, ACallIn,
    testing::Values(ExecCase{"KillByDefault", writable, kill_session, denied},
                    ExecCase{"KillThatIsPermitted", everybody(rpc_rule(base, "kill-session", "permit")),
                             kill_session, ""},
                    ExecCase{"KillThatIsPermittedWithItsModule", everybody(module_rule(base, "exec", "permit")),
                             kill_session, ""},
                    ExecCase{"DeleteByDefault", writable, delete_config, denied},
                    ExecCase{"DeleteThatIsPermitted", everybody(rpc_rule(base, "delete-config", "permit")),
                             delete_config, "operation-not-supported"},
                    ExecCase{"ValidationByDefault", writable, validate, ""},
                    ExecCase{"ValidationDeniedByDefault", exec_denied, validate, denied},
                    ExecCase{"ValidationPermittedAgainstTheDefault",
                             exec_denied + everybody(rpc_rule(base, "validate", "permit")), validate, ""},
                    ExecCase{"ValidationDeniedWithItsModule", everybody(module_rule(base, "exec", "deny")),
                             validate, denied},
                    ExecCase{"ValidationInAModuleThatCannotBeRead",
                             everybody(module_rule(base, "read", "deny")), validate, ""},
                    ExecCase{"CloseDeniedByDefault", exec_denied, "<close-session/>", ""},
                    ExecCase{"CloseDeniedByARule",
                             everybody(rpc_rule(base, "close-session", "deny") + module_rule("*", "*", "deny")),
                             "<close-session/>", ""},
                    ExecCase{"KillWhenRulesAreOff",
                             "<enable-nacm>false</enable-nacm>" + everybody(module_rule("*", "*", "deny")),
                             kill_session, ""}),
    [](const auto &test) { return test.param.name; });

// --- notifications ---

struct ToldCase {
    const char *name;
    std::string rules;
    bool tells_changes, tells_sessions;
};

class AToldEvent : public NetconfRules, public testing::WithParamInterface<ToldCase> {
protected:
    AToldEvent() : NetconfRules(writable + GetParam().rules) {}
};

TEST_P(AToldEvent, IsToldToWhoMayReadIt) {
    NetconfClient client(server().socket()), live(server().socket()), later(server().socket());
    expect_ok(live.rpc(
        create_subscription(start_time(long_ago) + stop_time(time_from_now(std::chrono::seconds(3))))));
    expect_ok(client.rpc(edit_config("running", name_edit("new"))));
    const NetconfClient session(server().socket());
    expect_ok(later.rpc(
        create_subscription(start_time(long_ago) + stop_time(time_from_now(std::chrono::seconds(3))))));
    for (NetconfClient *each : {&live, &later}) {
        const std::vector<Xml> events = events_to(*each, "notificationComplete");
        EXPECT_EQ(events_by(events, config_change).size(), GetParam().tells_changes ? 1u : 0u);
        EXPECT_EQ(!events_by(events, session_start).empty(), GetParam().tells_sessions);
        EXPECT_EQ(events_by(events, "replayComplete").size(), 1u);
    }
}

const std::string events = "ietf-netconf-notifications";

INSTANTIATE_TEST_SUITE_P(
    With, AToldEvent,
    testing::Values(
        ToldCase{"NoRule", "", true, true},
        ToldCase{"ChangesDenied", everybody(notification_rule(events, config_change, "deny")), false, true},
        ToldCase{"SessionsDenied", everybody(notification_rule(events, session_start, "deny")), true, false},
        ToldCase{"TheModuleDenied", everybody(module_rule(events, "read", "deny")), false, false},
        ToldCase{"OtherGroupsDenied", rules_for("nogroup", notification_rule(events, config_change, "deny")),
                 true, true},
        ToldCase{"ReadingDeniedByDefault", "<read-default>deny</read-default>", false, false},
        ToldCase{"ReadingDeniedByDefaultAndChangesPermitted",
                 "<read-default>deny</read-default>" +
                     everybody(notification_rule(events, config_change, "permit")),
                 true, false}),
    [](const auto &test) { return test.param.name; });

// --- defaults ---

class ADeniedDefault : public NetconfRules {
protected:
    ADeniedDefault()
        : NetconfRules(writable + everybody(data_rule(list + "/oc:config/oc:enabled", "read", "deny"))) {}
};

TEST_F(ADeniedDefault, IsNotShown) {
    NetconfClient client = client_of(writer);
    expect_ok(client.rpc(edit_config("running", interface_edit("eth9", ""))));
    const std::string report_all =
        "<with-defaults xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-with-defaults\">"
        "report-all</with-defaults>";
    for (const std::string &content :
         {std::string("<interfaces/>"), std::string("<interfaces><interface><config><enabled/></config>"
                                                    "</interface></interfaces>")}) {
        const Xml reply = client.rpc(get_config("running", subtree(lldp(content)) + report_all));
        EXPECT_NE(reply.child("data"), nullptr) << reply.printed;
        EXPECT_THAT(reply.printed, testing::Not(HasSubstr("<enabled>")));
    }
}

} // namespace
} // namespace yfw::test
