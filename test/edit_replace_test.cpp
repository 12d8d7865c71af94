// Replacing a part of the configuration: reads show the new content in its place and the rest unchanged.
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "edit_device.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

const std::string replaced = " nc:operation=\"replace\"";

std::string tagged(const std::string &name, const std::string &attributes, const std::string &content) {
    return "<" + name + attributes + ">" + content + "</" + name + ">";
}

std::string interface(const std::string &name, const std::string &enabled, const std::string &attributes = "") {
    return tagged("interface", attributes,
                  element("name", name) +
                      element("config", element("name", name) + element("enabled", enabled)));
}

const std::string global =
    element("enabled", "true") + element("hello-timer", "45") + element("system-name", "router.example.net") +
    element("system-description", "A router") + element("chassis-id", "00:53:00:00:00:01") +
    element("chassis-id-type", "MAC_ADDRESS");
const std::string other_global = element("enabled", "true") + element("hello-timer", "20") +
                                 element("chassis-id", "chassis 7") + element("chassis-id-type", "LOCAL");

std::string whole(const std::string &config, const std::string &interfaces) {
    return openconfig_text(lldp_document((config.empty() ? "" : element("config", config)) +
                                         (interfaces.empty() ? "" : element("interfaces", interfaces))));
}

struct ReplaceCase {
    const char *name;
    std::string document; // the content below /lldp
    Strings arguments;    // besides the document
    std::string config;   // what reads show afterwards
    std::string interfaces;
};

class AReplace : public testing::TestWithParam<ReplaceCase> {
protected:
    const EditedDevice device{configured_device()};
};

TEST_P(AReplace, PutsTheNewContentInThePlaceOfTheOld) {
    ASSERT_EQ(device.openconfig(), whole(global, interface("eth1", "true") + interface("eth2", "false")));
    expect_committed(device.edit(lldp_document(GetParam().document), GetParam().arguments));
    EXPECT_EQ(device.openconfig(), whole(GetParam().config, GetParam().interfaces));
}

TEST_P(AReplace, IsOneCommitThatIsRolledBackByteForByte) {
    const std::string before = device.openconfig();
    expect_committed(device.edit(lldp_document(GetParam().document), GetParam().arguments));
    EXPECT_EQ(device.commits(), (std::vector<int>{1, 0}));
    expect_committed(device.run({"rollback", "0"}));
    EXPECT_EQ(device.openconfig(), before);
    EXPECT_TRUE(device.run({"show", "0"}).output.ends_with("\n" + device.native()));
}

TEST_P(AReplace, ChangesNothingTheSecondTime) {
    expect_committed(device.edit(lldp_document(GetParam().document), GetParam().arguments));
    const std::string after = device.openconfig();
    const Outcome again = device.edit(lldp_document(GetParam().document), GetParam().arguments);
    EXPECT_EQ(again.status, 0) << again.errors;
    EXPECT_EQ(device.openconfig(), after);
}

const std::string both = interface("eth1", "true") + interface("eth2", "false");

