// Refused edits: the error names the place, and the device is unchanged.
#include <filesystem>
#include <ostream>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "edit_device.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

struct RefusalCase {
    const char *name;
    Strings arguments; // the command; "FILE" stands for the document's file
    Strings words;     // what the line must contain
    std::string tag;
    std::string document{};
};

void PrintTo(const RefusalCase &test, std::ostream *to) {
    *to << testing::PrintToString(test.arguments) << test.document;
}

class ARefusedEdit : public testing::TestWithParam<RefusalCase> {
protected:
    Outcome run(Strings further = {}) const {
        Strings arguments = GetParam().arguments;
        const std::string file = GetParam().document.starts_with('{') ? "edit.json" : "edit.xml";
        for (std::string &argument : arguments)
            if (argument == "FILE")
                argument = device.directory().add(file, GetParam().document);
        arguments.insert(arguments.begin() + 1, further.begin(), further.end());
        return device.run(arguments);
    }

    const EditedDevice device{configured_device()};
};

TEST_P(ARefusedEdit, NamesThePlaceInOneLineAndChangesNothing) {
    expect_committed(device.set("/lldp/config/hello-timer", "46"));
    const DeviceState before = device.state();
    expect_refused(run(), GetParam().words, GetParam().tag);
    EXPECT_EQ(device.state(), before);
}

TEST_P(ARefusedEdit, IsRefusedInTheSameWordsAsADryRun) {
    const Outcome dry = run({"--dry-run"});
    EXPECT_FALSE(std::filesystem::exists(device.store()));
    EXPECT_EQ(dry.output, "");
    const Outcome wet = run();
    EXPECT_EQ(dry.errors, wet.errors);
    EXPECT_EQ(dry.status, wet.status);
}

const Strings edit{"edit", "FILE"};
const std::string eth1 = "/lldp/interfaces/interface[name='eth1']";

std::string foreign(const std::string &element_name) {
    return "<" + element_name + " xmlns=\"urn:example:other\">1</" + element_name + ">";
}

std::string entry(const std::string &content) {
    return lldp_document(element("interfaces", element("interface", content)));
}

