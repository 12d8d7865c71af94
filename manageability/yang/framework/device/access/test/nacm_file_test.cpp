// Which files of access rules are rejected, and with what message.
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "device/access/nacm.h"
#include "nacm_fixture.h"
#include "support/files.h"

namespace yfw::access::test {
namespace {

using testing::HasSubstr;
using yfw::test::TemporaryDirectory;

const yang::ModuleFiles module_files({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR});
const std::vector<std::string> modules = {"openconfig-lldp", "openconfig-lldp-types",
                                          "ietf-netconf-monitoring"};

std::optional<Error> error_of(const std::filesystem::path &file) {
    try {
        const Nacm nacm(file, module_files, modules);
    } catch (const Error &error) {
        return error;
    }
    return std::nullopt;
}

struct FileCase {
    const char *name;
    std::string content;
    std::string place;   // after the file name
    std::string message; // a substring
};

class AFile : public testing::TestWithParam<FileCase> {};

TEST_P(AFile, IsRefusedWithItsPlace) {
    const TemporaryDirectory directory;
    const std::string file = directory.add("rules.xml", GetParam().content);
    const std::optional<Error> error = error_of(file);
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->path(), file + GetParam().place);
    EXPECT_THAT(error->what(), HasSubstr(GetParam().message));
}

std::string with_rule(const std::string &rule) {
    return document("\n<rule-list><name>l</name><group>*</group>\n<rule><name>r</name>\n" + rule +
                    "</rule></rule-list>");
}

std::string with_path(const std::string &text) {
    return with_rule(path(text) + "<action>deny</action>");
}

const auto name_of_case = [](const auto &test) { return test.param.name; };

INSTANTIATE_TEST_SUITE_P(
    ThatIsNoDocumentOfRules, AFile,
    testing::Values(FileCase{"Empty", "", "", "<nacm>"}, FileCase{"Text", "hello", ":1", "hello"},
                    FileCase{"XmlThatEnds", "<nacm xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-acm\">\n\n",
                             ":3", "end-of-input"},
                    FileCase{"WithoutANamespace", "<nacm/>", ":1", "namespace"},
                    FileCase{"OfAnotherNamespace", "\n<nacm xmlns=\"urn:another\"/>", ":2", "urn:another"},
                    FileCase{"OfAnotherRoot", "<rules xmlns=\"urn:ietf:params:xml:ns:yang:ietf-netconf-acm\"/>",
                             ":1", "rules"},
                    FileCase{"OfAnotherModule", lldp(""), "", "<nacm>"},
                    FileCase{"WithSomethingBeside",
                             document("") + lldp("<config><hello-timer>5</hello-timer></config>"), "",
                             "<nacm>"}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    WithARuleThatIsNone, AFile,
    testing::Values(
        FileCase{"AnUnknownElement", document("\n<colour>red</colour>"), ":2", "colour"},
        FileCase{"AnUnknownElementInARule", with_rule("<colour>red</colour><action>deny</action>"), ":4",
                 "colour"},
        FileCase{"NoAction", with_rule(operation("get")), "", "action"},
        FileCase{"AnotherAction", with_rule("<action>perhaps</action>"), ":4", "perhaps"},
        FileCase{"AnotherDefault", document("\n\n<read-default>perhaps</read-default>"), ":3", "perhaps"},
        FileCase{"AnotherAccess",
                 with_rule("<access-operations>read think</access-operations><action>deny</action>"), ":4",
                 "think"},
        FileCase{"ANameThatLooksLikeAPlace",
                 document("<rule-list><name>at line number x</name>\n<colour>red</colour></rule-list>"), ":2",
                 "colour"},
        FileCase{"TwoTypes", with_rule(operation("get") + path("/oc:lldp") + "<action>deny</action>"), ":4",
                 "data-node"},
        FileCase{"NoName",
                 document("<rule-list><name>l</name>\n<rule><action>deny</action></rule></rule-list>"), ":2",
                 "name"},
        FileCase{"ANameTwice",
                 document("<rule-list><name>l</name></rule-list>\n<rule-list><name>l</name></rule-list>"), ":2",
                 "Duplicate"},
        FileCase{"StateOfTheServer", document("\n<denied-operations>1</denied-operations>"), ":2",
                 "denied-operations"}),
    name_of_case);

INSTANTIATE_TEST_SUITE_P(
    WithABrokenPath, AFile,
    testing::Values(FileCase{"ThatIsEmpty", with_path(""), ":4", "path"},
                    FileCase{"ThatIsRelative", with_path("oc:lldp"), ":4", "oc:lldp"},
                    FileCase{"WithoutAPrefix", with_path("/lldp"), ":4", "/lldp"},
                    FileCase{"WithoutAPrefixBelow", with_path("/oc:lldp/config"), ":4", "/oc:lldp/config"},
                    FileCase{"WithAPrefixThatIsNotDeclared", with_path("/what:lldp"), ":4", "/what:lldp"},
                    FileCase{"WithAnOpenPredicate",
                             with_path("/oc:lldp/oc:interfaces/oc:interface[oc:name='e1'"), ":4",
                             "oc:interface"},
                    FileCase{"WithASlashAtItsEnd", with_path("/oc:lldp/"), ":4", "/oc:lldp/"},
                    FileCase{"ThatIsAnExpression", with_path("//oc:lldp"), ":4", "//oc:lldp"},
                    FileCase{"OfTwoPaths", with_path("/oc:lldp | /oc:lldp"), ":4", "|"},
                    FileCase{"ToANodeThatIsNot", with_path("/oc:lldp/oc:confih"), ":4", "oc:confih"},
                    FileCase{"OfAModuleThatIsNotServed", with_path("/one:one"), ":4", "/one:one"},
                    FileCase{"ToAnOperation", with_path("/mon:get-schema"), "", "get-schema"}),
    name_of_case);

TEST(AFileThatIsMissing, IsRefusedByItsName) {
    const TemporaryDirectory directory;
    const std::optional<Error> error = error_of(directory.path() / "nothing.xml");
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->path(), (directory.path() / "nothing.xml").string());
    EXPECT_THAT(error->what(), HasSubstr("No such file"));
}

TEST(ADirectoryInsteadOfAFile, IsRefusedByItsName) {
    const TemporaryDirectory directory;
    const std::optional<Error> error = error_of(directory.path());
    ASSERT_TRUE(error.has_value());
    EXPECT_EQ(error->path(), directory.path().string());
}

TEST(AnErrorOfAFile, IsOneLine) {
    const TemporaryDirectory directory;
    const std::optional<Error> error =
        error_of(directory.add("rules.xml", with_path("\n/oc:lldp/\n/oc:nothing")));
    ASSERT_TRUE(error.has_value());
    EXPECT_THAT(error->what(), testing::Not(HasSubstr("\n")));
}

TEST(RulesWithoutTheirModule, AreRefusedByTheNameOfTheModule) {
    const TemporaryDirectory directory;
    const std::string file = directory.add("rules.xml", document(""));
    try {
        const Nacm nacm(file, yang::ModuleFiles({directory.path()}), {});
        FAIL() << "rules were read without ietf-netconf-acm";
    } catch (const Error &error) {
        EXPECT_THAT(error.path(), HasSubstr("ietf-netconf-acm"));
        EXPECT_THAT(error.what(), HasSubstr("libyuma-base"));
        EXPECT_THAT(error.what(), HasSubstr(directory.path().string()));
    }
}

TEST(AFileWithEverythingThatTheModuleHas, IsRead) {
    const TemporaryDirectory directory;
    const std::string file = directory.add(
        "rules.xml",
        "<?xml version=\"1.0\"?>\n<!-- who may do what -->\n" +
            document("<enable-nacm>true</enable-nacm><read-default>permit</read-default>"
                     "<write-default>permit</write-default><exec-default>deny</exec-default>"
                     "<enable-external-groups>false</enable-external-groups>"
                     "<groups><group><name>g</name><user-name>ann</user-name></group></groups>"
                     "<rule-list><name>l</name><group>g</group><group>h</group><rule><name>r</name>"
                     "<module-name>ietf-netconf</module-name><rpc-name>get</rpc-name>"
                     "<access-operations>\n  exec\n  read\n</access-operations><action>permit</action>"
                     "<comment>why</comment></rule></rule-list>"));
    const Nacm nacm(file, module_files, modules);
    EXPECT_TRUE(nacm.rules_of("ann", {}).may_execute("ietf-netconf", "get", false));
    EXPECT_FALSE(nacm.rules_of("ann", {}).may_execute("ietf-netconf", "lock", false));
    EXPECT_FALSE(nacm.rules_of("bob", {"g"}).may_execute("ietf-netconf", "get", false));
}

TEST(AFileThatIsRead, NeedsNoFileAfterwards) {
    TemporaryDirectory directory;
    const std::filesystem::path file =
        directory.add("rules.xml", document(all_groups(deny(path("/oc:lldp/oc:config")))));
    const Nacm nacm(file, module_files, modules);
    std::filesystem::remove(file);
    yang::DataTree data = parse(lldp("<config><hello-timer>5</hello-timer></config>"), openconfig_only());
    rules_for_ann(nacm).remove_unreadable(data);
    EXPECT_EQ(print(data), lldp(""));
}

} // namespace
} // namespace yfw::access::test
