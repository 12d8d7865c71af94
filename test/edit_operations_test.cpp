// The operations of an edit's nodes; requests with several and with many changes.
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "edit_device.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

const std::string interfaces_path = "/openconfig-lldp:lldp/interfaces/interface";

// name="content" with the NETCONF operation.
std::string with(const std::string &operation, const std::string &name, const std::string &content) {
    return "<" + name + " nc:operation=\"" + operation + "\">" + content + "</" + name + ">";
}

std::string settings(const std::string &name, const std::string &enabled) {
    return element("name", name) + element("config", element("name", name) + element("enabled", enabled));
}

// An entry of the suppressed TLVs, with the operation unless that is empty.
std::string tlv(const std::string &name, const std::string &operation = "") {
    return "<suppress-tlv-advertisement xmlns:types=\"http://openconfig.net/yang/lldp/types\"" +
           (operation.empty() ? "" : " nc:operation=\"" + operation + "\"") + ">types:" + name +
           "</suppress-tlv-advertisement>";
}

std::string in_config(const std::string &content) {
    return lldp_document(element("config", content));
}

std::string in_interfaces(const std::string &content) {
    return lldp_document(element("interfaces", content));
}

// --- operations that depend on whether the node exists ---

struct ExistenceCase {
    const char *name;
    std::string document;
    std::string place;
};

class ACreateOfWhatIsThere : public testing::TestWithParam<ExistenceCase> {};