INSTANTIATE_TEST_SUITE_P(
    Of, ARefusedEdit,
    testing::Values(
        // --- nodes that cannot be set ---
        RefusalCase{
            "AnUnknownLeaf", {"set", "/lldp/config/bogus", "1"}, {"/lldp/config/bogus"}, "unknown-element"},
        RefusalCase{"AnUnknownLeafOfADelete",
                    {"delete", "/lldp/config/bogus"},
                    {"/lldp/config/bogus"},
                    "unknown-element"},
        RefusalCase{"AnUnknownLeafOfADocument",
                    edit,
                    {"bogus"},
                    "unknown-element",
                    lldp_document(element("config", element("bogus", "1")))},
        RefusalCase{"AnUnknownLeafOfAJsonDocument",
                    edit,
                    {"bogus"},
                    "unknown-element",
                    R"({"openconfig-lldp:lldp": {"config": {"bogus": 1}}})"},
        RefusalCase{"AStateLeaf",
                    {"set", "/lldp/state/system-name", "x"},
                    {"/lldp/state", "Unsupported tag"},
                    "unknown-element"},
        RefusalCase{"AStateLeafOfADocument",
                    edit,
                    {"/lldp/state", "Unsupported tag"},
                    "unknown-element",
                    lldp_document(element("config", element("hello-timer", "50")) +
                                  element("state", element("system-name", "x")))},
        RefusalCase{"AStateLeafThatIsRemoved",
                    edit,
                    {"/lldp/state", "Unsupported tag"},
                    "unknown-element",
                    lldp_document(element("state", "<enabled nc:operation=\"remove\"/>"))},
        RefusalCase{"StateThatIsDeleted",
                    {"delete", "/lldp/state"},
                    {"/lldp/state: is state, which cannot be changed"},
                    "unknown-element"},
        RefusalCase{"AStateLeafThatIsDeleted",
                    {"delete", eth1 + "/state/enabled"},
                    {eth1 + "/state/enabled: is state, which cannot be changed"},
                    "unknown-element"},
        RefusalCase{"AStateLeafThatADocumentDeletes",
                    edit,
                    {"/lldp/state/enabled: is state, which cannot be changed"},
                    "unknown-element",
                    lldp_document(element("state", "<enabled nc:operation=\"delete\"/>"))},
        RefusalCase{"AStateLeafOfAnInterface",
                    {"set", eth1 + "/state/enabled", "false"},
                    {"/lldp/interfaces/interface", "state", "Unsupported tag"},
                    "unknown-element"},
        RefusalCase{
            "NeighborsOfAnInterface",
            edit,
            {"/lldp/interfaces/interface", "neighbors", "Unsupported tag"},
            "unknown-element",
            entry(element("name", "eth1") + element("neighbors", element("neighbor", element("id", "x"))))},
        RefusalCase{"AnAugmentedNode",
                    edit,
                    {"extra"},
                    "unknown-namespace",
                    lldp_document(element("config", foreign("extra")))},
        RefusalCase{"AnAugmentedNodeOfAnInterface",
                    edit,
                    {"extra"},
                    "unknown-namespace",
                    entry(element("name", "eth1") + foreign("extra"))},
        RefusalCase{"AForeignTopNode", edit, {"interfaces"}, "unknown-namespace", foreign("interfaces")},
        RefusalCase{"ANativeDocument",
                    edit,
                    {"Tarvo-QD-ethernet-lldp-cfg"},
                    "unknown-element",
                    native_configuration(element("timer", "30"))},
        RefusalCase{"ASecondTopNode",
                    edit,
                    {"line 2"}, // an XML document has one root
                    "invalid-value",
                    lldp_document(element("config", element("hello-timer", "50"))) + foreign("other")},
        RefusalCase{"ASecondTopMember",
                    edit,
                    {"/other"},
                    "bad-element",
                    R"({"openconfig-lldp:lldp": {"config": {"hello-timer": "50"}}, "x:other": 1})"},
        RefusalCase{
            "ALeafThatStandsTwice",
            edit,
            {"/lldp/config/hello-timer", "repeated"},
            "bad-element",
            lldp_document(element("config", element("hello-timer", "50") + element("hello-timer", "60")))},
        RefusalCase{"AMemberThatStandsTwice",
                    edit,
                    {"hello-timer", "repeated"},
                    "invalid-value",
                    R"({"openconfig-lldp:lldp": {"config": {"hello-timer": "50", "hello-timer": "60"}}})"},
        RefusalCase{"TwoUnknownSiblingsWithoutANamespace",
                    edit,
                    {"/lldp/x"},
                    "unknown-element",
                    lldp_document("<x xmlns=\"\"/><x xmlns=\"\"/>")},
        RefusalCase{"AKnownNodeWithoutANamespace",
                    edit,
                    {"/lldp/config"},
                    "unknown-namespace",
                    lldp_document("<config xmlns=\"\"/>")},
        RefusalCase{
            "TextInAContainer", edit, {"/lldp/config"}, "bad-element", lldp_document(element("config", "x"))},
        RefusalCase{"NodesInALeaf",
                    edit,
                    {"/lldp/config/system-name"},
                    "invalid-value",
                    lldp_document(element("config", element("system-name", element("x", "1"))))},
        RefusalCase{"AnOperationWithoutItsNamespace",
                    edit,
                    {"/lldp/config", "operation"},
                    "unknown-attribute",
                    lldp_document("<config operation=\"delete\"/>")},
        RefusalCase{
            "AWrongValueOfTheDefaultAttribute",
            edit,
            {"/lldp/config/hello-timer", "default"},
            "bad-attribute",
            lldp_document("<config><hello-timer xmlns:wd=\"urn:ietf:params:xml:ns:netconf:default:1.0\" "
                          "wd:default=\"x\">30</hello-timer></config>")},
        RefusalCase{"ATopNodeWithoutANamespace", edit, {"/lldp"}, "unknown-namespace", "<lldp xmlns=\"\"/>"},
        RefusalCase{"AnUnknownAnnotation",
                    edit,
                    {"/lldp/config", "x:y"},
                    "unknown-attribute",
                    R"({"openconfig-lldp:lldp": {"config": {"@": {"x:y": 1}}}})"},
        RefusalCase{"ANumberThatIsNotWrittenAsJsonHasIt",
                    edit,
                    {"/lldp/config/hello-timer", "JSON string"},
                    "invalid-value",
                    R"({"openconfig-lldp:lldp": {"config": {"hello-timer": 50}}})"},
        RefusalCase{"ABooleanInQuotes",
                    edit,
                    {"/lldp/config/enabled", "without quotes"},
                    "invalid-value",
                    R"({"openconfig-lldp:lldp": {"config": {"enabled": "false"}}})"},
        RefusalCase{"AnUnknownOperation",
                    edit,
                    {"lldp", "destroy"},
                    "bad-attribute",
                    lldp_document("<config nc:operation=\"destroy\"><hello-timer>30</hello-timer></config>")},
        // --- keys ---
        RefusalCase{
            "AKeyThatIsGivenTwice", {"delete", eth1 + "[name='eth2']"}, {eth1, "repeated"}, "invalid-value"},
        RefusalCase{"AKeyThatIsGivenTwiceTheSame",
                    {"set", eth1 + "[name='eth1']/config/enabled", "false"},
                    {eth1, "repeated"},
                    "invalid-value"},
        RefusalCase{"AKeyThatIsSetToAnother", {"set", eth1 + "/name", "eth2"}, {eth1, "key"}, "invalid-value"},
        RefusalCase{"AKeyThatIsDeleted", {"delete", eth1 + "/name"}, {eth1}, "bad-element"},
        RefusalCase{"AKeyThatIsDeletedInADocument",
                    edit,
                    {"lldp/interfaces/interface[name='eth1']/name"},
                    "bad-element",
                    entry("<name nc:operation=\"delete\">eth1</name>")},
        RefusalCase{"AMissingKey",
                    {"set", "/lldp/interfaces/interface/config/enabled", "true"},
                    {"/lldp/interfaces/interface", "name"},
                    "missing-element"},
        RefusalCase{"AMissingKeyOfADelete",
                    {"delete", "/lldp/interfaces/interface"},
                    {"/lldp/interfaces/interface", "name"},
                    "missing-element"},
        RefusalCase{"AMissingKeyOfADocument",
                    edit,
                    {"interface", "name"},
                    "missing-element",
                    entry(element("config", element("enabled", "true")))},
        RefusalCase{"ATwinThatDiffersFromItsKey",
                    edit,
                    {"/lldp/interfaces/interface", "different values"},
                    "data-missing",
                    entry(element("name", "eth1") + element("config", element("name", "eth2")))},
        // --- values ---
        RefusalCase{"ATlvOutsideTheTable",
                    {"set", "/lldp/config/suppress-tlv-advertisement", "PORT_ID"},
                    {"/lldp/config/suppress-tlv-advertisement", "Invalid argument passed for tlv"},
                    "invalid-value"},
        RefusalCase{"ATlvThatIsNone",
                    {"set", "/lldp/config/suppress-tlv-advertisement", "BOGUS"},
                    {"/lldp/config/suppress-tlv-advertisement", "BOGUS"},
                    "invalid-value"},
        RefusalCase{"ATimerBelowItsRange",
                    {"set", "/lldp/config/hello-timer", "4"},
                    {"/lldp/config/hello-timer", "4"},
                    "invalid-value"},
        RefusalCase{"ATimerAboveItsRange",
                    {"set", "/lldp/config/hello-timer", "65535"},
                    {"/lldp/config/hello-timer", "65535"},
                    "invalid-value"},
        RefusalCase{
            "ATimerOutOfRangeBesideOneInIt",
            {"commit", "--", "set", "/lldp/config/system-name", "x", "set", "/lldp/config/hello-timer", "4"},
            {"/lldp/config/hello-timer", "4"},
            "invalid-value"},
        RefusalCase{"ANumberThatIsNone",
                    {"set", "/lldp/config/hello-timer", "often"},
                    {"/lldp/config/hello-timer", "often"},
                    "invalid-value"},
        RefusalCase{"ANegativeNumber",
                    {"set", "--", "/lldp/config/hello-timer", "-30"},
                    {"/lldp/config/hello-timer", "-30"},
                    "invalid-value"},
        RefusalCase{"ABooleanThatIsNone",
                    {"set", eth1 + "/config/enabled", "yes"},
                    {eth1 + "/config/enabled", "yes"},
                    "invalid-value"},
        RefusalCase{"ATextThatIsTooLong",
                    {"set", "/lldp/config/system-name", std::string(256, 'x')},
                    {"/lldp/config/system-name"},
                    "invalid-value"},
        RefusalCase{"AnUnknownKindOfChassis",
                    {"set", "/lldp/config/chassis-id-type", "mac-address"},
                    {"/lldp/config/chassis-id-type", "mac-address"},
                    "invalid-value"},
        RefusalCase{"AValueOfAContainer", {"set", "/lldp/config", "x"}, {"/lldp/config"}, "invalid-value"},
        RefusalCase{"AControlCharacter",
                    {"set", "/lldp/config/system-name", "a\x01z"},
                    {"/lldp/config/system-name"},
                    "invalid-value"},
        RefusalCase{"BytesThatAreNoText",
                    {"set", "/lldp/config/system-name", "a\xffz"},
                    {"/lldp/config/system-name"},
                    "invalid-value"},
        // --- existing and missing nodes ---
        RefusalCase{"AnEntryThatIsOnlyNamed",
                    {"edit", "FILE", "--operation", "none"},
                    {"/lldp/interfaces/interface[name='eth9']"},
                    "data-missing",
                    entry(element("name", "eth9"))},
        RefusalCase{"AnEntryThatIsNamedAroundACreate",
                    {"edit", "FILE", "--operation", "none"},
                    {"/lldp/interfaces/interface[name='eth9']"},
                    "data-missing",
                    entry(element("name", "eth9") +
                          "<config><enabled nc:operation=\"create\">true</enabled></config>")},
        RefusalCase{"ALeafThatIsOnlyNamed",
                    {"edit", "FILE", "--operation", "none"},
                    {"/lldp/config/suppress-tlv-advertisement"},
                    "data-missing",
                    lldp_document("<config><suppress-tlv-advertisement "
                                  "xmlns:t=\"http://openconfig.net/yang/lldp/types\">t:SYSTEM_NAME"
                                  "</suppress-tlv-advertisement></config>")},
        RefusalCase{"AnIdentityOfADocumentWithoutItsModule",
                    edit,
                    {"/lldp/config/suppress-tlv-advertisement", "expected openconfig-lldp-types:SYSTEM_NAME"},
                    "invalid-value",
                    lldp_document("<config><suppress-tlv-advertisement>SYSTEM_NAME"
                                  "</suppress-tlv-advertisement></config>")},
        RefusalCase{"ALeafThatIsNotThere",
                    {"delete", "/lldp/config/suppress-tlv-advertisement"},
                    {"/lldp/config/suppress-tlv-advertisement"},
                    "data-missing"},
        RefusalCase{"AnInterfaceThatIsNotThere",
                    {"delete", "/lldp/interfaces/interface[name='eth9']"},
                    {"/lldp/interfaces/interface[name='eth9']"},
                    "data-missing"}),
    [](const auto &test) { return test.param.name; });

