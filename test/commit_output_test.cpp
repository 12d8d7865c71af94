// What the program prints about commits, as text and as JSON.
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "device/pending_file.h"
#include "edit_device.h"
#include "support/files.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using Json = nlohmann::json;
using Strings = std::vector<std::string>;

// On a device that is switched off, a timer is kept in OpenConfig terms and held back natively.
class ShownCommits : public testing::Test {
protected:
    ShownCommits() {
        expect_committed(device.run({"commit", "--comment", "quiet", "--", "set", "/lldp/config/enabled",
                                     "false", "delete", "/lldp/config/hello-timer"}));
        expect_committed(device.set("/lldp/config/hello-timer", "20"));
    }

    Json json(const Strings &arguments) const {
        const Outcome outcome = device.run(arguments);
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        return Json::parse(outcome.output);
    }

    const EditedDevice device{configured_device()};
};

// The text below a heading, up to the next empty line.
std::string below(const std::string &heading, const std::string &text) {
    const size_t at = text.find("\n" + heading + ":\n");
    if (at == std::string::npos)
        return "(no " + heading + ")";
    const size_t start = at + heading.size() + 3;
    return text.substr(start, text.find("\n\n", start - 1) + 1 - start);
}

TEST_F(ShownCommits, HaveBothDifferencesUnderTheirHeadings) {
    const std::string held_back = device.run({"show", "2"}).output;
    EXPECT_EQ(below("OpenConfig difference", held_back), "+ /openconfig-lldp:lldp/config/hello-timer = 20\n");
    EXPECT_NE(held_back.find("\nnative difference:\n\n"), std::string::npos) << held_back;
    const std::string both = device.run({"show", "1"}).output;
    EXPECT_NE(below("OpenConfig difference", both).find("config/enabled = false"), std::string::npos) << both;
    EXPECT_NE(below("native difference", both).find("- /Tarvo-QD-ethernet-lldp-cfg:lldp/enable = true"),
              std::string::npos)
        << both;
}

TEST_F(ShownCommits, HaveAnEditThatCanBeAppliedAgain) {
    const EditedDevice other{configured_device()};
    for (const int number : {1, 2}) {
        const std::string shown = device.run({"show", std::to_string(number)}).output;
        const std::string edit = below("edit", shown);
        EXPECT_NE(edit.find("<lldp "), std::string::npos) << shown;
        expect_committed(other.edit(edit));
    }
    EXPECT_EQ(other.openconfig(), device.openconfig());
    EXPECT_EQ(other.native(), device.native());
}

TEST_F(ShownCommits, HaveAnEditThatMakesEntriesAgain) {
    const EditedDevice other{configured_device()};
    expect_committed(device.set("/lldp/interfaces/interface[name='eth7']/config/enabled", "false"));
    expect_committed(other.edit(json({"show", "3", "--json"}).at("edit").get<std::string>()));
    EXPECT_NE(other.openconfig().find("eth7"), std::string::npos);
}

TEST_F(ShownCommits, HaveTextsThatAreReadAgainAsTheyAre) {
    const EditedDevice other{configured_device()};
    const std::string text = "a\r\n\tb\rc <&>\"']]> ";
    expect_committed(device.set("/lldp/config/system-name", text));
    expect_committed(
        device.set("/lldp/interfaces/interface[name=\"it's a \"\"key\"\"]\"]/config/enabled", "false"));
    expect_committed(other.edit(json({"show", "3", "--json"}).at("edit").get<std::string>()));
    EXPECT_EQ(other.values("/openconfig-lldp:lldp/config/system-name"), Strings{text});
    expect_committed(other.edit(json({"show", "4", "--json"}).at("openconfig").get<std::string>(),
                                {"--operation", "replace"}));
    EXPECT_EQ(other.openconfig(), device.openconfig());
    const Outcome answer = device.run({"get", "--config", "/lldp", "--format", "xml"});
    EXPECT_NE(answer.output.find("a&#13;\n\tb&#13;c"), std::string::npos) << answer.output;
    const EditedDevice third{configured_device()};
    expect_committed(third.edit(answer.output, {"--operation", "replace"}));
    EXPECT_EQ(third.openconfig(), device.openconfig());
}

TEST_F(ShownCommits, AreWholeInJson) {
    const Json commit = json({"show", "1", "--json"});
    EXPECT_EQ(commit.at("commit"), 1);
    EXPECT_EQ(commit.at("comment"), "quiet");
    EXPECT_EQ(commit.at("native").get<std::string>().find("<lldp>"), std::string::npos);
    EXPECT_NE(commit.at("openconfig").get<std::string>().find("<enabled>false"), std::string::npos);
    const Json held_back = json({"show", "2", "--json"});
    EXPECT_EQ(
        held_back.at("openconfig-difference"),
        Json::array(
            {{{"change", "added"}, {"path", "/openconfig-lldp:lldp/config/hello-timer"}, {"value", "20"}}}));
    EXPECT_EQ(held_back.at("native-difference"), Json::array());
}