TEST_P(ACreateOfWhatIsThere, IsRefusedWithNothingChanged) {
    const EditedDevice device{configured_device()};
    expect_committed(device.set("/lldp/config/suppress-tlv-advertisement", "SYSTEM_NAME"));
    const DeviceState before = device.state();
    expect_refused(device.edit(GetParam().document), {GetParam().place}, "data-exists");
    EXPECT_EQ(device.state(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ACreateOfWhatIsThere,
    testing::Values(
        ExistenceCase{"ALeaf", in_config(with("create", "system-name", "new")), "/lldp/config/system-name"},
        ExistenceCase{"ALeafWithTheSameValue", in_config(with("create", "hello-timer", "45")),
                      "/lldp/config/hello-timer"},
        ExistenceCase{"AContainer", lldp_document(with("create", "config", element("hello-timer", "9"))),
                      "/lldp/config"},
        ExistenceCase{"AnInterface", in_interfaces(with("create", "interface", settings("eth1", "false"))),
                      "/lldp/interfaces/interface[name='eth1']"},
        ExistenceCase{"AnInterfaceBesideANewOne",
                      in_interfaces(with("create", "interface", settings("eth8", "true")) +
                                    with("create", "interface", settings("eth2", "true"))),
                      "/lldp/interfaces/interface[name='eth2']"},
        ExistenceCase{
            "ALeafThatInheritsIt",
            in_interfaces(element("interface", element("name", "eth1") +
                                                   with("create", "config", element("enabled", "false")))),
            "/lldp/interfaces/interface[name='eth1']/config"},
        ExistenceCase{"AnEntryOfALeafList", in_config(tlv("SYSTEM_NAME", "create")),
                      "/lldp/config/suppress-tlv-advertisement"}),
    [](const auto &test) { return test.param.name; });

class ADeleteOfWhatIsNotThere : public testing::TestWithParam<ExistenceCase> {};

TEST_P(ADeleteOfWhatIsNotThere, IsRefusedWithNothingChanged) {
    const EditedDevice device{switched_off_device()};
    expect_committed(device.set("/lldp/interfaces/interface[name='eth2']/config/enabled", "false"));
    const DeviceState before = device.state();
    expect_refused(device.edit(GetParam().document), {GetParam().place}, "data-missing");
    EXPECT_EQ(device.state(), before);
}

const std::string absent_leaf = in_config(with("delete", "system-name", ""));
const std::string absent_interface = in_interfaces(with("delete", "interface", element("name", "eth9")));

INSTANTIATE_TEST_SUITE_P(
    Of, ADeleteOfWhatIsNotThere,
    testing::Values(ExistenceCase{"ALeaf", absent_leaf, "/lldp/config/system-name"},
                    ExistenceCase{"ALeafBesideOneThatIsThere",
                                  in_config(with("delete", "enabled", "") + with("delete", "hello-timer", "")),
                                  "/lldp/config/hello-timer"},
                    ExistenceCase{"AnInterface", absent_interface, "/lldp/interfaces/interface[name='eth9']"},
                    ExistenceCase{"AnEntryOfALeafList", in_config(tlv("SYSTEM_NAME", "delete")),
                                  "/lldp/config/suppress-tlv-advertisement"}),
    [](const auto &test) { return test.param.name; });

struct DocumentCase {
    const char *name;
    std::string document;
    Strings arguments{};
};

class AnEditWithoutEffect : public testing::TestWithParam<DocumentCase> {};

TEST_P(AnEditWithoutEffect, SucceedsAndIsNoCommit) {
    const EditedDevice device{configured_device()};
    expect_committed(device.set("/lldp/config/hello-timer", "46"));
    const DeviceState before = device.state();
    const Outcome outcome = device.edit(GetParam().document, GetParam().arguments);
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.output, "nothing changes\n");
    EXPECT_EQ(device.state(), before);
}

INSTANTIATE_TEST_SUITE_P(
    Being, AnEditWithoutEffect,
    testing::Values(DocumentCase{"ARemoveOfAnAbsentInterface",
                                 in_interfaces(with("remove", "interface", element("name", "eth9")))},
                    DocumentCase{"AMergeOfWhatIsThere", in_config(element("hello-timer", "46"))},
                    DocumentCase{"AReplaceOfALeafByItsValue", in_config(with("replace", "hello-timer", "46"))},
                    DocumentCase{
                        "NoneByDefault", in_config(element("hello-timer", "99")), {"--operation", "none"}},
                    DocumentCase{"AnEmptyDocument", lldp_document("")}),
    [](const auto &test) { return test.param.name; });

// Natively it still enters the TLV selection, which no read shows.
TEST(ARemoveOfATlvThatIsNotSuppressed, SucceedsAndShowsNothingNew) {
    const EditedDevice device{configured_device()};
    const std::string before = device.openconfig();
    const Outcome outcome = device.edit(in_config(tlv("SYSTEM_NAME", "remove")));
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(device.openconfig(), before);
}

// --- operations and their effect on the device ---

struct EffectCase {
    const char *name;
    std::string document;
    std::string xpath;
    Strings shown; // what a read shows there afterwards
    Strings arguments{};
};

class AnEdit : public testing::TestWithParam<EffectCase> {};

TEST_P(AnEdit, ShowsInAReadAfterOneCommit) {
    const EditedDevice device{configured_device()};
    expect_committed(device.edit(GetParam().document, GetParam().arguments));
    EXPECT_EQ(device.values(GetParam().xpath), GetParam().shown);
    EXPECT_EQ(device.commits(), (std::vector<int>{1, 0}));
}

const std::string global_values = "/openconfig-lldp:lldp/config/*";
const std::string interface_values = interfaces_path + "/config/*";

INSTANTIATE_TEST_SUITE_P(
    Of, AnEdit,
    testing::Values(
        EffectCase{"ALeafThatIsDeleted",
                   in_config(with("delete", "chassis-id", "")),
                   global_values,
                   {"true", "45", "router.example.net", "A router", "MAC_ADDRESS"}},
        EffectCase{"ALeafThatIsRemoved",
                   in_config(with("remove", "system-description", "")),
                   global_values,
                   {"true", "45", "router.example.net", "00:53:00:00:00:01", "MAC_ADDRESS"}},
        EffectCase{"AContainerThatIsDeleted", lldp_document(with("delete", "config", "")), global_values, {}},
        EffectCase{"AContainerThatIsDeletedWithOneOfItsLeaves",
                   lldp_document(with("delete", "config", element("system-name", "router.example.net"))),
                   global_values,
                   {}},
        EffectCase{"AnInterfaceThatIsDeletedWithItsContent",
                   in_interfaces(with("delete", "interface", settings("eth1", "true"))),
                   interface_values,
                   {"eth2", "false"}},
        EffectCase{"AllInterfacesThatAreDeleted",
                   lldp_document(with("delete", "interfaces", "")),
                   interface_values,
                   {}},
        EffectCase{"AllInterfacesThatAreRemovedWithOneOfThem",
                   lldp_document(with("remove", "interfaces", element("interface", element("name", "eth1")))),
                   interface_values,
                   {}},
        EffectCase{"AnInterfaceThatIsCreated",
                   in_interfaces(with("create", "interface", settings("eth8", "true"))),
                   interface_values,
                   {"eth1", "true", "eth2", "false", "eth8", "true"}},
        EffectCase{"TwoInterfaces",
                   in_interfaces(element("interface", settings("eth1", "false")) +
                                 element("interface", settings("eth2", "true"))),
                   interface_values,
                   {"eth1", "false", "eth2", "true"}},
        EffectCase{"TwoInterfacesAndAGlobalLeaf",
                   lldp_document(element("config", element("hello-timer", "77")) +
                                 element("interfaces", element("interface", settings("eth2", "true")) +
                                                           element("interface", settings("eth1", "false")))),
                   interface_values + " | /openconfig-lldp:lldp/config/hello-timer",
                   {"77", "eth1", "false", "eth2", "true"}},
        EffectCase{"ThreeInterfacesWithAnOperationEach",
                   in_interfaces(with("delete", "interface", element("name", "eth1")) +
                                 with("create", "interface", settings("eth8", "true")) +
                                 with("merge", "interface", settings("eth2", "true"))),
                   interface_values,
                   {"eth2", "true", "eth8", "true"}},
        EffectCase{"ADefaultOfNoneWithAMergeWithin",
                   in_config(with("merge", "hello-timer", "77") + element("chassis-id", "not taken")),
                   global_values,
                   {"true", "77", "router.example.net", "A router", "00:53:00:00:00:01", "MAC_ADDRESS"},
                   {"--operation", "none"}},
        EffectCase{"AnOperationInJson",
                   R"({"openconfig-lldp:lldp": {"interfaces": {"interface": [
                       {"name": "eth1", "@": {"ietf-netconf:operation": "delete"}},
                       {"name": "eth8", "config": {"name": "eth8", "enabled": true}}]}}})",
                   interface_values,
                   {"eth2", "false", "eth8", "true"}},
        EffectCase{"ANumberInJsonOf64Bits",
                   R"({"openconfig-lldp:lldp": {"config": {"hello-timer": "77"}}})",
                   "/openconfig-lldp:lldp/config/hello-timer",
                   {"77"}},
        EffectCase{"ATlvInJson",
                   R"({"openconfig-lldp:lldp": {"config": {"suppress-tlv-advertisement":
                       ["openconfig-lldp-types:PORT_DESCRIPTION"]}}})",
                   "/openconfig-lldp:lldp/config/suppress-tlv-advertisement",
                   {"openconfig-lldp-types:PORT_DESCRIPTION"}}),
    [](const auto &test) { return test.param.name; });

