// The command line: help, refused arguments and files, the debug log, output that cannot be written.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "base/descriptor.h"
#include "base/run_program.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

Outcome run(const Strings &arguments) {
    return run_yfw({.arguments = arguments});
}

Outcome run_get(Strings arguments) {
    arguments.insert(arguments.begin(), "get");
    return run(arguments);
}

void expect_success(const Outcome &outcome) {
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.errors, "");
}

// Expects one line on standard error that contains these words, and nothing on standard output.
void expect_refusal(const Outcome &outcome, const Strings &words) {
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(std::count(outcome.errors.begin(), outcome.errors.end(), '\n'), 1) << outcome.errors;
    EXPECT_TRUE(outcome.errors.ends_with('\n')) << outcome.errors;
    for (const std::string &word : words)
        EXPECT_NE(outcome.errors.find(word), std::string::npos)
            << "no \"" << word << "\" in: " << outcome.errors;
}

struct HelpCase {
    const char *name;
    Strings arguments;
    Strings words;
};

class HelpText : public testing::TestWithParam<HelpCase> {};

TEST_P(HelpText, IsPrintedWithExamples) {
    const Outcome outcome = run(GetParam().arguments);
    expect_success(outcome);
    for (const std::string &word : GetParam().words)
        EXPECT_NE(outcome.output.find(word), std::string::npos) << word;
}

INSTANTIATE_TEST_SUITE_P(
    Of, HelpText,
    testing::Values(HelpCase{"TheProgram", {"--help"}, {"Usage: yfw", "get", "Examples:", "yfw get /lldp"}},
                    HelpCase{"TheProgramInShort", {"-h"}, {"Usage: yfw", "Examples:"}},
                    HelpCase{"Get",
                             {"get", "--help"},
                             {"Usage: yfw get", "--config", "--state", "--format", "--native", "--device",
                              "--models", "--trace", "Examples:", "yfw get /lldp", "[name='eth1']",
                              "--format xml"}},
                    HelpCase{"GetBesideAPath", {"get", "/lldp", "--help"}, {"Usage: yfw get"}}),
    [](const auto &text) { return text.param.name; });

TEST(VersionText, IsTheProgramAndItsVersion) {
    const Outcome outcome = run({"--version"});
    expect_success(outcome);
    EXPECT_EQ(outcome.output, "yfw " YFW_VERSION "\n");
}

// --- devices ---

class ACommandOnAnLldpdThatDoesNotRun : public testing::TestWithParam<Strings> {};

TEST_P(ACommandOnAnLldpdThatDoesNotRun, FailsAndSaysSo) {
    const TemporaryDirectory directory;
    Strings arguments = GetParam();
    arguments.push_back("--device");
    arguments.push_back("lldpd:" + (directory.path() / "none.sock").string());
    const Outcome outcome = run(arguments);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_NE(outcome.errors.find("cannot connect: No such file or directory"), std::string::npos)
        << outcome.errors;
}

INSTANTIATE_TEST_SUITE_P(Such, ACommandOnAnLldpdThatDoesNotRun,
                         testing::Values(Strings{"get", "/lldp"}, Strings{"watch"}, Strings{"neighbors"},
                                         Strings{"set", "/lldp/config/system-name", "r1"}),
                         [](const auto &command) { return command.param[0]; });

// --- paths ---

struct PathCase {
    const char *name;
    const char *path;
    Strings words; // besides the path itself
};

class APathThatIsRefused : public testing::TestWithParam<PathCase> {};

TEST_P(APathThatIsRefused, IsNamedInOneLine) {
    Strings words = GetParam().words;
    words.emplace_back(GetParam().path);
    expect_refusal(run_get({GetParam().path}), words);
}

