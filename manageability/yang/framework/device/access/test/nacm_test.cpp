// Group membership, and rules for operations and notifications (RFC 8341 sections 3.4.4, 3.4.6).
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "device/access/nacm.h"
#include "nacm_fixture.h"

namespace yfw::access::test {
namespace {

// ---- operations --------------------------------------------------------------------------------------

struct OperationCase {
    const char *name;
    std::string rules;
    std::string module;
    std::string operation;
    bool is_permitted;
    bool default_denied = false;
};

class AnOperation : public testing::TestWithParam<OperationCase> {};

TEST_P(AnOperation, IsPermittedAsTheRulesSay) {
    const Nacm nacm = load(GetParam().rules);
    EXPECT_EQ(
        rules_for_ann(nacm).may_execute(GetParam().module, GetParam().operation, GetParam().default_denied),
        GetParam().is_permitted);
}

const std::string base = "ietf-netconf";
const std::string monitoring = "ietf-netconf-monitoring";
const std::string exec_denied = "<exec-default>deny</exec-default>";

INSTANTIATE_TEST_SUITE_P(
    When, AnOperation,
    testing::Values(
        OperationCase{"NoRuleSaysAnything", "", base, "get", true},
        OperationCase{"TheDefaultIsToDeny", exec_denied, base, "get", false},
        OperationCase{"ARuleDeniesIt", all_groups(deny(operation("get"))), base, "get", false},
        OperationCase{"ARuleDeniesAnother", all_groups(deny(operation("get"))), base, "get-config", true},
        OperationCase{"ARuleDeniesEveryOperation", all_groups(deny(operation("*"))), base, "lock", false},
        OperationCase{"ARulePermitsItAgainstTheDefault", exec_denied + all_groups(permit(operation("get"))),
                      base, "get", true},
        OperationCase{"ARulePermitsAnotherAgainstTheDefault",
                      exec_denied + all_groups(permit(operation("get"))), base, "lock", false},
        OperationCase{"ARuleOfItsModuleDeniesIt", all_groups(deny(module(base) + operation("*"))), base, "get",
                      false},
        OperationCase{"ARuleOfAnotherModuleDeniesItsName", all_groups(deny(module(base) + operation("*"))),
                      monitoring, "get-schema", true},
        OperationCase{"ARuleOfAnyModuleDeniesIt", all_groups(deny(module("*") + operation("get-schema"))),
                      monitoring, "get-schema", false},
        OperationCase{"ARuleDeniesExecution", all_groups(deny(operation("get"), "exec")), base, "get", false},
        OperationCase{"ARuleDeniesSeveralAccesses", all_groups(deny(operation("get"), "read exec update")),
                      base, "get", false},
        OperationCase{"ARuleDeniesOtherAccesses",
                      all_groups(deny(operation("get"), "create read update delete")), base, "get", true},
        OperationCase{"ARuleWithoutTypeDeniesAll", all_groups(deny("")), base, "get", false},
        OperationCase{"ARuleWithoutTypeDeniesItsModule", all_groups(deny(module(base))), base, "get", false},
        OperationCase{"ARuleWithoutTypeDeniesAnotherModule", all_groups(deny(module(base))), monitoring,
                      "get-schema", true},
        OperationCase{"ARuleDeniesTheNotificationOfItsName", all_groups(deny(notification("*"))), base, "get",
                      true},
        OperationCase{"ARuleDeniesAllData", all_groups(deny(path("/"))), base, "get", true}),
    [](const auto &test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    WhereTheOrderDecides, AnOperation,
    testing::Values(
        OperationCase{"PermittedFirst", all_groups(permit(operation("get")) + deny("")), base, "get", true},
        OperationCase{"DeniedFirst", all_groups(deny("") + permit(operation("get"))), base, "get", false},
        OperationCase{"PermittedInTheFirstList", all_groups(permit(operation("get"))) + all_groups(deny("")),
                      base, "get", true},
        OperationCase{"DeniedInTheFirstList", all_groups(deny("")) + all_groups(permit(operation("get"))), base,
                      "get", false},
        OperationCase{"PermittedAfterOnesThatDoNotMatch",
                      all_groups(deny(operation("lock")) + deny(operation("get"), "read") +
                                 permit(operation("get")) + deny("")),
                      base, "get", true}),
    [](const auto &test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    ThatIsSensitive, AnOperation,
    testing::Values(OperationCase{"DeniedWithoutARule", "", "a-module", "wipe", false, true},
                    OperationCase{"DeniedWhenOnlyOthersArePermitted", all_groups(permit(operation("get"))),
                                  "a-module", "wipe", false, true},
                    OperationCase{"PermittedByARule", all_groups(permit(operation("wipe"))), "a-module", "wipe",
                                  true, true},
                    OperationCase{"KillSessionIsDeniedWithoutARule", "", base, "kill-session", false},
                    OperationCase{"DeleteConfigIsDeniedWithoutARule", "", base, "delete-config", false},
                    OperationCase{"KillSessionIsPermittedByARule",
                                  all_groups(permit(operation("kill-session"))), base, "kill-session", true},
                    OperationCase{"DeleteConfigIsPermittedByARule", all_groups(permit("", "exec")), base,
                                  "delete-config", true},
                    OperationCase{"KillSessionOfAnotherModuleIsNone", "", "a-module", "kill-session", true}),
    [](const auto &test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    ThatClosesTheSession, AnOperation,
    testing::Values(OperationCase{"IsPermittedByDefault", exec_denied, base, "close-session", true},
                    OperationCase{"IsPermittedAgainstARule", all_groups(deny("")), base, "close-session", true},
                    OperationCase{"IsAnotherInAnotherModule", all_groups(deny("")), "a-module", "close-session",
                                  false}),
    [](const auto &test) { return test.param.name; });

// ---- notifications -----------------------------------------------------------------------------------

struct NotificationCase {
    const char *name;
    std::string rules;
    std::string module;
    std::string notification;
    bool is_permitted;
    bool default_denied = false;
};

class ANotification : public testing::TestWithParam<NotificationCase> {};

TEST_P(ANotification, IsSentAsTheRulesSay) {
    const Nacm nacm = load(GetParam().rules);
    EXPECT_EQ(
        rules_for_ann(nacm).may_be_told(GetParam().module, GetParam().notification, GetParam().default_denied),
        GetParam().is_permitted);
}

const std::string events = "ietf-netconf-notifications";
const std::string stream = "nc-notifications";
const std::string read_denied = "<read-default>deny</read-default>";

INSTANTIATE_TEST_SUITE_P(
    When, ANotification,
    testing::Values(
        NotificationCase{"NoRuleSaysAnything", "", events, "netconf-session-end", true},
        NotificationCase{"TheDefaultIsToDeny", read_denied, events, "netconf-session-end", false},
        NotificationCase{"OnlyExecutionIsDeniedByDefault", exec_denied, events, "netconf-session-end", true},
        NotificationCase{"ItIsSensitive", "", "a-module", "alarm", false, true},
        NotificationCase{"ItIsSensitiveAndARulePermitsIt", all_groups(permit(notification("alarm"))),
                         "a-module", "alarm", true, true},
        NotificationCase{"ARuleDeniesIt", all_groups(deny(notification("netconf-session-end"))), events,
                         "netconf-session-end", false},
        NotificationCase{"ARuleDeniesAnother", all_groups(deny(notification("netconf-session-start"))), events,
                         "netconf-session-end", true},
        NotificationCase{"ARuleDeniesEvery", all_groups(deny(notification("*"))), events, "netconf-session-end",
                         false},
        NotificationCase{"ARulePermitsItAgainstTheDefault",
                         read_denied + all_groups(permit(notification("netconf-session-end"))), events,
                         "netconf-session-end", true},
        NotificationCase{"ARuleOfItsModuleDeniesIt", all_groups(deny(module(events) + notification("*"))),
                         events, "netconf-session-end", false},
        NotificationCase{"ARuleOfAnotherModuleDeniesItsName",
                         all_groups(deny(module("a-module") + notification("*"))), events,
                         "netconf-session-end", true},
        NotificationCase{"ARuleDeniesReading", all_groups(deny(notification("*"), "read")), events,
                         "netconf-session-end", false},
        NotificationCase{"ARuleDeniesOtherAccesses",
                         all_groups(deny(notification("*"), "exec create update delete")), events,
                         "netconf-session-end", true},
        NotificationCase{"ARuleWithoutTypeDeniesAll", all_groups(deny("")), events, "netconf-session-end",
                         false},
        NotificationCase{"ARuleDeniesTheOperationOfItsName", all_groups(deny(operation("*"))), events,
                         "netconf-session-end", true},
        NotificationCase{"ARuleDeniesAllData", all_groups(deny(path("/"))), events, "netconf-session-end",
                         true},
        NotificationCase{"ARulePermitsItBeforeOneDenies",
                         all_groups(permit(notification("netconf-session-end")) + deny("")), events,
                         "netconf-session-end", true},
        NotificationCase{"ItEndsAReplay", read_denied + all_groups(deny("")), stream, "replayComplete", true},
        NotificationCase{"ItEndsASubscription", read_denied + all_groups(deny("")), stream,
                         "notificationComplete", true}),
    [](const auto &test) { return test.param.name; });

// ---- groups ------------------------------------------------------------------------------------------

struct GroupCase {
    const char *name;
    std::string settings; // including groups
    std::vector<std::string> list_groups;
    std::vector<std::string> external_groups;
    bool has_the_rules;
};

class AUser : public testing::TestWithParam<GroupCase> {};

TEST_P(AUser, HasTheRulesOfTheirGroups) {
    const Nacm nacm = load(GetParam().settings + rules_of(GetParam().list_groups, deny("")));
    const UserRules rules = nacm.rules_of("ann", GetParam().external_groups);
    EXPECT_EQ(!rules.may_execute(base, "get", false), GetParam().has_the_rules);
    EXPECT_EQ(!rules.may_be_told(events, "netconf-session-end"), GetParam().has_the_rules);
}

const std::string two_groups = "<groups><group><name>friends</name><user-name>bob</user-name>"
                               "<user-name>ann</user-name></group>"
                               "<group><name>staff</name><user-name>bob</user-name></group></groups>";
const std::string no_external = "<enable-external-groups>false</enable-external-groups>";

INSTANTIATE_TEST_SUITE_P(
    When, AUser,
    testing::Values(
        GroupCase{"TheFileNamesThem", two_groups, {"friends"}, {}, true},
        GroupCase{"TheFileNamesOthers", two_groups, {"staff"}, {}, false},
        GroupCase{"OneGroupOfTheListIsTheirs", two_groups, {"staff", "friends"}, {}, true},
        GroupCase{"TheGroupIsExternal", two_groups, {"staff"}, {"staff"}, true},
        GroupCase{"TheExternalGroupIsUnknownToTheFile", "", {"wheel"}, {"staff", "wheel"}, true},
        GroupCase{"ExternalGroupsAreOff", no_external, {"wheel"}, {"wheel"}, false},
        GroupCase{
            "ExternalGroupsAreOffAndTheFileNamesThem", no_external + two_groups, {"friends"}, {"wheel"}, true},
        GroupCase{"TheListIsForAllGroups", two_groups, {"*"}, {}, true},
        GroupCase{"TheListIsForAllGroupsAndTheirsIsExternal", "", {"*"}, {"wheel"}, true},
        GroupCase{"TheyAreInNoGroup", "", {"*", "staff"}, {}, false},
        GroupCase{"TheirOnlyGroupsAreExternalAndOff", no_external, {"*"}, {"wheel"}, false},
        GroupCase{"TheListHasNoGroup", two_groups, {}, {"wheel"}, false}),
    [](const auto &test) { return test.param.name; });

TEST(AUserWithoutGroups, IsUnderTheDefaults) {
    const Nacm nacm = load(exec_denied + read_denied + all_groups(permit("")));
    EXPECT_FALSE(nacm.rules_of("ann", {}).may_execute(base, "get", false));
    EXPECT_FALSE(nacm.rules_of("ann", {}).may_be_told(events, "netconf-session-end"));
}

TEST(RulesOfSeveralUsers, AreNotMixed) {
    const Nacm nacm = load(two_groups + rules_of({"friends"}, deny(operation("lock"))) +
                           rules_of({"staff"}, deny(operation("get"))));
    EXPECT_TRUE(nacm.rules_of("ann", {}).may_execute(base, "get", false));
    EXPECT_FALSE(nacm.rules_of("ann", {}).may_execute(base, "lock", false));
    EXPECT_FALSE(nacm.rules_of("bob", {}).may_execute(base, "get", false));
    EXPECT_FALSE(nacm.rules_of("bob", {}).may_execute(base, "lock", false));
}

// ---- switched off ------------------------------------------------------------------------------------

TEST(AccessControl, IsOnByDefault) {
    EXPECT_TRUE(load("").is_enabled());
}

TEST(AccessControlThatIsOff, PermitsEverything) {
    const Nacm nacm = load("<enable-nacm>false</enable-nacm><write-default>deny</write-default>" + exec_denied +
                           read_denied + all_groups(deny("")));
    const UserRules rules = rules_for_ann(nacm);
    EXPECT_FALSE(nacm.is_enabled());
    EXPECT_TRUE(rules.may_execute(base, "kill-session", true));
    EXPECT_TRUE(rules.may_be_told(events, "netconf-session-end", true));
    yang::DataTree data = parse(lldp("<config><system-name>a</system-name></config>"), openconfig_only());
    rules.remove_unreadable(data);
    EXPECT_EQ(print(data), lldp("<config><system-name>a</system-name></config>"));
    EXPECT_FALSE(rules.denied_write(nullptr, data.get()).has_value());
}

TEST(RulesThatWereMoved, StillServeTheirUsers) {
    Nacm loaded = load(all_groups(deny(operation("get"))));
    const UserRules rules = rules_for_ann(loaded);
    const Nacm moved = std::move(loaded);
    EXPECT_FALSE(rules.may_execute(base, "get", false));
    EXPECT_TRUE(rules.may_execute(base, "lock", false));
}

TEST(AnAccess, HasTheNameThatRulesUse) {
    EXPECT_EQ(to_string(Access::read), "read");
    EXPECT_EQ(to_string(Access::create), "create");
    EXPECT_EQ(to_string(Access::update), "update");
    EXPECT_EQ(to_string(Access::remove), "delete");
    EXPECT_EQ(to_string(Access::exec), "exec");
}

} // namespace
} // namespace yfw::access::test