TEST(ALeafThatIsCreatedInAReplacedContainer, MayHaveBeenThere) {
    const EditedDevice device{configured_device()};
    expect_committed(device.set("/lldp/config/hello-timer", "46"));
    expect_committed(device.edit(lldp_document(
        with("replace", "config", element("enabled", "true") + with("create", "hello-timer", "47")))));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/hello-timer"), Strings{"47"});
}

TEST(OneOfTwoSuppressedTlvs, IsDeletedWithoutTheOther) {
    const EditedDevice device{configured_device()};
    const std::string tlvs = "/openconfig-lldp:lldp/config/suppress-tlv-advertisement";
    expect_committed(device.edit(in_config(tlv("SYSTEM_NAME") + tlv("MANAGEMENT_ADDRESS"))));
    EXPECT_EQ(device.values(tlvs),
              (Strings{"openconfig-lldp-types:SYSTEM_NAME", "openconfig-lldp-types:MANAGEMENT_ADDRESS"}));
    expect_committed(device.edit(in_config(tlv("MANAGEMENT_ADDRESS", "delete"))));
    EXPECT_EQ(device.values(tlvs), Strings{"openconfig-lldp-types:SYSTEM_NAME"});
    expect_committed(device.edit(in_config(tlv("SYSTEM_NAME", "delete"))));
    EXPECT_EQ(device.values(tlvs), Strings{});
    EXPECT_EQ(device.native().find("<disable>true</disable></system-name>"), std::string::npos);
}

const std::string suppressed = "/lldp/config/suppress-tlv-advertisement";