INSTANTIATE_TEST_SUITE_P(
    Unknown, APathThatIsRefused,
    testing::Values(PathCase{"Node", "/lldp/nothing", {"unknown node", "\"nothing\""}},
                    PathCase{"NodeBelowANode", "/lldp/state/counters/frames", {"unknown node", "\"frames\""}},
                    PathCase{"NodeBelowALeaf", "/lldp/config/enabled/more", {"unknown node", "\"more\""}},
                    PathCase{
                        "NodeBelowAKeyedEntry", "/lldp/interfaces/interface[name='eth1']/stat", {"\"stat\""}},
                    PathCase{"TopNode", "/interfaces", {"\"interfaces\""}},
                    PathCase{"NativeNode", "/lldp/timer", {"\"timer\""}},
                    PathCase{"NativeModule", "/Tarvo-QD-ethernet-lldp-cfg:lldp", {}},
                    PathCase{"Module", "/lldp/other:config", {"config"}},
                    PathCase{"LetterCase", "/lldp/Config", {"\"Config\""}},
                    PathCase{"Key", "/lldp/interfaces/interface[nme='eth1']", {"\"nme\""}},
                    PathCase{"KeyOfAContainer", "/lldp/interfaces[name='eth1']", {"\"name\""}},
                    PathCase{"KeyOfALeaf", "/lldp/config/enabled[name='true']", {"\"name\""}},
                    PathCase{"KeyThatIsNoKey", "/lldp/interfaces/interface[config='eth1']", {"config"}}),
    [](const auto &path) { return path.param.name; });

INSTANTIATE_TEST_SUITE_P(
    Malformed, APathThatIsRefused,
    testing::Values(
        PathCase{"WithoutASlash", "lldp", {"character 1"}}, PathCase{"BlankFirst", " /lldp", {"character 1"}},
        PathCase{"BlankLast", "/lldp/config ", {"character 13"}}, PathCase{"OnlyASlash", "/", {"character 2"}},
        PathCase{"TwoSlashesFirst", "//lldp", {"character 2"}},
        PathCase{"ThreeSlashesWithin", "/lldp///config", {"character 8"}},
        PathCase{"WordBehindAStar", "/lldp/*x", {"character 8"}},
        PathCase{"KeyWithoutEnd", "/lldp/interfaces/interface[name='eth1'", {"character 39"}},
        PathCase{"WordBehindAKeyWithoutQuotes", "/lldp/interfaces/interface[name=eth1]b", {"character 38"}},
        PathCase{"KeyWithoutValue", "/lldp/interfaces/interface[name=]", {"character 33"}},
        PathCase{"KeyWithoutEquals", "/lldp/interfaces/interface[name]", {"character 32"}},
        PathCase{"KeyWithoutName", "/lldp/interfaces/interface[='eth1']", {"character 28"}},
        PathCase{"KeyThatIsEmpty", "/lldp/interfaces/interface[]", {"character 28"}},
        PathCase{"KeyWithQuotesThatDiffer", "/lldp/interfaces/interface[name='eth1\"]", {"quote"}},
        PathCase{"WordBehindAKey", "/lldp/interfaces/interface[name='a']b", {"character 37"}}),
    [](const auto &path) { return path.param.name; });

TEST(AnEmptyPath, IsRefused) {
    expect_refusal(run_get({""}), {"path"});
}

TEST(ARefusedPath, IsNamedAmongGoodOnes) {
    expect_refusal(run_get({"/lldp/config", "/lldp/nothing", "/lldp/state"}), {"/lldp/nothing"});
}

TEST(APathWithALineBreak, IsRefusedInOneLine) {
    expect_refusal(run_get({"/lldp/con\nfig"}), {"/lldp/con"});
}

