// Rules on changes between two configurations (RFC 8341 section 3.4.5).
#include <string>

#include <gtest/gtest.h>

#include "device/access/nacm.h"
#include "nacm_fixture.h"

namespace yfw::access::test {
namespace {

struct WriteCase {
    const char *name;
    std::string rules;
    std::string before;
    std::string after;
    std::string denied; // "ACCESS PATH", empty: nothing
};

std::string words(const std::optional<DeniedWrite> &denied) {
    return denied.has_value() ? std::string(to_string(denied->access)) + " " + denied->path : "";
}

class AChange : public testing::TestWithParam<WriteCase> {};

TEST_P(AChange, IsDeniedWhereTheRulesSay) {
    const Nacm nacm = load(GetParam().rules);
    const yang::DataTree before = parse(GetParam().before, everything());
    const yang::DataTree after = parse(GetParam().after, everything());
    EXPECT_EQ(words(rules_for_ann(nacm).denied_write(before.get(), after.get())), GetParam().denied);
}

const std::string write_permitted = "<write-default>permit</write-default>";
const std::string port = "/oc:lldp/oc:interfaces/oc:interface";
const std::string oc = "/openconfig-lldp:lldp";
const std::string one = "/nacm-test-one:one";

std::string timer(int seconds) {
    return "<hello-timer>" + std::to_string(seconds) + "</hello-timer>";
}

std::string global(const std::string &leaves) {
    return "<config>" + leaves + "</config>";
}

std::string entry(const std::string &name, const std::string &enabled) {
    return "<interface><name>" + name + "</name><config><name>" + name + "</name>" +
           (enabled.empty() ? "" : "<enabled>" + enabled + "</enabled>") + "</config></interface>";
}

std::string interfaces(const std::string &entries) {
    return "<interfaces>" + entries + "</interfaces>";
}

std::string oc_port(const std::string &name) {
    return oc + "/interfaces/interface[name='" + name + "']";
}

const std::string set = lldp(global(timer(30)));
const std::string set_otherwise = lldp(global(timer(60)));
const std::string unset = lldp(global("<system-name>a</system-name>"));
const std::string set_too = lldp(global(timer(30) + "<system-name>a</system-name>"));
const std::string timer_path = "/oc:lldp/oc:config/oc:hello-timer";
const std::string oc_timer = oc + "/config/hello-timer";

const auto name_of_case = [](const auto &test) { return test.param.name; };

INSTANTIATE_TEST_SUITE_P(
    WithoutRules, AChange,
    testing::Values(WriteCase{"IsDeniedWhenALeafIsCreated", "", unset, set_too, "create " + oc_timer},
                    WriteCase{"IsDeniedWhenALeafIsChanged", "", set, set_otherwise, "update " + oc_timer},
                    WriteCase{"IsDeniedWhenALeafIsDeleted", "", set_too, unset, "delete " + oc_timer},
                    WriteCase{"IsPermittedByDefault", write_permitted, set, unset, ""},
                    WriteCase{"HasOtherDefaultsForOtherAccesses",
                              write_permitted +
                                  "<read-default>deny</read-default><exec-default>deny</exec-default>",
                              set, unset, ""},
                    WriteCase{"IsNoneBetweenNothingAndNothing", "", "", "", ""},
                    WriteCase{"IsNoneBetweenTheSame", "", set_too, set_too, ""}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    ByAccess, AChange,
    testing::Values(
        WriteCase{"CreateIsPermitted", all_groups(permit(path(timer_path), "create")), unset, set_too, ""},
        WriteCase{"CreateIsNotUpdate", all_groups(permit(path(timer_path), "create")), set, set_otherwise,
                  "update " + oc_timer},
        WriteCase{"CreateIsNotDelete", all_groups(permit(path(timer_path), "create")), set_too, unset,
                  "delete " + oc_timer},
        WriteCase{"UpdateIsPermitted", all_groups(permit(path(timer_path), "update")), set, set_otherwise, ""},
        WriteCase{"UpdateIsNotCreate", all_groups(permit(path(timer_path), "update")), unset, set_too,
                  "create " + oc_timer},
        WriteCase{"UpdateIsNotDelete", all_groups(permit(path(timer_path), "update")), set_too, unset,
                  "delete " + oc_timer},
        WriteCase{"DeleteIsPermitted", all_groups(permit(path(timer_path), "delete")), set_too, unset, ""},
        WriteCase{"DeleteIsNotCreate", all_groups(permit(path(timer_path), "delete")), unset, set_too,
                  "create " + oc_timer},
        WriteCase{"ReadIsNoWrite", all_groups(permit(path(timer_path), "read exec")), set, set_otherwise,
                  "update " + oc_timer},
        WriteCase{"AllAccessesAreMeant", all_groups(permit(path(timer_path))), set, set_otherwise, ""},
        WriteCase{"OneIsDeniedOfThePermitted", write_permitted + all_groups(deny(path(timer_path), "delete")),
                  set_too, unset, "delete " + oc_timer},
        WriteCase{"TheOthersStayPermitted", write_permitted + all_groups(deny(path(timer_path), "delete")), set,
                  set_otherwise, ""}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    ByRule, AChange,
    testing::Values(
        WriteCase{"APathIsForAllBelow", all_groups(permit(path("/oc:lldp"))), "",
                  lldp(global(timer(1)) + interfaces(entry("e1", "true"))), ""},
        WriteCase{"TheRootIsForAll", all_groups(permit(path("/"))), "", set, ""},
        WriteCase{"ARuleWithoutTypeIsForAll", all_groups(permit("")), "", set, ""},
        WriteCase{"ARuleForOperationsIsForNoData", all_groups(permit(operation("*"))), set, set_otherwise,
                  "update " + oc_timer},
        WriteCase{"ARuleForNotificationsIsForNoData", all_groups(permit(notification("*"))), set, set_otherwise,
                  "update " + oc_timer},
        WriteCase{"ARuleForItsModule", all_groups(permit(module("openconfig-lldp"))), set, set_otherwise, ""},
        WriteCase{"ARuleForAnotherModule", all_groups(permit(module("nacm-test-one"))), set, set_otherwise,
                  "update " + oc_timer},
        WriteCase{"ARuleForTheModuleOfAnAugment", all_groups(permit(module("nacm-test-one"))),
                  in_one("<plain>a</plain>"), in_one("<added xmlns=\"urn:test:two\">x</added>"),
                  "create /nacm-test-one:one/nacm-test-two:added"},
        WriteCase{"TheFirstRuleDecidesToPermit",
                  all_groups(permit(path(timer_path)) + deny(path("/oc:lldp/oc:config"))), set, set_otherwise,
                  ""},
        WriteCase{"TheFirstRuleDecidesToDeny",
                  all_groups(deny(path("/oc:lldp/oc:config")) + permit(path(timer_path))), set, set_otherwise,
                  "update " + oc_timer},
        WriteCase{"OneEntryIsPermitted", all_groups(permit(path(port + "[oc:name='e1']"))),
                  lldp(interfaces(entry("e1", "true") + entry("e2", "true"))),
                  lldp(interfaces(entry("e1", "false") + entry("e2", "true"))), ""},
        WriteCase{"AnotherEntryIsNot", all_groups(permit(path(port + "[oc:name='e1']"))),
                  lldp(interfaces(entry("e1", "true") + entry("e2", "true"))),
                  lldp(interfaces(entry("e1", "false") + entry("e2", "false"))),
                  "update " + oc_port("e2") + "/config/enabled"},
        WriteCase{"WhatDoesNotChangeIsNotAsked", write_permitted + all_groups(deny(path(timer_path))),
                  lldp(global(timer(30) + "<system-name>a</system-name>")),
                  lldp(global(timer(30) + "<system-name>b</system-name>")), ""},
        WriteCase{"AnEntryThatDoesNotChangeIsNotAsked",
                  write_permitted +
                      all_groups(deny(path(port + "/oc:name")) + deny(path(port + "/oc:config/oc:name"))),
                  lldp(interfaces(entry("e1", "true"))), lldp(interfaces(entry("e1", "false"))), ""}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    OfASubtree, AChange,
    testing::Values(
        WriteCase{"IsDeniedAtTheEntryThatIsCreated", all_groups(permit(path(port + "/oc:config"))), lldp(""),
                  lldp(interfaces(entry("e1", "true"))), "create " + oc_port("e1")},
        WriteCase{"IsDeniedAtANodeWithinWhatIsCreated",
                  write_permitted + all_groups(deny(path(port + "/oc:config/oc:enabled"))), lldp(""),
                  lldp(interfaces(entry("e1", "") + entry("e2", "false"))),
                  "create " + oc_port("e2") + "/config/enabled"},
        WriteCase{"IsDeniedAtTheEntryThatIsDeleted", write_permitted + all_groups(deny(path(port), "delete")),
                  lldp(interfaces(entry("e1", "true") + entry("e2", "true"))),
                  lldp(interfaces(entry("e2", "true"))), "delete " + oc_port("e1")},
        WriteCase{"IsDeniedAtANodeWithinWhatIsDeleted",
                  write_permitted + all_groups(deny(path(port + "/oc:config/oc:enabled"), "delete")),
                  lldp(interfaces(entry("e1", "true"))), "", "delete " + oc_port("e1") + "/config/enabled"},
        WriteCase{"IsDeniedWhenAllIsDeleted", "", set, "", "delete " + oc_timer},
        WriteCase{"IsDeniedWhenAllIsCreated", "", "", set, "create " + oc_timer},
        WriteCase{"IsPermittedWhereItsContainersAreNot",
                  all_groups(permit(path(timer_path)) + deny(path("/oc:lldp"))), "", set, ""},
        WriteCase{"IsDeniedAtTheFirstOfSeveral", "", lldp(global(timer(1)) + interfaces(entry("e1", "true"))),
                  lldp(global(timer(2)) + interfaces(entry("e1", "false"))), "update " + oc_timer},
        WriteCase{"IsDeniedAtTheFirstAlsoWhenItIsCreated", "", lldp(global("<system-name>a</system-name>")),
                  lldp(global(timer(2) + "<system-name>b</system-name>")), "create " + oc_timer},
        WriteCase{"IsDeniedAtTheFirstAlsoWhenItIsDeleted", "",
                  lldp(global(timer(2) + "<system-name>a</system-name>")),
                  lldp(global("<system-name>b</system-name>")), "delete " + oc_timer},
        WriteCase{"IsDeniedAtWhatChangesBehindManyThatDoNot",
                  write_permitted + all_groups(deny(path(port + "[oc:name='e7']"))),
                  lldp(interfaces(entry("e1", "true") + entry("e2", "true") + entry("e3", "true") +
                                  entry("e4", "true") + entry("e5", "true") + entry("e7", "true"))),
                  lldp(interfaces(entry("e2", "true") + entry("e3", "true") + entry("e4", "true") +
                                  entry("e5", "true") + entry("e6", "true") + entry("e7", "false"))),
                  "update " + oc_port("e7") + "/config/enabled"},
        WriteCase{"IsNoneWhenEntriesWithoutOrderStandElsewhere", "",
                  lldp(interfaces(entry("e1", "true") + entry("e2", "true"))),
                  lldp(interfaces(entry("e2", "true") + entry("e1", "true"))), ""},
        WriteCase{"IsDeniedAtAContainerThatMeansSomething",
                  all_groups(permit(path("/one:one/one:present/one:inside"))), in_one(""),
                  in_one("<present><inside>x</inside></present>"), "create " + one + "/present"},
        WriteCase{"IsNoneWhenAContainerComesEmpty", "", "", lldp("<config/>"), ""}),
    name_of_case);

std::string first_come(const std::string &id, const std::string &text) {
    return "<first-come><id>" + id + "</id><text>" + text + "</text></first-come>";
}

INSTANTIATE_TEST_SUITE_P(
    OfSeveralValues, AChange,
    testing::Values(WriteCase{"CreatesAValue", all_groups(permit(path("/one:one"), "update delete")),
                              in_one("<word>a</word>"), in_one("<word>a</word><word>b</word>"),
                              "create " + one + "/word[.='b']"},
                    WriteCase{"DeletesAValue", all_groups(permit(path("/one:one"), "create update")),
                              in_one("<word>a</word><word>b</word>"), in_one("<word>b</word>"),
                              "delete " + one + "/word[.='a']"},
                    WriteCase{"IsPermittedForOneValue", all_groups(permit(path("/one:one/one:word[.='b']"))),
                              in_one("<word>a</word>"), in_one("<word>a</word><word>b</word>"), ""},
                    WriteCase{"IsAnUpdateWhenAnEntryMoves",
                              all_groups(permit(path("/one:one"), "create delete")),
                              in_one(first_come("a", "1") + first_come("b", "2")),
                              in_one(first_come("b", "2") + first_come("a", "1")),
                              "update " + one + "/first-come[id='b']"},
                    WriteCase{"IsOneUpdateWhenTheLastEntryMovesToTheFront",
                              write_permitted + all_groups(deny(path("/one:one/one:first-come[one:id='a']")) +
                                                           deny(path("/one:one/one:first-come[one:id='b']"))),
                              in_one(first_come("a", "1") + first_come("b", "2") + first_come("c", "3")),
                              in_one(first_come("c", "3") + first_come("a", "1") + first_come("b", "2")), ""},
                    WriteCase{"FindsWhatChangesInAnEntryThatMoves",
                              write_permitted + all_groups(deny(path("/one:one/one:first-come/one:text"))),
                              in_one(first_come("a", "1") + first_come("b", "2")),
                              in_one(first_come("b", "3") + first_come("a", "1")),
                              "update " + one + "/first-come[id='b']/text"},
                    WriteCase{"FindsTheValueThatMoves", "", in_one("<word>a</word><word>b</word>"),
                              in_one("<word>b</word><word>a</word>"), "update " + one + "/word[.='b']"},
                    WriteCase{"IsNoMoveWhenAnEntryBeforeIsDeleted",
                              all_groups(permit(path("/one:one/one:first-come[one:id='a']"))),
                              in_one(first_come("a", "1") + first_come("b", "2") + first_come("c", "3")),
                              in_one(first_come("b", "2") + first_come("c", "3")), ""},
                    WriteCase{"IsNoMoveWhenAnEntryBeforeIsCreated",
                              all_groups(permit(path("/one:one/one:first-come[one:id='a']"))),
                              in_one(first_come("b", "2") + first_come("c", "3")),
                              in_one(first_come("a", "1") + first_come("b", "2") + first_come("c", "3")), ""},
                    WriteCase{"LeavesWhatIsInAnEntryThatMoves",
                              write_permitted + all_groups(deny(path("/one:one/one:first-come/one:id")) +
                                                           deny(path("/one:one/one:first-come/one:text"))),
                              in_one(first_come("a", "1") + first_come("b", "2")),
                              in_one(first_come("b", "2") + first_come("a", "1")), ""}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    OfSensitiveData, AChange,
    testing::Values(WriteCase{"IsDeniedWhereWritingIsSensitive", write_permitted,
                              in_one("<guarded><inside>a</inside></guarded>"),
                              in_one("<guarded><inside>b</inside></guarded>"),
                              "update " + one + "/guarded/inside"},
                    WriteCase{"IsDeniedWhereAllIsSensitive", write_permitted, in_one(""),
                              in_one("<secret><inside>b</inside></secret>"),
                              "create " + one + "/secret/inside"},
                    WriteCase{"IsDeniedBelowInAnotherModule", write_permitted, in_one(""),
                              in_one("<secret><more xmlns=\"urn:test:two\">b</more></secret>"),
                              "create " + one + "/secret/nacm-test-two:more"},
                    WriteCase{"IsPermittedBesideIt", write_permitted,
                              in_one("<plain>a</plain><guarded><inside>a</inside></guarded>"),
                              in_one("<plain>b</plain><guarded><inside>a</inside></guarded>"), ""},
                    WriteCase{"IsPermittedByARule", all_groups(permit(path("/one:one/one:guarded"))),
                              in_one(""), in_one("<guarded><inside>b</inside></guarded>"), ""}),
    name_of_case);

// ---- values by default ---------------------------------------------------------------------------------

class AChangeOfValidData : public testing::TestWithParam<WriteCase> {};

TEST_P(AChangeOfValidData, IsDeniedWhereTheRulesSay) {
    const Nacm nacm = load(GetParam().rules);
    const yang::DataTree before = parse_valid(GetParam().before, openconfig_only());
    const yang::DataTree after = parse_valid(GetParam().after, openconfig_only());
    EXPECT_EQ(words(rules_for_ann(nacm).denied_write(before.get(), after.get())), GetParam().denied);
}

const std::string enabled_path = "/oc:lldp/oc:config/oc:enabled";

INSTANTIATE_TEST_SUITE_P(
    Of, AChangeOfValidData,
    testing::Values(WriteCase{"ADefaultThatComesWithAnother",
                              write_permitted + all_groups(deny(path(enabled_path))), "", set, ""},
                    WriteCase{"ADefaultThatComesWithAnEntry",
                              write_permitted + all_groups(deny(path(port + "/oc:config/oc:enabled"))),
                              lldp(""), lldp(interfaces(entry("e1", ""))), ""},
                    WriteCase{"AValueThatIsTheDefault", "", lldp(global(timer(30))),
                              lldp(global("<enabled>true</enabled>" + timer(30))),
                              "create " + oc + "/config/enabled"},
                    WriteCase{"AValueThatBecomesTheDefault", "",
                              lldp(global("<enabled>false</enabled>" + timer(30))), lldp(global(timer(30))),
                              "delete " + oc + "/config/enabled"},
                    WriteCase{"ALeafInAContainerOfDefaults", all_groups(permit(path(enabled_path))), lldp(""),
                              lldp(global("<enabled>false</enabled>")), ""}),
    name_of_case);

TEST(ConfigurationsOfAContextWithoutTheModuleOfARule, AreLeftAloneByTheRule) {
    const Nacm nacm =
        load(write_permitted + all_groups(deny(path("/one:one")) + deny(path("/mon:netconf-state"))));
    const yang::DataTree before = parse(set, openconfig_only());
    const yang::DataTree after = parse(set_otherwise, openconfig_only());
    EXPECT_EQ(words(rules_for_ann(nacm).denied_write(before.get(), after.get())), "");
}

TEST(ConfigurationsThatWereCompared, AreAsTheyWere) {
    const Nacm nacm = load("");
    const yang::DataTree before = parse(set, openconfig_only());
    const yang::DataTree after = parse(set_otherwise, openconfig_only());
    EXPECT_TRUE(rules_for_ann(nacm).denied_write(before.get(), after.get()).has_value());
    EXPECT_EQ(print(before), set);
    EXPECT_EQ(print(after), set_otherwise);
}

} // namespace
} // namespace yfw::access::test
