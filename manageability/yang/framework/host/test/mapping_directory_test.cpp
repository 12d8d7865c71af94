// A directory of plug-ins: which mappings it stands for, and which directories are refused.
#include <ostream>

#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "host/engine.h"
#include "host/mapping_description.h"
#include "support/files.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

using yfw::test::TemporaryDirectory;

std::string description(const std::string &name, const std::string &more = "") {
    return "{\"library\": \"lib" + name + R"(.so", "registration-functions": ["reg"], "walker-prefix": "x_",
  "openconfig": {"modules": ["openconfig-x"], "top": "x"}, "native-modules": [")" +
           name + "-cfg\"]" + more + "}";
}

std::vector<std::string> names_beside(const MappingDescription &mapping) {
    std::vector<std::string> names;
    for (const MappingDescription &beside : mapping.beside)
        names.push_back(beside.file.filename());
    return names;
}

const std::string maps_edits = ", \"edits\": true";

// --- accepted ---

TEST(ADirectoryOfPlugIns, HasTheMappingThatMapsEditsInFrontOfTheOthersInTheOrderOfTheirNames) {
    const TemporaryDirectory directory;
    directory.add("c.json", description("c"));
    directory.add("b.json", description("b", maps_edits));
    directory.add("a.json", description("a", ", \"edits\": false"));
    const MappingDescription mapping = read_mapping(directory.path());
    EXPECT_EQ(mapping.file, directory.path() / "b.json");
    EXPECT_TRUE(mapping.edits);
    EXPECT_EQ(names_beside(mapping), (std::vector<std::string>{"a.json", "c.json"}));
    EXPECT_FALSE(mapping.beside[0].edits);
    EXPECT_FALSE(mapping.beside[1].edits);
    EXPECT_EQ(mapping.modules.native, (std::vector<std::string>{"b-cfg", "a-cfg", "c-cfg"}));
}

TEST(ADirectoryOfPlugIns, MayHaveJustOneWhoseMappingIsTheMainOne) {
    const TemporaryDirectory directory;
    directory.add("a.json", description("a"));
    directory.add("README", "not a description");
    const MappingDescription mapping = read_mapping(directory.path());
    EXPECT_EQ(mapping.file, directory.path() / "a.json");
    EXPECT_TRUE(mapping.edits);
    EXPECT_TRUE(mapping.beside.empty());
}

TEST(ADirectoryOfPlugIns, HasAMappingOnceThatTheMainOneNamesToo) {
    const TemporaryDirectory directory;
    directory.add("a.json", description("a", maps_edits + ", \"beside\": [\"libc.so\"]"));
    directory.add("b.json", description("b"));
    directory.add("libc.json", description("c"));
    EXPECT_EQ(names_beside(read_mapping(directory.path())), (std::vector<std::string>{"libc.json", "b.json"}));
}

// --- refused ---

struct FaultyFile {
    const char *name;
    std::vector<std::pair<const char *, std::string>> files;
    const char *path; // in the directory; empty: the directory
    const char *told; // part of the message
};

void PrintTo(const FaultyFile &fault, std::ostream *out) {
    *out << fault.name;
}

class ADirectory : public testing::TestWithParam<FaultyFile> {};

TEST_P(ADirectory, IsRefusedWithTheFileAtFault) {
    const TemporaryDirectory directory;
    for (const auto &[name, text] : GetParam().files)
        directory.add(name, text);
    const std::filesystem::path place =
        *GetParam().path == '\0' ? directory.path() : directory.path() / GetParam().path;
    try {
        read_mapping(directory.path());
        FAIL() << "was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), place.string());
        EXPECT_EQ(error.tag(), ErrorTag::invalid_value);
        EXPECT_NE(std::string(error.what()).find(GetParam().told), std::string::npos) << error.what();
    }
}

INSTANTIATE_TEST_SUITE_P(
    That, ADirectory,
    testing::Values(
        FaultyFile{"IsEmpty", {}, "", "no mapping plug-in here"},
        FaultyFile{"HasNoDescription", {{"README", "text"}}, "", "no mapping plug-in here"},
        FaultyFile{"HasADescriptionThatIsNoJson",
                   {{"a.json", description("a", maps_edits)}, {"b.json", "text"}},
                   "b.json",
                   "is no JSON"},
        FaultyFile{"HasADescriptionWithAnUnknownMember",
                   {{"a.json", description("a", maps_edits)}, {"b.json", description("b", ", \"colour\": 1")}},
                   "b.json",
                   "\"colour\" is unknown"},
        FaultyFile{
            "HasADescriptionOfAnotherModel",
            {{"a.json", description("a")},
             {"b.json", R"({"library": "libb.so", "registration-functions": ["reg"], "walker-prefix": "x_",
  "openconfig": {"modules": ["openconfig-y"], "top": "y"}, "native-modules": ["b"], "edits": true})"}},
            "a.json",
            "expected the top container y of module openconfig-y"},
        FaultyFile{"HasAMainMembersInAnotherThanTheMainOne",
                   {{"a.json", description("a", maps_edits)},
                    {"b.json", description("b", R"(, "device": {"interfaces": []})")}},
                   "b.json",
                   "\"device\": a mapping that is loaded beside another one cannot have it"},
        FaultyFile{"HasNoMainMapping",
                   {{"a.json", description("a")}, {"b.json", description("b", ", \"edits\": false")}},
                   "",
                   "none of the descriptions here has \"edits\": true"},
        FaultyFile{"HasTwoMainMappings",
                   {{"a.json", description("a", maps_edits)}, {"b.json", description("b", maps_edits)}},
                   "b.json",
                   "which"},
        FaultyFile{"HasALibraryWithoutADescription",
                   {{"a.json", description("a", maps_edits)}, {"liba.so", ""}, {"libb.so", ""}},
                   "libb.so",
                   "libb.json"}),
    [](const auto &test) { return test.param.name; });

TEST(ADirectoryThatDoesNotExist, IsTakenForAPlugIn) {
    try {
        read_mapping("/no/such/directory");
        FAIL() << "was accepted";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), "/no/such/directory");
        EXPECT_NE(std::string(error.what()).find("No such file or directory"), std::string::npos);
    }
}