// --- invalid documents ---

struct MalformedCase {
    const char *name;
    const char *file;
    std::string content;
};

class AMalformedDocument : public testing::TestWithParam<MalformedCase> {};

TEST_P(AMalformedDocument, IsRefusedByNameWithNothingChanged) {
    const EditedDevice device{configured_device()};
    expect_committed(device.set("/lldp/config/hello-timer", "46"));
    const DeviceState before = device.state();
    const std::string file = device.directory().add(GetParam().file, GetParam().content);
    const Outcome outcome = device.run({"edit", file});
    EXPECT_NE(outcome.status, 0);
    EXPECT_LT(outcome.status, 128);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_NE(outcome.errors.find(file), std::string::npos) << outcome.errors;
    EXPECT_EQ(device.state(), before);
}

INSTANTIATE_TEST_SUITE_P(
    With, AMalformedDocument,
    testing::Values(MalformedCase{"NothingInIt", "a.xml", ""}, MalformedCase{"BlanksInIt", "a.xml", " \n\n"},
                    MalformedCase{"TextThatIsNoDocument", "a.xml", "set /lldp/config/enabled true\n"},
                    MalformedCase{"AnElementThatIsNotClosed", "a.xml",
                                  "<lldp xmlns=\"http://openconfig.net/yang/lldp\">"},
                    MalformedCase{"AnElementClosedByAnother", "a.xml",
                                  lldp_document("<config><hello-timer>30</enabled></config>")},
                    MalformedCase{"AnUnknownPrefix", "a.xml",
                                  "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><x:config/></lldp>"},
                    MalformedCase{"JsonThatIsCutOff", "a.json", R"({"openconfig-lldp:lldp": {"config": {)"},
                    MalformedCase{"JsonOfAnotherKind", "a.json", "[1, 2, 3]"},
                    MalformedCase{"BytesThatAreNoText", "a.xml",
                                  lldp_document(element("config", element("system-name", "\xff\xfe")))}),
    [](const auto &test) { return test.param.name; });