TEST(AListKeyNamedTwice, FailsTheReadAndIsNamed) {
    const Outcome outcome = run_get({"/lldp/interfaces/interface[name='eth1'][name='eth2']"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_NE(outcome.errors.find("name: List key node error."), std::string::npos) << outcome.errors;
}

// --- options ---

struct OptionCase {
    const char *name;
    Strings arguments;
    Strings words;
};

class AWrongCommandLine : public testing::TestWithParam<OptionCase> {};

TEST_P(AWrongCommandLine, IsRefusedInOneLineThatNamesTheMistake) {
    expect_refusal(run(GetParam().arguments), GetParam().words);
}

INSTANTIATE_TEST_SUITE_P(
    With, AWrongCommandLine,
    testing::Values(
        OptionCase{"Nothing", {}, {"subcommand"}},
        OptionCase{"AnUnknownCommand", {"frobnicate"}, {"frobnicate"}},
        OptionCase{"AMistypedCommand", {"gett", "/lldp"}, {"unknown command \"gett\": did you mean \"get\"?"}},
        OptionCase{
            "AMistypedCommandOfLab", {"lab", "upp"}, {"lab: unknown command \"upp\": did you mean \"up\"?"}},
        OptionCase{"AnUnknownOption", {"--bogus"}, {"--bogus"}},
        OptionCase{"AMistypedOption",
                   {"get", "/lldp", "--devise", "examples"},
                   {"get: unknown option \"--devise\": did you mean \"--device\"?"}},
        OptionCase{"AMistypedOptionWithItsValue",
                   {"get", "--formt=xml", "/lldp"},
                   {"unknown option \"--formt\": did you mean \"--format\"?"}},
        OptionCase{"AMistypedOptionInPlaceOfAPath",
                   {"get", "--stat"},
                   {"unknown option \"--stat\": did you mean \"--state\"?"}},
        OptionCase{"AWordTooMany", {"show", "1", "[2]"}, {"show: unexpected argument \"[2]\""}},
        OptionCase{"NoPath", {"get"}, {"PATH"}},
        OptionCase{"AnUnknownOptionOfGet", {"get", "--bogus", "/lldp"}, {"--bogus"}},
        OptionCase{"AnUnknownFormat", {"get", "/lldp", "--format", "yaml"}, {"--format", "yaml"}},
        OptionCase{"ANumberAsFormat", {"get", "/lldp", "--format", "0"}, {"--format"}},
        OptionCase{"AFormatWithoutValue", {"get", "/lldp", "--format"}, {"--format"}},
        OptionCase{"ACommitBelowZero", {"show", "-1"}, {"COMMIT", "9223372036854775807"}},
        OptionCase{"BothContents", {"get", "--config", "--state", "/lldp"}, {"--config", "--state"}},
        OptionCase{"AllBesideARequest", {"explain", "--all", "get", "/lldp"}, {"--all", "REQUEST"}},
        OptionCase{"ANativeFileWithoutName", {"get", "/lldp", "--native"}, {"--native"}},
        OptionCase{"ADeviceBesideNativeFiles",
                   {"get", "/lldp", "--device", "x", "--native", "y"},
                   {"--device", "--native"}}),
    [](const auto &option) { return option.param.name; });

TEST(AFormat, IsTakenInAnyLetterCase) {
    EXPECT_EQ(run_get({"/lldp/config", "--format", "XML"}).output,
              run_get({"/lldp/config", "--format", "xml"}).output);
}

// --- files ---

struct FileCase {
    const char *name;
    const char *file;
    std::string content;
    Strings words; // besides the file's path
};

const std::string broken_timer = native_configuration(element("timer", "abc"));

class ANativeFile : public testing::TestWithParam<FileCase> {};

TEST_P(ANativeFile, IsRefusedInOneLineThatNamesIt) {
    const TemporaryDirectory directory;
    const std::string path = directory.add(GetParam().file, GetParam().content);
    Strings words = GetParam().words;
    words.push_back(path);
    expect_refusal(run_get({"/lldp", "--native", path}), words);
}

TEST_P(ANativeFile, IsRefusedInADeviceToo) {
    const TemporaryDirectory directory;
    const std::string path = directory.add(GetParam().file, GetParam().content);
    expect_refusal(run_get({"/lldp", "--device", directory.path().string()}), {path});
}

INSTANTIATE_TEST_SUITE_P(
    With, ANativeFile,
    testing::Values(
        FileCase{"AValueOfTheWrongType", "a.xml", broken_timer, {"timer", "abc", "line number 1"}},
        FileCase{"AValueOutOfRange", "a.xml", native_configuration(element("timer", "4")), {"timer", "\"4\""}},
        FileCase{"AnUnknownElement", "a.xml", native_configuration(element("bogus", "1")), {"bogus"}},
        FileCase{"AnUnknownModule", "a.xml", "<lldp xmlns=\"urn:example:other\"/>", {"urn:example:other"}},
        FileCase{"AnElementThatIsNotClosed",
                 "a.xml",
                 "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\">",
                 {}},
        FileCase{"AnElementClosedByAnother", "a.xml", native_configuration("<timer>30</enable>"), {"timer"}},
        FileCase{"TheSameLeafTwice",
                 "a.xml",
                 native_configuration(element("timer", "30") + element("timer", "31")),
                 {"timer"}},
        FileCase{"AListEntryWithoutItsKey", "a.xml", native_state(element("nodes", "<node/>")), {"node-name"}},
        FileCase{"BytesThatAreNoText", "a.xml", native_configuration(element("system-name", "\xff")), {}},
        FileCase{"TextThatIsNoData", "a.xml", "hello\n", {}}, FileCase{"NothingInIt", "a.xml", "", {}},
        FileCase{"NothingInItAsJson", "a.json", "", {}},
        FileCase{"JsonThatIsCutOff", "a.json", "{\"Tarvo-QD-ethernet-lldp-cfg:lldp\": {\"timer\": 30", {}},
        FileCase{"JsonOfTheWrongType",
                 "a.json",
                 "{\"Tarvo-QD-ethernet-lldp-cfg:lldp\": {\"timer\": \"30\"}}",
                 {"timer"}},
        FileCase{
            "JsonOfAnUnknownName", "a.json", "{\"Tarvo-QD-ethernet-lldp-cfg:lldp\": {\"nope\": 30}}", {"nope"}},
        FileCase{"TextAfterJson",
                 "a.json",
                 "{\"Tarvo-QD-ethernet-lldp-cfg:lldp\": {\"timer\": 30}} x",
                 {"expected end of input"}},
        FileCase{"TwoJsonDocuments", "a.json", "{}\n{}", {"expected end of input"}},
        FileCase{"HalfASurrogatePair",
                 "a.json",
                 R"({"Tarvo-QD-ethernet-lldp-cfg:lldp": {"system-name": "\ud83d"}})",
                 {"surrogate"}},
        FileCase{"AnOperation",
                 "a.xml",
                 native_configuration("<timer xmlns:nc=\"urn:ietf:params:xml:ns:netconf:base:1.0\" "
                                      "nc:operation=\"delete\">30</timer>"),
                 {"timer", "operation"}},
        FileCase{"AnOperationInJson",
                 "a.json",
                 R"({"Tarvo-QD-ethernet-lldp-cfg:lldp": {"timer": 30,
                     "@timer": {"ietf-netconf:operation": "delete"}}})",
                 {"timer", "operation"}},
        FileCase{"AValueThatIsSaidToBeTheDefault",
                 "a.xml",
                 native_configuration("<timer xmlns:wd=\"urn:ietf:params:xml:ns:netconf:default:1.0\" "
                                      "wd:default=\"true\">31</timer>"),
                 {"timer", "default"}},
        FileCase{"AZeroByte",
                 "a.xml",
                 native_configuration(element("timer", "30")) + std::string(1, '\0') + "x",
                 {"NUL"}},
        FileCase{"AWrongValueBelowAComment",
                 "a.xml",
                 "<!--\n\n-->" + native_configuration(element("timer", "abc")),
                 {"line number 3"}},
        FileCase{"ANumberOfTenThousandDigits",
                 "a.xml",
                 native_configuration(element("timer", std::string(10000, '9'))),
                 {"timer"}},
        FileCase{"OpenConfigData",
                 "a.json",
                 "{\"openconfig-lldp:lldp\": {\"config\": {\"enabled\": true}}}",
                 {"openconfig-lldp"}}),
    [](const auto &file) { return file.param.name; });