TEST_F(ShownCommits, AreListedInJsonNewestFirst) {
    const Json history = json({"history", "--json"});
    ASSERT_EQ(history.size(), 3U);
    EXPECT_EQ(history.at(0).at("commit"), 2);
    EXPECT_EQ(history.at(1).at("comment"), "quiet");
    EXPECT_TRUE(history.at(2).contains("time"));
}

TEST_F(ShownCommits, HaveADifferenceInJson) {
    const Json last = json({"diff", "--json"});
    EXPECT_EQ(last.at("commit"), 2);
    EXPECT_EQ(last.at("openconfig-difference").size(), 1U);
    EXPECT_EQ(json({"diff", "0", "--json"}).at("native-difference"), Json::array());
}

TEST_F(ShownCommits, AreToldInJsonWhenTheyAreMade) {
    const Json tried = json({"commit", "--json", "--dry-run", "--", "set", "/lldp/config/enabled", "true"});
    EXPECT_EQ(tried.at("commit"), nullptr);
    EXPECT_FALSE(tried.at("native-difference").empty());
    const Json made = json({"commit", "--json", "--", "set", "/lldp/config/enabled", "true"});
    EXPECT_EQ(made.at("commit"), 3);
    EXPECT_EQ(made.at("native-difference"), tried.at("native-difference"));
    EXPECT_EQ(made.at("openconfig-difference"), tried.at("openconfig-difference"));
    EXPECT_EQ(json({"set", "--json", "/lldp/config/enabled", "true"}), (Json{{"commit", nullptr}}));
    EXPECT_EQ(json({"rollback", "2", "--json"}).at("commit"), 4);
}

TEST_F(ShownCommits, AreCountedInTheStatus) {
    const Json status = json({"status", "--json"});
    EXPECT_EQ(status.at("commit").at("commit"), 2);
    EXPECT_GT(status.at("drift"), 0);
    EXPECT_EQ(status.at("store"), device.store().string());
    EXPECT_EQ(status.at("drift"), json({"drift", "--json"}).size());
}

TEST_F(ShownCommits, AreNotUnconfirmed) {
    EXPECT_FALSE(json({"status", "--json"}).contains("unconfirmed"));
    EXPECT_EQ(device.run({"status"}).output.find("unconfirmed"), std::string::npos);
    EXPECT_EQ(device.run({"history"}).output.find("unconfirmed"), std::string::npos);
}

TEST_F(ShownCommits, AreMarkedUntilTheyAreConfirmed) {
    device::remember_pending(device.store(), 1);
    EXPECT_EQ(json({"status", "--json"}).at("unconfirmed").at("back-to"), 1);
    EXPECT_NE(
        device.run({"status"})
            .output.find(
                "\n        unconfirmed: unless it is confirmed, the configuration of commit 1 comes back\n"),
        std::string::npos);
    const Json history = json({"history", "--json"});
    EXPECT_EQ(history.at(0).at("unconfirmed"), true);
    EXPECT_FALSE(history.at(1).contains("unconfirmed"));
    const Strings lines = lines_of(device.run({"history"}).output);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_TRUE(lines[0].ends_with(" (unconfirmed)")) << lines[0];
    EXPECT_TRUE(lines[1].ends_with("quiet")) << lines[1];
}

TEST(TheStatusBeforeTheFirstCommit, SaysSoInJson) {
    const EditedDevice device{configured_device()};
    const Json status = Json::parse(device.run({"status", "--json"}).output);
    EXPECT_EQ(status.at("commit"), nullptr);
    EXPECT_EQ(status.at("drift"), 0);
}

class HelpOfACommandWithJson : public testing::TestWithParam<const char *> {};

TEST_P(HelpOfACommandWithJson, HasAnExample) {
    const Outcome help = run_yfw({.arguments = {GetParam(), "--help"}});
    const size_t examples = help.output.find("Examples:");
    ASSERT_NE(examples, std::string::npos) << help.output;
    EXPECT_NE(help.output.find("--json", examples), std::string::npos) << help.output;
    EXPECT_LT(help.output.find("--json"), examples) << help.output;
}

INSTANTIATE_TEST_SUITE_P(Of, HelpOfACommandWithJson,
                         testing::Values("status", "apply", "drift", "history", "show", "diff", "commit"));

} // namespace
} // namespace yfw::test