TEST(ARefusedValue, IsQuotedInPartWithWhatIsAllowed) {
    const EditedDevice device{configured_device()};
    expect_refused(
        device.set("/lldp/config/hello-timer", "4"),
        {"/lldp/config/hello-timer", "\"4\"", "5 to 65534", "native /Tarvo-QD-ethernet-lldp-cfg:lldp/timer"},
        "invalid-value");
    expect_refused(device.set("/lldp/config/system-name", std::string(13000, 'x')),
                   {"/lldp/config/system-name", "xxx...", "0 to 255 characters"}, "invalid-value");
    expect_refused(device.set("/lldp/config/enabled", "maybe"), {"true or false"}, "invalid-value");
    for (const std::string &value : {std::string(300, '9'), std::string(13000, 'x')}) {
        const Outcome outcome = device.set("/lldp/config/hello-timer", value);
        EXPECT_LT(outcome.errors.size(), 300U) << outcome.errors;
        EXPECT_EQ(outcome.status, 2);
    }
    EXPECT_EQ(device.set("/lldp/state/system-name", "x").status, 2);
    EXPECT_LT(device.set("/lldp/config/" + std::string(13000, 'x'), "1").errors.size(), 1500U);
}

TEST(ADocument, ThatIsNotThereIsRefusedByName) {
    const EditedDevice device{configured_device()};
    const Outcome outcome = device.run({"edit", "/nonexistent/edit.xml"});
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("/nonexistent/edit.xml"), std::string::npos) << outcome.errors;
    EXPECT_FALSE(std::filesystem::exists(device.store()));
}