struct WrittenCase {
    const char *name;
    std::string content;
    std::string value; // of the system name, in JSON
};

class ANativeFilesText : public testing::TestWithParam<WrittenCase> {};

TEST_P(ANativeFilesText, IsThatOfItsDocument) {
    const TemporaryDirectory directory;
    const std::string path = directory.add("a", GetParam().content);
    const Outcome outcome = run_get({"/lldp/config/system-name", "--native", path});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_NE(outcome.output.find("\"system-name\": \"" + GetParam().value + "\""), std::string::npos)
        << outcome.output;
}

// The text must be ASCII.
std::string utf16(const std::string &text) {
    std::string units = "\xff\xfe";
    for (const char c : text)
        units.append(1, c).append(1, '\0');
    return units;
}

std::string name_in_json(const std::string &name) {
    return R"({"Tarvo-QD-ethernet-lldp-cfg:lldp": {"system-name": ")" + name + "\"}}";
}

INSTANTIATE_TEST_SUITE_P(
    With, ANativeFilesText,
    testing::Values(
        WrittenCase{"AByteOrderMark", "\xef\xbb\xbf" + native_configuration(element("system-name", "r1")),
                    "r1"},
        WrittenCase{"AByteOrderMarkInJson", "\xef\xbb\xbf" + name_in_json("r1"), "r1"},
        WrittenCase{"CharactersOfUtf16",
                    utf16("<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n" +
                          native_configuration(element("system-name", "r1"))),
                    "r1"},
        WrittenCase{"CharactersOfUtf16InJson", utf16(name_in_json("r1")), "r1"},
        WrittenCase{"ACommentInside", native_configuration("<system-name>r<!--\n<x> -->1</system-name\n>"),
                    "r1"},
        WrittenCase{"AnInstructionInside", native_configuration("<system-name>r<?x > ?>1</system-name>"), "r1"},
        WrittenCase{"ASectionInside", native_configuration("<system-name>r<![CDATA[<&>]]>1</system-name>"),
                    "r<&>1"},
        WrittenCase{"EndsOfLinesOfOtherSystems",
                    native_configuration("<system-name>a\r\nb\rc</system-name>\r\n"), "a\\u000Ab\\u000Ac"},
        WrittenCase{"ACarriageReturnOfItsOwn", native_configuration("<system-name>a&#13;b</system-name>"),
                    "a\\u000Db"},
        WrittenCase{"ASurrogatePair", name_in_json("r\\ud83d\\uDE001"),
                    "r\xf0\x9f\x98\x80"
                    "1"},
        WrittenCase{"ABackslashBeforeAnEscape", name_in_json("\\\\ud83d"), "\\\\ud83d"},
        WrittenCase{"AQuoteInJson", name_in_json("a\\\"b"), "a\\\"b"}),
    [](const auto &test) { return test.param.name; });