// A device with three suppressed TLVs.
class TwoSuppressedTlvs : public testing::Test {
protected:
    TwoSuppressedTlvs() {
        expect_committed(
            device.edit(in_config(tlv("SYSTEM_NAME") + tlv("PORT_DESCRIPTION") + tlv("MANAGEMENT_ADDRESS"))));
    }

    Strings values() const { return device.values("/openconfig-lldp:lldp/config/suppress-tlv-advertisement"); }

    const EditedDevice device{configured_device()};
};

TEST_F(TwoSuppressedTlvs, AreAllDeletedByThePathOfTheirLeafList) {
    expect_committed(device.erase(suppressed));
    EXPECT_EQ(values(), Strings{});
    EXPECT_EQ(device.native().find("<disable>true</disable></port-description>"), std::string::npos);
}

TEST_F(TwoSuppressedTlvs, AreDeletedOneByOneByTheirValues) {
    expect_committed(device.erase(suppressed + "[.='SYSTEM_NAME']"));
    EXPECT_EQ(values(),
              (Strings{"openconfig-lldp-types:PORT_DESCRIPTION", "openconfig-lldp-types:MANAGEMENT_ADDRESS"}));
    expect_committed(device.erase(suppressed + "[.='openconfig-lldp-types:MANAGEMENT_ADDRESS']"));
    EXPECT_EQ(values(), Strings{"openconfig-lldp-types:PORT_DESCRIPTION"});
    expect_refused(device.erase(suppressed + "[.='SYSTEM_NAME']"), {suppressed, "SYSTEM_NAME"}, "data-missing");
}

TEST_F(TwoSuppressedTlvs, AreReadOneByOneByTheirValues) {
    const Strings read{"get", suppressed + "[.='SYSTEM_NAME']", suppressed + "[.='PORT_DESCRIPTION']"};
    const std::string two = device.run(read).output;
    EXPECT_NE(two.find("SYSTEM_NAME"), std::string::npos) << two;
    EXPECT_NE(two.find("PORT_DESCRIPTION"), std::string::npos) << two;
    EXPECT_EQ(two.find("MANAGEMENT_ADDRESS"), std::string::npos) << two;
    const Outcome one = device.run({"get", suppressed + "[.='SYSTEM_CAPABILITIES']"});
    EXPECT_EQ(one.output, "{}\n") << one.errors;
    const Outcome whole = device.run({"get", "--config", suppressed + "[.='SYSTEM_NAME']", "/lldp/config"});
    EXPECT_NE(whole.output.find("MANAGEMENT_ADDRESS"), std::string::npos) << whole.output;
}

TEST_F(TwoSuppressedTlvs, AreSetByPathsThatRepeatTheirValues) {
    expect_committed(device.set(suppressed + "[.='SYSTEM_DESCRIPTION']", "SYSTEM_DESCRIPTION"));
    EXPECT_EQ(values().size(), 4U);
    expect_refused(device.set(suppressed + "[.='SYSTEM_CAPABILITIES']", "SYSTEM_NAME"),
                   {suppressed, "SYSTEM_CAPABILITIES"}, "invalid-value");
}

TEST_F(TwoSuppressedTlvs, AreNotDeletedByADocumentThatNamesNoValue) {
    const DeviceState before = device.state();
    for (const std::string &document :
         {in_config(with("delete", "suppress-tlv-advertisement", "")),
          in_config(with("remove", "suppress-tlv-advertisement", "")),
          std::string(R"({"openconfig-lldp:lldp": {"config": {"@suppress-tlv-advertisement":
                          [{"ietf-netconf:operation": "delete"}]}}})")})
        expect_refused(device.edit(document), {suppressed, "value", "missing"}, "missing-element");
    EXPECT_EQ(device.state(), before);
}

TEST(AConditionOfAPath, HasToHold) {
    const EditedDevice device{configured_device()};
    expect_committed(device.set("/lldp/config/system-name", "here"));
    const DeviceState before = device.state();
    expect_refused(device.erase("/lldp/config[system-name='elsewhere']"),
                   {"/lldp/config", "system-name='elsewhere'", "does not hold"}, "data-missing");
    expect_refused(device.set("/lldp/config[system-name='elsewhere']/hello-timer", "20"),
                   {"/lldp/config", "system-name='elsewhere'"}, "data-missing");
    EXPECT_EQ(device.state(), before);
    expect_committed(device.set("/lldp/config[system-name='here']/hello-timer", "20"));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/hello-timer"), Strings{"20"});
}