// --- the shipped ones ---

TEST(TheShippedDirectory, HasTheSameMainMappingAsItsLibraryByItself) {
    const MappingDescription together = read_mapping(YFW_PLUGINS);
    const MappingDescription alone = read_mapping(OCLLDP_LIBRARY);
    EXPECT_EQ(together.library.filename(), alone.library.filename());
    EXPECT_EQ(together.beside.size(), 1U);
    EXPECT_TRUE(alone.beside.empty());
    EXPECT_TRUE(alone.edits);
}

// The shipped plug-ins and a third one, in a directory: nothing else is told of it.
class AThirdPlugIn : public testing::Test {
protected:
    AThirdPlugIn() {
        for (const auto &entry : std::filesystem::directory_iterator(YFW_PLUGINS))
            std::filesystem::create_symlink(entry.path(), directory.path() / entry.path().filename());
        for (const std::filesystem::path file : {THIRD_MAPPING_LIBRARY, THIRD_MAPPING_DESCRIPTION})
            std::filesystem::create_symlink(file, directory.path() / file.filename());
    }

    Lines read(const std::string &xml) {
        TextSource source;
        source.xml = xml;
        Engine engine(schemas(), source, read_mapping(directory.path()));
        return leaves(engine.read(request({"/lldp/state/enabled", "/lldp/state/hello-timer"})).data.get());
    }

    const TemporaryDirectory directory;
};

TEST_F(AThirdPlugIn, AnswersTogetherWithTheShippedOnes) {
    EXPECT_EQ(read(""), (Lines{"/lldp/state/enabled=false", "/lldp/state/hello-timer=30"}));
}

TEST_F(AThirdPlugIn, LeavesWhatTheMainOneAnswers) {
    EXPECT_EQ(read("<lldp xmlns=\"" + std::string(cfg_ns) + "\"><timer>45</timer></lldp>"),
              (Lines{"/lldp/state/enabled=true", "/lldp/state/hello-timer=45"}));
}

} // namespace
} // namespace yfw::host::test