TEST(AWarning, IsBriefHoweverLongAValueIs) {
    const TemporaryDirectory directory;
    const std::string path =
        directory.add("a.xml", native_configuration(element("system-name", std::string(1000000, 'a'))));
    const Outcome outcome = run_get({"/lldp/config/system-name", "--native", path});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_LT(outcome.errors.size(), 1000U);
}

TEST(AGoodFileBesideABadOne, DoesNotHideIt) {
    const TemporaryDirectory directory;
    const std::string good = directory.add("good.xml", native_configuration(element("timer", "30")));
    const std::string bad = directory.add("bad.xml", broken_timer);
    expect_refusal(run_get({"/lldp", "--native", good, "--native", bad}), {bad});
    expect_refusal(run_get({"/lldp", "--native", bad, "--native", good}), {bad});
}

TEST(ANativeFile, ThatIsNotThereIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "nowhere.xml").string();
    expect_refusal(run_get({"/lldp", "--native", path}), {path, "No such file"});
}

TEST(ANativeFile, ThatIsTooLargeIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = directory.add("a.xml", native_configuration(element("timer", "30")));
    std::filesystem::resize_file(path, std::uintmax_t{20} << 30);
    expect_refusal(run_get({"/lldp", "--native", path}), {path + ": is larger than 1024 MiB"});
    expect_refusal(run_get({"/lldp", "--device", directory.path().string()}), {path + ": is larger than"});
}

