// Which mapping descriptions are accepted, and which are rejected.
#include "host/mapping_description.h"

#include <ostream>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "base/error.h"
#include "support/files.h"

namespace yfw::host::test {
namespace {

using yfw::test::TemporaryDirectory;

// A description with only the mandatory members; `more` goes before the closing brace.
std::string smallest(const std::string &more = "") {
    return R"({"library": "libx.so", "registration-functions": ["reg"], "walker-prefix": "x_",
  "openconfig": {"modules": ["openconfig-x"], "top": "x"}, "native-modules": ["x-cfg"])" +
           more + "}";
}

std::string replaced(std::string text, const std::string &what, const std::string &with) {
    const size_t at = text.find(what);
    EXPECT_NE(at, std::string::npos) << what;
    return text.replace(at, what.size(), with);
}

// --- accepted ---

TEST(ADescription, MayLeaveOutWhatItsMappingDoesNotHave) {
    const TemporaryDirectory directory;
    const MappingDescription mapping = read_mapping(directory.add("libx.json", smallest()));
    EXPECT_EQ(mapping.library, directory.path() / "libx.so");
    EXPECT_EQ(mapping.registration_functions, std::vector<std::string>{"reg"});
    EXPECT_EQ(mapping.walker_prefix, "x_");
    EXPECT_EQ(mapping.modules.openconfig, std::vector<std::string>{"openconfig-x"});
    EXPECT_EQ(mapping.modules.top, "x");
    EXPECT_EQ(mapping.modules.native, std::vector<std::string>{"x-cfg"});
    EXPECT_TRUE(mapping.state.empty());
    EXPECT_TRUE(mapping.subtrees.empty());
    EXPECT_TRUE(mapping.allocated_variables.empty());
    EXPECT_TRUE(mapping.device.interfaces.empty());
    EXPECT_FALSE(mapping.notification.has_value());
    EXPECT_TRUE(mapping.edits);
    EXPECT_FALSE(mapping.offer_absent_tops);
    EXPECT_TRUE(mapping.beside.empty());
}

TEST(ADescription, StandsBesideTheLibraryThatIsNamed) {
    const TemporaryDirectory directory;
    directory.add("libx.json", smallest());
    EXPECT_EQ(read_mapping(directory.path() / "libx.so").file, directory.path() / "libx.json");
}

TEST(ADescription, NamesALibraryOfTheSystemByItsFullPathOnly) {
    const TemporaryDirectory directory;
    const std::string text = replaced(smallest(), "libx.so", "/opt/x/libx.so");
    EXPECT_EQ(read_mapping(directory.add("libx.json", text)).library, "/opt/x/libx.so");
}

TEST(ADescription, HasAllThatItSays) {
    const TemporaryDirectory directory;
    const MappingDescription mapping = read_mapping(directory.add("libx.json", smallest(R"(,
  "allocated-variables": ["kept"],
  "subtrees": [{"module": "x-oper", "path": "/x/nodes", "sums": true}],
  "device": {
    "enabled": {"module": "x-cfg", "path": "/x/on", "on": "yes"},
    "configured-interfaces": {"module": "if", "path": "/ifs/if", "name": "id", "where": {"a": "b"}, "holding": "x"},
    "interfaces": [{"module": "if", "path": "/ifs/if", "name": "id"}]
  },
  "edits": false,
  "offer-absent-tops": true,
  "notification": {"module": "x-events", "name": "change", "entry": "/x/list", "keys": ["id"]})")));
    EXPECT_FALSE(mapping.edits);
    EXPECT_TRUE(mapping.offer_absent_tops);
    EXPECT_EQ(mapping.allocated_variables, std::vector<std::string>{"kept"});
    ASSERT_EQ(mapping.subtrees.size(), 1U);
    EXPECT_EQ(mapping.subtrees[0].module + mapping.subtrees[0].path, "x-oper/x/nodes");
    EXPECT_TRUE(mapping.subtrees[0].sums);
    ASSERT_TRUE(mapping.device.enabled.has_value());
    EXPECT_EQ(mapping.device.enabled->on, "yes");
    ASSERT_TRUE(mapping.device.configured_interfaces.has_value());
    EXPECT_EQ(mapping.device.configured_interfaces->where, (std::map<std::string, std::string>{{"a", "b"}}));
    EXPECT_EQ(mapping.device.configured_interfaces->holding, "x");
    ASSERT_EQ(mapping.device.interfaces.size(), 1U);
    EXPECT_EQ(mapping.device.interfaces[0].name, "id");
    EXPECT_FALSE(mapping.device.interfaces[0].holding.has_value());
    ASSERT_TRUE(mapping.notification.has_value());
    EXPECT_EQ(mapping.notification->keys, std::vector<std::string>{"id"});
}

// --- mappings beside one another ---

std::string beside(const std::string &more = "") {
    return replaced(replaced(smallest(more), "libx.so", "liby.so"), "\"x-cfg\"", "\"x-cfg\", \"y-oper\"");
}

TEST(ADescription, NamesThoseOfTheMappingsBesideIt) {
    const TemporaryDirectory directory;
    directory.add("liby.json", beside());
    directory.add("libz.json", smallest());
    const MappingDescription mapping =
        read_mapping(directory.add("libx.json", smallest(R"(, "beside": ["liby.so", "libz.json"])")));
    ASSERT_EQ(mapping.beside.size(), 2U);
    EXPECT_EQ(mapping.beside[0].file, directory.path() / "liby.json");
    EXPECT_EQ(mapping.beside[0].library, directory.path() / "liby.so");
    EXPECT_EQ(mapping.beside[1].file, directory.path() / "libz.json");
}

TEST(ADescription, HasTheModulesOfTheMappingsBesideItToo) {
    const TemporaryDirectory directory;
    directory.add("liby.json", replaced(beside(), "\"openconfig-x\"", "\"openconfig-x\", \"openconfig-y\""));
    const MappingDescription mapping =
        read_mapping(directory.add("libx.json", smallest(R"(, "beside": ["liby.so"])")));
    EXPECT_EQ(mapping.modules.openconfig, (std::vector<std::string>{"openconfig-x", "openconfig-y"}));
    EXPECT_EQ(mapping.modules.native, (std::vector<std::string>{"x-cfg", "y-oper"}));
}

TEST(ADescriptionBesideAnother, NamesTheListsToWhoseEntriesItOnlyAdds) {
    const TemporaryDirectory directory;
    directory.add("liby.json", replaced(beside(), "\"top\": \"x\"", "\"top\": \"x\", \"extends\": [\"/x/l\"]"));
    const MappingDescription mapping =
        read_mapping(directory.add("libx.json", smallest(R"(, "beside": ["liby.so"])")));
    EXPECT_EQ(mapping.beside[0].extends, std::vector<std::string>{"/x/l"});
    EXPECT_TRUE(mapping.extends.empty());
}

TEST(ADescriptionBesideAnother, MapsEditsOnlyIfItSaysSo) {
    const TemporaryDirectory directory;
    const std::string main = directory.add("libx.json", smallest(R"(, "beside": ["liby.so"])"));
    directory.add("liby.json", beside());
    EXPECT_FALSE(read_mapping(main).beside[0].edits);
    directory.add("liby.json", beside(", \"edits\": true"));
    EXPECT_TRUE(read_mapping(main).beside[0].edits);
}

// --- rejected ---

Error error_of(const std::filesystem::path &plugin) {
    try {
        read_mapping(plugin);
    } catch (const Error &error) {
        return error;
    }
    ADD_FAILURE() << plugin << " was accepted";
    return {ErrorTag::operation_failed, "", ""};
}

TEST(ADescriptionThatIsMissing, IsNamedWithThePlugInThatItIsOf) {
    const Error error = error_of("/no/such/libx.so");
    EXPECT_EQ(error.path(), "/no/such/libx.json");
    EXPECT_EQ(std::string(error.what()),
              "cannot be read: No such file or directory; expected the description of "
              "the mapping plug-in /no/such/libx.so");
}

TEST(ADescriptionThatIsAPipe, IsRefusedAndNotWaitedFor) {
    const TemporaryDirectory directory;
    const std::string file = (directory.path() / "libx.json").string();
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);
    const Error error = error_of(file);
    EXPECT_EQ(error.path(), file);
    EXPECT_NE(std::string(error.what()).find("is not a file; expected the description of"), std::string::npos)
        << error.what();
}

TEST(ADescriptionBesideAnotherThatIsMissing, IsNamedWithTheFileThatNamesIt) {
    const TemporaryDirectory directory;
    const std::string main = directory.add("libx.json", smallest(R"(, "beside": ["liby.so"])"));
    const Error error = error_of(main);
    const std::string folder = directory.path().string();
    EXPECT_EQ(error.path(), folder + "/liby.json");
    EXPECT_EQ(std::string(error.what()),
              "cannot be read: No such file or directory; expected the description of the mapping plug-in " +
                  folder + "/liby.so, which " + main + " names");
}

struct Fault {
    const char *name;
    std::string text;
    std::vector<const char *> told; // substrings of the message
};

std::ostream &operator<<(std::ostream &out, const Fault &fault) {
    return out << fault.text;
}

class ADescriptionWithAFault : public testing::TestWithParam<Fault> {};

TEST_P(ADescriptionWithAFault, IsRefusedWithItsFileTheMemberAndWhatWasExpected) {
    const TemporaryDirectory directory;
    const std::string file = directory.add("libx.json", GetParam().text);
    const Error error = error_of(file);
    EXPECT_EQ(error.path(), file);
    for (const char *told : GetParam().told)
        EXPECT_NE(std::string(error.what()).find(told), std::string::npos) << error.what();
}

const std::string device = R"(, "device": {"interfaces": [{"module": "if", "path": "/ifs/if", "name": "id"}]})";

class ADescriptionBesideAnotherWithAFault : public testing::TestWithParam<Fault> {};

TEST_P(ADescriptionBesideAnotherWithAFault, IsRefusedWithItsOwnFile) {
    const TemporaryDirectory directory;
    const std::string file = directory.add("liby.json", GetParam().text);
    const Error error = error_of(directory.add("libx.json", smallest(R"(, "beside": ["liby.so"])")));
    EXPECT_EQ(error.path(), file);
    for (const char *told : GetParam().told)
        EXPECT_NE(std::string(error.what()).find(told), std::string::npos) << error.what();
}

INSTANTIATE_TEST_SUITE_P(
    Such, ADescriptionBesideAnotherWithAFault,
    testing::Values(
        Fault{"AsAnUnknownMember", beside(", \"colour\": 1"), {"\"colour\" is unknown"}},
        Fault{"AsMappingsBesideIt",
              beside(R"(, "beside": ["libz.so"])"),
              {"\"beside\": a mapping that is loaded beside another one cannot have it"}},
        Fault{"AsAnswersForThePlatform", beside(device), {"\"device\": a mapping that is loaded beside"}},
        Fault{"AsANotification",
              beside(R"(, "notification": {"module": "m", "name": "n", "entry": "/x/y", "keys": ["k"]})"),
              {"\"notification\": a mapping that is loaded beside"}},
        Fault{"AsASuspension",
              replaced(beside(), "\"top\": \"x\"",
                       "\"top\": \"x\", \"suspensions\": [{\"leaf\": \"/x/a\", \"value\": \"b\", \"nodes\": "
                       "[\"/x/c\"]}]"),
              {"\"openconfig.suspensions\": a mapping that is loaded beside"}},
        Fault{"AsSampledState",
              replaced(beside(), "\"top\": \"x\"", "\"top\": \"x\", \"sampled\": [\"/x/a\"]"),
              {"\"openconfig.sampled\": a mapping that is loaded beside"}},
        Fault{"AsAnotherTop",
              replaced(beside(), "\"top\": \"x\"", "\"top\": \"y\""),
              {"\"openconfig\": expected the top container x of module openconfig-x", "libx.json"}},
        Fault{"AsAnotherModule",
              replaced(beside(), "\"openconfig-x\"", "\"openconfig-y\""),
              {"\"openconfig\": expected the top container x of module openconfig-x"}}),
    [](const auto &test) { return test.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Such, ADescriptionWithAFault,
    testing::Values(
        Fault{"AsNoJson", "library: libx.so", {"is no JSON"}}, Fault{"AsNothing", "", {"is no JSON"}},
        Fault{"AsANumberThatIsTooLarge", "[3e333]", {"a number is too large"}},
        Fault{"AsAnArray", "[]", {"expected an object"}},
        Fault{"AsAMissingMember",
              replaced(smallest(), "\"walker-prefix\": \"x_\",", ""),
              {"\"walker-prefix\" is missing", "expected what the names of the OpenConfig walkers begin with"}},
        Fault{"AsAMissingMemberOfAMember",
              replaced(smallest(), ", \"top\": \"x\"", ""),
              {"\"openconfig.top\" is missing", "expected the name of the top container"}},
        Fault{"AsAMissingMemberOfAnEntry",
              smallest(replaced(device, ", \"name\": \"id\"", "")),
              {"\"device.interfaces[0].name\" is missing", "expected the leaf"}},
        Fault{"AsAnUnknownMember",
              smallest(", \"colour\": 1"),
              {"\"colour\" is unknown", "library", "notification"}},
        Fault{"AsASuspensionOfANativeNodeWithoutItsModule",
              replaced(smallest(), "\"top\": \"x\"",
                       "\"top\": \"x\", \"suspensions\": [{\"leaf\": \"/x/a\", \"value\": \"b\", \"nodes\": "
                       "[\"/x/c\"], \"native\": [{\"path\": \"/x/d\"}]}]"),
              {"\"openconfig.suspensions[0].native[0].module\" is missing", "the name of a native module"}},
        Fault{"AsAKeyWithoutThePathOfANativeOne",
              replaced(smallest(), "\"top\": \"x\"",
                       "\"top\": \"x\", \"keys\": [{\"leaf\": \"/x/l/k\", \"native\": [{\"module\": \"m\"}]}]"),
              {"\"openconfig.keys[0].native[0].path\" is missing", "the schema path of a native node"}},
        Fault{"AsAnUnknownMemberOfAMember",
              replaced(smallest(), "\"top\"", "\"tops\": 1, \"top\""),
              {"\"openconfig.tops\" is unknown", "modules, sampled, state, suspensions, top"}},
        Fault{"AsANumberForAText",
              replaced(smallest(), "\"x_\"", "7"),
              {"\"walker-prefix\"", "expected", "as a text that is not empty"}},
        Fault{"AsAnEmptyText",
              replaced(smallest(), "\"x_\"", "\"\""),
              {"\"walker-prefix\"", "as a text that is not empty"}},
        Fault{"AsATextForAnArray",
              replaced(smallest(), "[\"reg\"]", "\"reg\""),
              {"\"registration-functions\"", "expected the functions", "as an array"}},
        Fault{"AsAnArrayOfNumbers",
              replaced(smallest(), "[\"reg\"]", "[\"reg\", 2]"),
              {"\"registration-functions[1]\"", "as a text that is not empty"}},
        Fault{"AsAnEmptyArray",
              replaced(smallest(), "[\"reg\"]", "[]"),
              {"\"registration-functions\"", "as an array that is not empty"}},
        Fault{"AsATextForAnObject",
              smallest(", \"device\": \"none\""),
              {"\"device\"", "expected what the platform is answered from", "as an object"}},
        Fault{"AsATextForABesideList",
              smallest(", \"beside\": \"liby.so\""),
              {"\"beside\"", "expected the plug-ins that are loaded with this one", "as an array"}},
        Fault{"AsANumberForEdits", smallest(", \"edits\": 1"), {"\"edits\"", "as true or false"}},
        Fault{"AsATextForTrueOrFalse",
              smallest(R"(, "subtrees": [{"module": "m", "path": "/x/y", "sums": "yes"}])"),
              {"\"subtrees[0].sums\"", "as true or false"}},
        Fault{"AsARepeatedMember", smallest(", \"library\": \"liby.so\""), {"\"library\" is repeated"}},
        Fault{"AsAPathWithKeys",
              smallest(replaced(device, "/ifs/if", "/ifs/if[id='1']")),
              {"\"device.interfaces[0].path\"", "expected a schema path"}},
        Fault{"AsARelativePath",
              smallest(replaced(device, "/ifs/if", "ifs/if")),
              {"\"device.interfaces[0].path\"", "expected a schema path", "found \"ifs/if\""}}),
    [](const auto &test) { return test.param.name; });

TEST(ADescriptionWithMoreSubtreesThanARequestHolds, IsRefused) {
    const TemporaryDirectory directory;
    std::string entries;
    for (int i = 0; i <= 50; i++)
        entries += std::string(i > 0 ? "," : "") + R"({"module": "m", "path": "/x/y", "sums": false})";
    const Error error = error_of(directory.add("libx.json", smallest(", \"subtrees\": [" + entries + "]")));
    EXPECT_NE(std::string(error.what()).find("an array of 50 at most"), std::string::npos) << error.what();
}

// --- the shipped description ---

TEST(TheShippedDescription, StandsBesideItsLibrary) {
    const MappingDescription mapping = read_mapping(OCLLDP_LIBRARY);
    EXPECT_TRUE(std::filesystem::equivalent(mapping.library, OCLLDP_LIBRARY));
}

} // namespace
} // namespace yfw::host::test