TEST(AnUnknownOperation, IsRefusedOnTheCommandLine) {
    const EditedDevice device{configured_device()};
    const Outcome outcome = device.edit(lldp_document(""), {"--operation", "destroy"});
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("destroy"), std::string::npos) << outcome.errors;
}

// --- a first edit that is refused ---

TEST(ARefusedFirstEdit, LeavesNoStoreBehind) {
    const EditedDevice device{configured_device()};
    EXPECT_NE(device.set("/lldp/config/hello-timer", "4").status, 0);
    EXPECT_FALSE(std::filesystem::exists(device.store()));
}

TEST(ARefusedFirstEdit, DoesNotHideWhatTheDeviceIsGivenLater) {
    const EditedDevice device{configured_device()};
    EXPECT_NE(device.set("/lldp/config/hello-timer", "4").status, 0);
    device.directory().add("device/config.xml", native_configuration(element("timer", "99")));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/hello-timer"), Strings{"99"});
}

// --- dry runs ---

struct DryRunCase {
    const char *name;
    Strings arguments;
};

class ADryRun : public testing::TestWithParam<DryRunCase> {};

TEST_P(ADryRun, PrintsWhatTheCommitWouldChangeAndWritesNothing) {
    const EditedDevice device{configured_device()};
    device.directory().add("edit.xml", lldp_document(element("config", element("hello-timer", "50"))));
    Strings dry_arguments = GetParam().arguments;
    dry_arguments.insert(dry_arguments.begin() + 1, "--dry-run");
    const std::string before = device.openconfig();
    const Outcome dry = device.run(dry_arguments);
    EXPECT_EQ(dry.status, 0);
    EXPECT_EQ(dry.errors, "");
    EXPECT_FALSE(std::filesystem::exists(device.store()));
    EXPECT_FALSE(std::filesystem::exists(device.store().parent_path()));
    EXPECT_EQ(device.openconfig(), before);
    EXPECT_EQ(device.run(GetParam().arguments).output, "commit 1\n" + dry.output);
}

TEST_P(ADryRun, LeavesAStoreAsItIs) {
    const EditedDevice device{configured_device()};
    device.directory().add("edit.xml", lldp_document(element("config", element("hello-timer", "50"))));
    expect_committed(device.set("/lldp/config/chassis-id", "another"));
    const DeviceState before = device.state();
    Strings arguments = GetParam().arguments;
    arguments.insert(arguments.begin() + 1, "--dry-run");
    const Outcome dry = device.run(arguments);
    EXPECT_EQ(dry.status, 0);
    EXPECT_NE(dry.output, "");
    EXPECT_EQ(device.state(), before);
}

INSTANTIATE_TEST_SUITE_P(Of, ADryRun,
                         testing::Values(DryRunCase{"ASet", {"set", "/lldp/config/hello-timer", "50"}},
                                         DryRunCase{"ADelete", {"delete", "/lldp/config/system-name"}},
                                         DryRunCase{"ADeleteOfEverything", {"delete", "/lldp"}},
                                         DryRunCase{"ADocument", {"edit", "edit.xml"}},
                                         DryRunCase{"SeveralChanges",
                                                    {"commit", "--", "set", "/lldp/config/hello-timer", "50",
                                                     "delete", "/lldp/config/system-name"}}),
                         [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::test