TEST(ANativeFile, ThatIsADirectoryIsRefused) {
    const TemporaryDirectory directory;
    expect_refusal(run_get({"/lldp", "--native", directory.path().string()}), {directory.path().string()});
}

// --native and --device refuse a chain of links without an end as they refuse a missing file.
TEST(ALinkToItself, IsRefusedAsAFileAndAsADirectory) {
    const TemporaryDirectory directory;
    const std::string loop = (directory.path() / "loop").string();
    std::filesystem::create_symlink("loop", loop);
    const std::string why = "Too many levels of symbolic links";
    expect_refusal(run_get({"/lldp", "--native", loop}), {loop + ": cannot be read: " + why});
    expect_refusal(run_get({"/lldp", "--device", loop}), {loop, why});
    expect_refusal(run_get({"/lldp", "--models", loop}), {loop + ": is not a directory of YANG modules"});
    expect_refusal(run({"serve", "--nacm", loop, "--socket", (directory.path() / "socket").string()}),
                   {loop + ": cannot be read: " + why});
}

TEST(ADevice, ThatIsNotThereIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = (directory.path() / "nowhere").string();
    expect_refusal(run_get({"/lldp", "--device", path}), {path, "No such file"});
}

TEST(ADevice, ThatIsAFileIsRefused) {
    const TemporaryDirectory directory;
    const std::string path = directory.add("a.xml", native_configuration(element("timer", "30")));
    expect_refusal(run_get({"/lldp", "--device", path}), {path});
}

TEST(ADevice, WithoutNativeDataIsRefused) {
    const TemporaryDirectory directory;
    directory.add("README.md", "nothing here\n");
    expect_refusal(run_get({"/lldp", "--device", directory.path().string()}), {directory.path().string()});
}

TEST(ADevice, IsReadFromItsDataFilesOnly) {
    const TemporaryDirectory directory;
    directory.add("config.json", "{\"Tarvo-QD-ethernet-lldp-cfg:lldp\": {\"timer\": 30}}");
    directory.add("README.md", "Recorded on a rainy day.\n");
    const Outcome outcome = run_get({"/lldp/config/hello-timer", "--device", directory.path().string()});
    expect_success(outcome);
    EXPECT_NE(outcome.output.find("\"hello-timer\": \"30\""), std::string::npos) << outcome.output;
}

TEST(APlugin, ThatIsNotThereIsRefused) {
    expect_refusal(run_get({"/lldp", "--plugin", "/nonexistent/plugin.so"}), {"/nonexistent/plugin.so"});
}

// --- failures of the mapping ---

struct FailureCase {
    const char *name;
    std::string announcement;
    const char *message; // what the line must contain; "" if the mapping logs no message
};

class AReadThatTheMappingFails : public testing::TestWithParam<FailureCase> {};

TEST_P(AReadThatTheMappingFails, SaysWhatFailedAndNotWhatWentBefore) {
    const TemporaryDirectory directory;
    const std::string path = directory.add(
        "a.xml", native_neighbors(native_neighbor("e0", "sw", element("mib", GetParam().announcement))));
    const Outcome outcome = run_get({"/lldp", "--native", path});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.output, "");
    EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_NE(outcome.errors.find(GetParam().message), std::string::npos) << outcome.errors;
    // An earlier step logs this line and succeeds.
    EXPECT_EQ(outcome.errors.find("OC2QD data null"), std::string::npos) << outcome.errors;
}

INSTANTIATE_TEST_SUITE_P(On, AReadThatTheMappingFails,
                         testing::Values(FailureCase{"AChassisOfKind0", element("chassis-id-sub-type", "0"),
                                                     "Invalid Chassis id type"},
                                         FailureCase{"AChassisOfKind8", element("chassis-id-sub-type", "8"),
                                                     "Invalid Chassis id type"},
                                         FailureCase{"AChassisOfTheLargestKind",
                                                     element("chassis-id-sub-type", "4294967295"),
                                                     "Invalid Chassis id type"},
                                         FailureCase{"APortOfKind0", element("port-id-sub-type", "0"), ""},
                                         FailureCase{"APortOfKind8", element("port-id-sub-type", "8"), ""}),
                         [](const auto &failure) { return failure.param.name; });