TEST(SeveralChangesOfOneCall, AreOneCommit) {
    const EditedDevice device{configured_device()};
    expect_committed(device.run({"commit", "--comment", "tidied up", "--", "set", "/lldp/config/hello-timer",
                                 "9", "delete", "/lldp/config/chassis-id", "set",
                                 "/lldp/interfaces/interface[name='eth2']/config/enabled", "true"}));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/hello-timer"), Strings{"9"});
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/chassis-id"), Strings{});
    EXPECT_EQ(device.values(interface_values), (Strings{"eth1", "true", "eth2", "true"}));
    EXPECT_EQ(device.commits(), (std::vector<int>{1, 0}));
    EXPECT_NE(device.run({"history"}).output.find("tidied up"), std::string::npos);
}

TEST(SeveralChangesOfAFile, AreOneCommit) {
    const EditedDevice device{configured_device()};
    const std::string file = device.directory().add(
        "changes", "# a comment\n\nset /lldp/config/system-name two words\ndelete /lldp/config/chassis-id\n");
    expect_committed(device.run({"commit", "-f", file}));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/system-name"), Strings{"two words"});
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/chassis-id"), Strings{});
    EXPECT_EQ(device.commits(), (std::vector<int>{1, 0}));
}

struct ScriptCase {
    const char *name;
    std::string line;
    std::string value; // of the system name
};

class ALineOfAFileOfChanges : public testing::TestWithParam<ScriptCase> {};

TEST_P(ALineOfAFileOfChanges, SetsThisName) {
    const EditedDevice device{configured_device()};
    expect_committed(device.run({"commit", "-f", device.directory().add("changes", GetParam().line + "\n")}));
    EXPECT_EQ(device.values("/openconfig-lldp:lldp/config/system-name"), Strings{GetParam().value});
}

INSTANTIATE_TEST_SUITE_P(
    With, ALineOfAFileOfChanges,
    testing::Values(
        ScriptCase{"OneWord", "set /lldp/config/system-name r1", "r1"},
        ScriptCase{"DoubleQuotes", R"(set /lldp/config/system-name "two words")", "two words"},
        ScriptCase{"SingleQuotes", R"(set /lldp/config/system-name 'two  words')", "two  words"},
        ScriptCase{"AnEscapedQuote", R"(set /lldp/config/system-name "a \"b\" \\ \n")", R"(a "b" \ \n)"},
        ScriptCase{"BackslashesInSingleQuotes", R"(set /lldp/config/system-name 'a \" b')", R"(a \" b)"},
        ScriptCase{"AQuoteThatIsNotTheFirst", R"(set /lldp/config/system-name it's 5")", R"(it's 5")"},
        ScriptCase{"BlanksAtItsEnds", R"(set /lldp/config/system-name ' r1 ')", " r1 "},
        ScriptCase{"AByteOrderMark",
                   "\xef\xbb\xbf"
                   "set /lldp/config/system-name r1",
                   "r1"},
        ScriptCase{"ACarriageReturnAtItsEnd", "set /lldp/config/system-name r1\r", "r1"},
        ScriptCase{"AQuotedPath", R"(set "/lldp/config[enabled='true']/system-name" r1)", "r1"},
        ScriptCase{"QuotesInThePath", R"(set /lldp/config[enabled='true']/system-name r1)", "r1"}),
    [](const auto &test) { return test.param.name; });

TEST(AFileOfChangesWithAnOpenQuote, IsRefusedWithItsLine) {
    const EditedDevice device{configured_device()};
    for (const std::string line : {"set /lldp/config/system-name \"two", "set '/lldp/config/system-name two",
                                   "set /lldp/config/system-name 'one' two"}) {
        const std::string file = device.directory().add("changes", "# first\n" + line + "\n");
        expect_refused(device.run({"commit", "-f", file}), {file + ":2"}, "invalid-value");
    }
}

TEST(EverythingThatIsDeleted, IsNoLongerShownAndComesBack) {
    const EditedDevice device{configured_device()};
    const std::string before = device.openconfig();
    expect_committed(device.erase("/lldp"));
    EXPECT_EQ(device.values(global_values), Strings{});
    EXPECT_EQ(device.values(interface_values), Strings{});
    expect_committed(device.run({"rollback", "0"}));
    EXPECT_EQ(device.openconfig(), before);
}

TEST(ADeviceWhoseStoreIsNotNamed, KeepsItsCommitsInTheStateDirectory) {
    const EditedDevice device{configured_device()};
    const std::filesystem::path state_home = device.directory().path() / "state-home";
    const std::string named = (device.directory().path() / "device").string();
    expect_committed(run_yfw({.arguments = {"set", "/lldp/config/hello-timer", "99", "--device", named}}));
    EXPECT_FALSE(std::filesystem::exists(device.store()));
    EXPECT_TRUE(std::filesystem::exists(state_home));
    const Outcome read = run_yfw({.arguments = {"get", "/lldp/config/hello-timer", "--device", named}});
    EXPECT_NE(read.output.find("\"99\""), std::string::npos) << read.output;
}

// --- many interfaces ---

constexpr int many = 1000;

std::string port(int number) {
    return "port-" + std::to_string(number);
}

const char *enabled(int number) {
    return number % 3 == 0 ? "false" : "true";
}

std::string many_in_xml() {
    std::string content;
    for (int i = 0; i < many; ++i)
        content += element("interface", settings(port(i), enabled(i)));
    return in_interfaces(content);
}

std::string many_in_json() {
    std::string content;
    for (int i = 0; i < many; ++i)
        content += std::string(i == 0 ? "" : ",") + R"({"name": ")" + port(i) + R"(", "config": {"name": ")" +
                   port(i) + R"(", "enabled": )" + enabled(i) + "}}";
    return R"({"openconfig-lldp:lldp": {"interfaces": {"interface": [)" + content + "]}}}";
}

