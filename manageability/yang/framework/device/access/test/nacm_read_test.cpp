// Rules remove unreadable nodes from data (RFC 8341 section 3.4.5).
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "device/access/nacm.h"
#include "nacm_fixture.h"
#include "yang/forest.h"

namespace yfw::access::test {
namespace {

struct ReadCase {
    const char *name;
    std::string rules;
    std::string data;
    std::string left;
};

class Data : public testing::TestWithParam<ReadCase> {};

TEST_P(Data, IsReadAsTheRulesSay) {
    const Nacm nacm = load(GetParam().rules);
    yang::DataTree data = parse(GetParam().data, everything());
    rules_for_ann(nacm).remove_unreadable(data);
    // Parsed, because libyang reorders top-level nodes.
    EXPECT_EQ(print(data), print(parse(GetParam().left, everything())));
}

std::string entry(const std::string &name, const std::string &inside = "") {
    return "<interface><name>" + name + "</name>" + inside + "</interface>";
}

std::string interfaces(const std::string &inside) {
    return inside.empty() ? "<interfaces/>" : "<interfaces>" + inside + "</interfaces>";
}

const std::string timer = "<hello-timer>30</hello-timer>";
const std::string system_name = "<system-name>r1</system-name>";
const std::string config = "<config>" + timer + system_name + "</config>";
const std::string state = "<state>" + system_name + "</state>";
const std::string on = "<config><enabled>true</enabled></config>";
const std::string two_ports = interfaces(entry("e1", on) + entry("e2", on));
const std::string device = lldp(config + state + two_ports);

const std::string port = "/oc:lldp/oc:interfaces/oc:interface";
const std::string port_e1 = port + "[oc:name='e1']";
const std::string read_denied = "<read-default>deny</read-default>";

const auto name_of_case = [](const auto &test) { return test.param.name; };

INSTANTIATE_TEST_SUITE_P(
    WithoutRules, Data,
    testing::Values(ReadCase{"AllIsReadable", "", device, device},
                    ReadCase{"NothingIsReadableByDefault", read_denied, device, ""},
                    ReadCase{"NoDataStaysNoData", all_groups(deny("")), "", ""},
                    ReadCase{"OtherDefaultsAreForOtherAccesses",
                             "<write-default>deny</write-default><exec-default>deny</exec-default>", device,
                             device}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    ByPath, Data,
    testing::Values(
        ReadCase{"AContainerGoesWithAllBelow", all_groups(deny(path("/oc:lldp/oc:config"))), device,
                 lldp(state + two_ports)},
        ReadCase{"ALeafGoesAlone", all_groups(deny(path("/oc:lldp/oc:config/oc:hello-timer"))), device,
                 lldp("<config>" + system_name + "</config>" + state + two_ports)},
        ReadCase{"AContainerStaysWithoutItsLeaves",
                 all_groups(deny(path("/oc:lldp/oc:config/oc:hello-timer")) +
                            deny(path("/oc:lldp/oc:config/oc:system-name"))),
                 lldp(config), lldp("<config/>")},
        ReadCase{"TheTopGoesWithAllBelow", all_groups(deny(path("/oc:lldp"))), device, ""},
        ReadCase{"StateGoesAsConfigurationDoes", all_groups(deny(path("/oc:lldp/oc:state"))), device,
                 lldp(config + two_ports)},
        ReadCase{"AllEntriesGoWithoutKeys", all_groups(deny(path(port))), device,
                 lldp(config + state + interfaces(""))},
        ReadCase{"OneEntryGoesWithItsKey", all_groups(deny(path(port_e1))), device,
                 lldp(config + state + interfaces(entry("e2", on)))},
        ReadCase{"AnEntryThatIsNotThereChangesNothing", all_groups(deny(path(port + "[oc:name='e9']"))), device,
                 device},
        ReadCase{"PartsOfAllEntriesGoWithoutKeys", all_groups(deny(path(port + "/oc:config"))), device,
                 lldp(config + state + interfaces(entry("e1") + entry("e2")))},
        ReadCase{"PartsOfOneEntryGoWithItsKey", all_groups(deny(path(port_e1 + "/oc:config/oc:enabled"))),
                 device, lldp(config + state + interfaces(entry("e1", "<config/>") + entry("e2", on)))},
        ReadCase{"AnEntryGoesWithItsKeyLeaf", all_groups(deny(path(port_e1 + "/oc:name"))), device,
                 lldp(config + state + interfaces(entry("e2", on)))},
        ReadCase{"AllEntriesGoWithTheirKeyLeaf", all_groups(deny(path(port + "/oc:name"))), device,
                 lldp(config + state + interfaces(""))},
        ReadCase{"AnEntryGoesWithOneOfItsKeys",
                 all_groups(deny(path("/one:one/one:pair[one:left='a'][one:right='1']/one:right"))),
                 in_one("<pair><left>a</left><right>1</right><sum>a1</sum></pair>"
                        "<pair><left>a</left><right>2</right><sum>a2</sum></pair>"),
                 in_one("<pair><left>a</left><right>2</right><sum>a2</sum></pair>")},
        ReadCase{"AKeyWithAQuoteIsFound", all_groups(deny(path(port + "[oc:name=\"e'1\"]"))),
                 lldp(interfaces(entry("e'1") + entry("e1"))), lldp(interfaces(entry("e1")))},
        ReadCase{"AValueOfALeafListGoesAlone", all_groups(deny(path("/one:one/one:word[.='b']"))),
                 in_one("<word>a</word><word>b</word><word>c</word>"), in_one("<word>a</word><word>c</word>")},
        ReadCase{"TheRootIsAllData", all_groups(deny(path("/"))), device, ""},
        ReadCase{
            "NothingBelowWhatIsDenied",
            all_groups(permit(path("/oc:lldp/oc:config/oc:hello-timer")) + deny(path("/oc:lldp/oc:config"))),
            device, lldp(state + two_ports)},
        ReadCase{"NothingBelowWhatIsDeniedByDefault",
                 read_denied + all_groups(permit(path("/oc:lldp/oc:config"))), device, ""}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    InTheOrderOfRules, Data,
    testing::Values(
        ReadCase{"OneEntryIsPermittedBeforeAllAreDenied", all_groups(permit(path(port_e1)) + deny(path(port))),
                 device, lldp(config + state + interfaces(entry("e1", on)))},
        ReadCase{"OneEntryIsPermittedAfterAllAreDenied", all_groups(deny(path(port)) + permit(path(port_e1))),
                 device, lldp(config + state + interfaces(""))},
        ReadCase{"ARuleOfALevelAboveComesFirst",
                 all_groups(permit(path("/oc:lldp")) + deny(path("/oc:lldp/oc:config"))), device, device},
        ReadCase{"ARuleOfALevelBelowComesFirst",
                 all_groups(deny(path("/oc:lldp/oc:config")) + permit(path("/oc:lldp"))), device,
                 lldp(state + two_ports)},
        ReadCase{"AllIsPermittedFirst", all_groups(permit("") + deny(path("/oc:lldp"))), device, device},
        ReadCase{"AllIsDeniedLast", all_groups(permit(path("/oc:lldp")) + deny("")),
                 device + "<last xmlns=\"urn:test:one\">x</last>", device},
        ReadCase{"AListBeforeAnother",
                 all_groups(permit(path("/oc:lldp/oc:config"))) +
                     all_groups(deny(path("/oc:lldp/oc:config")) + deny(path("/oc:lldp/oc:state"))),
                 device, lldp(config + two_ports)},
        ReadCase{"SeveralRulesOnOneWayDown",
                 all_groups(permit(path(port_e1 + "/oc:name")) + deny(path(port + "/oc:config/oc:enabled")) +
                            permit(path("/oc:lldp/oc:interfaces")) + deny(path("/oc:lldp/oc:config")) +
                            permit(path("/oc:lldp")) + deny("")),
                 device, lldp(state + interfaces(entry("e1", "<config/>") + entry("e2", "<config/>")))},
        ReadCase{"ARuleWithoutTypeBetweenPaths",
                 all_groups(deny(path("/oc:lldp/oc:state")) + permit("") + deny(path("/oc:lldp/oc:config"))),
                 device, lldp(config + two_ports)}),
    name_of_case);

const std::string augmented = in_one("<plain>p</plain><added xmlns=\"urn:test:two\">a</added>");

INSTANTIATE_TEST_SUITE_P(
    ByTypeModuleAndAccess, Data,
    testing::Values(
        ReadCase{"ARuleWithoutTypeIsForData", all_groups(deny("")), device, ""},
        ReadCase{"ARuleForReading", all_groups(deny("", "read")), device, ""},
        ReadCase{"ARuleForReadingAndMore", all_groups(deny(path("/oc:lldp/oc:config"), "update read")), device,
                 lldp(state + two_ports)},
        ReadCase{"ARuleForOtherAccesses", all_groups(deny("", "create update delete exec")), device, device},
        ReadCase{"APathForOtherAccesses",
                 all_groups(deny(path("/oc:lldp/oc:config"), "create update delete exec")), device, device},
        ReadCase{"ARuleForOperations", all_groups(deny(operation("*"))), device, device},
        ReadCase{"ARuleForNotifications", all_groups(deny(notification("*"))), device, device},
        ReadCase{"ARuleForItsModule", all_groups(deny(module("openconfig-lldp"))), device, ""},
        ReadCase{"ARuleForAnotherModule", all_groups(deny(module("ietf-netconf-monitoring"))), device, device},
        ReadCase{"TheRootForItsModule", all_groups(deny(module("nacm-test-two") + path("/"))), augmented,
                 in_one("<plain>p</plain>")},
        ReadCase{"APathForAnotherModule",
                 all_groups(deny(module("ietf-netconf-monitoring") + path("/oc:lldp/oc:config"))), device,
                 device},
        ReadCase{"APathForTheModuleOfSomeNodes", all_groups(deny(module("nacm-test-two") + path("/one:one"))),
                 augmented, in_one("<plain>p</plain>")},
        ReadCase{"APathForTheModuleOfTheOtherNodes",
                 all_groups(deny(module("nacm-test-one") + path("/one:one/one:plain")) +
                            permit(module("nacm-test-one") + path("/one:one")) + deny("")),
                 augmented, in_one("")},
        ReadCase{"APathIntoAnAugment", all_groups(deny(path("/one:one/two:added"))), augmented,
                 in_one("<plain>p</plain>")},
        ReadCase{"APathOfOtherData", all_groups(deny(path("/mon:netconf-state"))), device, device}),
    name_of_case);

const std::string sensitive =
    in_one("<guarded><inside>g</inside></guarded>"
           "<secret><inside>s</inside><more xmlns=\"urn:test:two\">m</more></secret>");

INSTANTIATE_TEST_SUITE_P(
    ThatIsSensitive, Data,
    testing::Values(
        ReadCase{"IsLeftOutWithoutARule", "", sensitive, in_one("<guarded><inside>g</inside></guarded>")},
        ReadCase{"IsPermittedByARule", all_groups(permit(path("/one:one/one:secret"))), sensitive, sensitive},
        ReadCase{"IsPermittedByARuleForAll", all_groups(permit("")), sensitive, sensitive},
        ReadCase{"IsSensitiveBelowWhateverModuleItIsOf",
                 all_groups(permit(module("nacm-test-one") + path("/one:one/one:secret"))), sensitive,
                 in_one("<guarded><inside>g</inside></guarded><secret><inside>s</inside></secret>")},
        ReadCase{"MayBeReadWhenOnlyWritingIsSensitive", "", in_one("<guarded><inside>g</inside></guarded>"),
                 in_one("<guarded><inside>g</inside></guarded>")}),
    name_of_case);

const std::string mon = "<netconf-state xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring\">"
                        "<capabilities><capability>urn:a</capability></capabilities></netconf-state>";
const std::string last = "<last xmlns=\"urn:test:one\">x</last>";

INSTANTIATE_TEST_SUITE_P(
    OfSeveralTops, Data,
    testing::Values(ReadCase{"LosesTheFirst", all_groups(deny(path("/oc:lldp"))), lldp(config) + mon + last,
                             mon + last},
                    ReadCase{"LosesTheOneBetween", all_groups(deny(path("/mon:netconf-state"))),
                             lldp(config) + mon + last, lldp(config) + last},
                    ReadCase{"LosesTheLast", all_groups(deny(path("/one:last"))), lldp(config) + mon + last,
                             lldp(config) + mon},
                    ReadCase{"KeepsOne", all_groups(permit(path("/mon:netconf-state")) + deny("")),
                             lldp(config) + mon + last, mon},
                    ReadCase{"LosesAll", all_groups(deny("")), lldp(config) + mon + last, ""}),
    name_of_case);

TEST(DataHeldByATop, LosesThisTop) {
    const Nacm nacm = load(all_groups(deny(path("/one:last"))));
    yang::DataTree data = parse(lldp(config) + mon + last, everything());
    yang::change_first(data, [](lyd_node *&held) {
        while (std::string_view(held->schema->name) != "last")
            held = held->next;
    });
    rules_for_ann(nacm).remove_unreadable(data);
    EXPECT_EQ(print(data), print(parse(lldp(config) + mon, everything())));
}

TEST(DataOfAContextWithoutTheModuleOfARule, IsLeftAloneByTheRule) {
    const Nacm nacm = load(all_groups(deny(path("/mon:netconf-state")) + deny(path("/one:one")) +
                                      deny(path("/oc:lldp/oc:state"))));
    yang::DataTree data = parse(device, openconfig_only());
    rules_for_ann(nacm).remove_unreadable(data);
    EXPECT_EQ(print(data), lldp(config + two_ports));
}

TEST(AKeyThatIsAnIdentity, IsFoundByThePrefixOfTheRulesFile) {
    const auto capability = [](const std::string &name) {
        const std::string types = " xmlns:a=\"http://openconfig.net/yang/lldp/types\"";
        return "<capability><name" + types + ">a:" + name + "</name><state><name" + types + ">a:" + name +
               "</name></state></capability>";
    };
    const auto neighbor = [](const std::string &capabilities) {
        return lldp(interfaces(entry("e1", "<neighbors><neighbor><id>1</id><capabilities>" + capabilities +
                                               "</capabilities></neighbor></neighbors>")));
    };
    const Nacm nacm = load(all_groups(
        deny(path(port + "/oc:neighbors/oc:neighbor/oc:capabilities/oc:capability[oc:name='types:ROUTER']"))));
    yang::DataTree data = parse(neighbor(capability("MAC_BRIDGE") + capability("ROUTER")), openconfig_only());
    rules_for_ann(nacm).remove_unreadable(data);
    EXPECT_EQ(print(data), print(parse(neighbor(capability("MAC_BRIDGE")), openconfig_only())));
}

TEST(ManyEntriesWithARuleForEach, AreReadAsTheirRulesSay) {
    std::string rules;
    std::string all;
    std::string left;
    for (int i = 0; i < 500; i++) {
        const std::string name = "e" + std::to_string(i);
        const std::string where = path(port + "[oc:name='" + name + "']");
        rules += i % 3 == 0 ? deny(where) : permit(where);
        all += entry(name, on);
        left += i % 3 == 0 ? "" : entry(name, on);
    }
    const Nacm nacm = load(all_groups(rules + deny(path(port))));
    yang::DataTree data = parse(lldp(interfaces(all + entry("other"))), openconfig_only());
    rules_for_ann(nacm).remove_unreadable(data);
    EXPECT_EQ(print(data), lldp(interfaces(left)));
}

TEST(SeveralThreads, ReadByTheSameRulesAtATime) {
    const Nacm nacm = load(all_groups(deny(path(port_e1)) + deny(path("/oc:lldp/oc:config/oc:hello-timer"))));
    const std::string expected =
        lldp("<config>" + system_name + "</config>" + state + interfaces(entry("e2", on)));
    constexpr size_t times = 50;
    std::vector<size_t> as_expected(4, 0);
    std::vector<std::thread> threads;
    for (size_t &count : as_expected)
        threads.emplace_back([&nacm, &expected, &count] {
            for (size_t i = 0; i < times; i++) {
                yang::DataTree data = parse(device, everything());
                rules_for_ann(nacm).remove_unreadable(data);
                count += print(data) == expected ? 1 : 0;
            }
        });
    for (std::thread &thread : threads)
        thread.join();
    EXPECT_EQ(as_expected, std::vector<size_t>(4, times));
}

} // namespace
} // namespace yfw::access::test