// --- the debug log ---

TEST(TheDebugLog, GoesToStandardErrorAndLeavesTheAnswer) {
    const Outcome plain = run_get({"/lldp"});
    const Outcome traced = run_get({"/lldp", "--trace"});
    EXPECT_EQ(traced.status, 0);
    EXPECT_EQ(traced.output, plain.output);
    EXPECT_EQ(plain.errors, "");
    std::size_t starts = 0;
    std::size_t ends = 0;
    for (const std::string &line : lines_of(traced.errors)) {
        EXPECT_TRUE(line.starts_with("TRC: YFW: ctx=0x") || line.starts_with("ERR: YFW: ctx=0x") ||
                    line.empty())
            << line;
        starts += line.ends_with(",Start") ? 1U : 0U;
        ends += line.ends_with(",End") ? 1U : 0U;
    }
    EXPECT_GT(starts, 0U);
    EXPECT_GT(ends, 0U);
}

TEST(TheDebugLog, ShowsTheFailureBeforeTheMessage) {
    const std::string path = "/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv[type='1']";
    const Outcome traced = run_get({path, "--trace"});
    EXPECT_EQ(traced.status, 1);
    EXPECT_EQ(traced.output, "");
    const Strings lines = lines_of(traced.errors);
    ASSERT_FALSE(lines.empty());
    EXPECT_NE(traced.errors.find("ERR: YFW: ctx=0x"), std::string::npos);
    EXPECT_NE(traced.errors.find(",Invalid key type value\n"), std::string::npos);
    EXPECT_TRUE(lines.back().starts_with("yfw: ")) << lines.back();
    EXPECT_NE(lines.back().find("0xaaf2a000"), std::string::npos) << lines.back();
}

// --- output ---

class AFullDevice : public testing::TestWithParam<Strings> {};

TEST_P(AFullDevice, FailsTheRunWithAMessage) {
    const Outcome outcome = run_yfw({.arguments = GetParam(), .output_device = "/dev/full"});
    EXPECT_NE(outcome.status, 0);
    EXPECT_NE(outcome.errors.find("No space left on device"), std::string::npos) << outcome.errors;
}

TEST_P(AFullDevice, EndsTheProgramWithTheStatusOfAFailure) {
    EXPECT_EQ(run_yfw({.arguments = GetParam(), .output_device = "/dev/full"}).status, 1);
}

TEST_P(AFullDevice, FailsTheRunAsAPipeThatNobodyReadsDoesWithoutAWord) {
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const Descriptor writing(ends[1]);
    ::close(ends[0]);
    Program program = program_under_test(GetParam());
    program.output = writing.get();
    const Finished finished = yfw::run(program, "", std::chrono::seconds(60));
    EXPECT_EQ(finished.status, 1);
    EXPECT_EQ(finished.errors, "");
}

INSTANTIATE_TEST_SUITE_P(AsOutput, AFullDevice,
                         testing::Values(Strings{"get", "/lldp"}, Strings{"get", "/lldp", "--format", "xml"},
                                         Strings{"get", "/lldp/config/enabled"}, Strings{"--help"},
                                         Strings{"--version"},
                                         Strings{"set", "--dry-run", "/lldp/config/hello-timer", "33"},
                                         Strings{"status"}, Strings{"drift"},
                                         Strings{"explain", "get", "/lldp"}, Strings{"topology"}));

TEST(TheAnswer, IsTheSameEachTime) {
    const Outcome first = run_get({"/lldp"});
    expect_success(first);
    EXPECT_TRUE(first.output.ends_with("}\n"));
    EXPECT_EQ(run_get({"/lldp"}).output, first.output);
}

} // namespace
} // namespace yfw::test