INSTANTIATE_TEST_SUITE_P(
    Of, AReplace,
    testing::Values(
        ReplaceCase{"TheGlobalConfiguration", tagged("config", replaced, other_global), {}, other_global, both},
        ReplaceCase{"TheGlobalConfigurationByATimer",
                    tagged("config", replaced, element("hello-timer", "20")),
                    {},
                    element("hello-timer", "20"),
                    both},
        ReplaceCase{"TheGlobalConfigurationByOneThatIsOff",
                    tagged("config", replaced, element("enabled", "false")),
                    {},
                    element("enabled", "false"),
                    both},
        ReplaceCase{"TheGlobalConfigurationByNothing", tagged("config", replaced, ""), {}, "", both},
        ReplaceCase{"OneLeaf",
                    element("config", tagged("system-name", replaced, "another")),
                    {},
                    element("enabled", "true") + element("hello-timer", "45") +
                        element("system-name", "another") + element("system-description", "A router") +
                        element("chassis-id", "00:53:00:00:00:01") + element("chassis-id-type", "MAC_ADDRESS"),
                    both},
        ReplaceCase{"AnInterfaceByOneThatIsOff",
                    element("interfaces", interface("eth1", "false", replaced)),
                    {},
                    global,
                    interface("eth1", "false") + interface("eth2", "false")},
        ReplaceCase{"AnInterfaceByOneThatIsOn",
                    element("interfaces", interface("eth2", "true", replaced)),
                    {},
                    global,
                    interface("eth1", "true") + interface("eth2", "true")},
        ReplaceCase{"AnInterfaceByNothing",
                    element("interfaces", tagged("interface", replaced, element("name", "eth1"))),
                    {},
                    global,
                    element("interface", element("name", "eth1") + element("config", element("name", "eth1"))) +
                        interface("eth2", "false")},
        ReplaceCase{"AnInterfaceThatWasNotThere",
                    element("interfaces", interface("eth9", "true", replaced)),
                    {},
                    global,
                    both + interface("eth9", "true")},
        ReplaceCase{"TheConfigurationOfAnInterface",
                    element("interfaces", element("interface", element("name", "eth1") +
                                                                   tagged("config", replaced,
                                                                          element("name", "eth1") +
                                                                              element("enabled", "false")))),
                    {},
                    global,
                    interface("eth1", "false") + interface("eth2", "false")},
        ReplaceCase{
            "TwoInterfaces",
            element("interfaces", interface("eth1", "false", replaced) + interface("eth2", "true", replaced)),
            {},
            global,
            interface("eth1", "false") + interface("eth2", "true")},
        ReplaceCase{"AllInterfaces",
                    tagged("interfaces", replaced, interface("eth2", "true") + interface("eth9", "true")),
                    {},
                    global,
                    interface("eth2", "true") + interface("eth9", "true")},
        ReplaceCase{"AllInterfacesByOneOfThem",
                    tagged("interfaces", replaced, interface("eth1", "true")),
                    {},
                    global,
                    interface("eth1", "true")},
        ReplaceCase{"AllInterfacesByNothing", tagged("interfaces", replaced, ""), {}, global, ""},
        ReplaceCase{"TheWhole",
                    element("config", other_global) +
                        element("interfaces", interface("eth2", "true") + interface("eth9", "true")),
                    {"--operation", "replace"},
                    other_global,
                    interface("eth2", "true") + interface("eth9", "true")},
        ReplaceCase{"TheWholeByGlobalConfigurationAlone",
                    element("config", other_global),
                    {"--operation", "replace"},
                    other_global,
                    ""},
        ReplaceCase{"TheWholeByInterfacesAlone",
                    element("interfaces", interface("eth9", "true")),
                    {"--operation", "replace"},
                    "",
                    interface("eth9", "true")},
        ReplaceCase{"TheWholeByNothing", "", {"--operation", "replace"}, "", ""}),
    [](const auto &replace) { return replace.param.name; });

// While the request is mapped, LLDP counts as on, so setting the name does not switch it on. The replaced
// content includes "enabled", and the request does not set it again.
TEST(AReplaceOfTheGlobalConfiguration, HoldsWhatItSetsAndNoMore) {
    const EditedDevice device{configured_device()};
    expect_committed(device.edit(lldp_document(tagged("config", replaced, element("system-name", "another")))));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/*"), Strings{"another"});
}

// --- the answer of a read as the new content ---

struct AnswerCase {
    const char *name;
    std::string (*configuration)();
    const char *format;
};

std::string shipped_device() {
    return read_file(YFW_EXAMPLES_DIR "/r1/config.xml");
}

class TheAnswerOfARead : public testing::TestWithParam<AnswerCase> {
protected:
    const EditedDevice device{GetParam().configuration()};
};

TEST_P(TheAnswerOfARead, PutInPlaceOfTheWholeShowsTheSameAgain) {
    const std::string before = device.openconfig();
    const std::string answer = device.run({"get", "--config", "/lldp", "--format", GetParam().format}).output;
    const Outcome outcome = device.edit(answer, {"--operation", "replace"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(device.openconfig(), before);
}

TEST_P(TheAnswerOfARead, MergedIntoAnEmptyDeviceShowsTheSameThere) {
    const std::string answer = device.run({"get", "--config", "/lldp", "--format", GetParam().format}).output;
    const EditedDevice other{empty_device()};
    expect_committed(other.edit(answer));
    // An interface that is off is only shown if LLDP was on before its settings were written.
    EXPECT_EQ(other.edit(answer).status, 0);
    EXPECT_EQ(other.openconfig(), device.openconfig());
}

INSTANTIATE_TEST_SUITE_P(Of, TheAnswerOfARead,
                         testing::Values(AnswerCase{"AConfiguredDeviceInXml", configured_device, "xml"},
                                         AnswerCase{"AConfiguredDeviceInJson", configured_device, "json"},
                                         AnswerCase{"TheShippedDeviceInXml", shipped_device, "xml"},
                                         AnswerCase{"TheShippedDeviceInJson", shipped_device, "json"}),
                         [](const auto &answer) { return answer.param.name; });

} // namespace
} // namespace yfw::test