Strings many_values() {
    Strings values;
    for (int i = 0; i < many; ++i)
        values.insert(values.end(), {port(i), enabled(i)});
    return values;
}

class AThousandInterfaces : public testing::TestWithParam<DocumentCase> {
protected:
    const EditedDevice device{native_configuration(element("enable", "true"))};
};

TEST_P(AThousandInterfaces, AreEditedInOneRequest) {
    expect_committed(device.edit(GetParam().document));
    EXPECT_TRUE(device.values(interface_values) == many_values());
    EXPECT_EQ(device.commits(), (std::vector<int>{1, 0}));
}

TEST_P(AThousandInterfaces, AreReplacedByOthers) {
    expect_committed(device.edit(GetParam().document));
    const std::string one = "<interfaces nc:operation=\"replace\">" +
                            element("interface", settings("eth1", "true")) + "</interfaces>";
    expect_committed(device.edit(lldp_document(one)));
    EXPECT_EQ(device.values(interface_values), (Strings{"eth1", "true"}));
    expect_committed(device.run({"rollback", "1"}));
    EXPECT_TRUE(device.values(interface_values) == many_values());
}

TEST_P(AThousandInterfaces, AreDeletedInOneRequest) {
    expect_committed(device.edit(GetParam().document));
    expect_committed(device.erase("/lldp/interfaces"));
    EXPECT_EQ(device.values(interface_values), Strings{});
}

INSTANTIATE_TEST_SUITE_P(In, AThousandInterfaces,
                         testing::Values(DocumentCase{"Xml", many_in_xml()},
                                         DocumentCase{"Json", many_in_json()}),
                         [](const auto &test) { return test.param.name; });

TEST(AThousandInterfacesWithOneThatIsRefused, LeaveTheDeviceAsItWas) {
    const EditedDevice device{configured_device()};
    expect_committed(device.set("/lldp/config/hello-timer", "46"));
    const DeviceState before = device.state();
    std::string document = many_in_xml();
    const std::string twin = "<config><name>port-999</name>";
    document.replace(document.find(twin), twin.size(), "<config><name>another</name>");
    const Outcome outcome = device.edit(document);
    EXPECT_NE(outcome.status, 0);
    EXPECT_EQ(outcome.output, "");
    EXPECT_TRUE(device.state() == before);
}

} // namespace
} // namespace yfw::test
