// Lines for people about neighbors with names made to forge lines and to command terminals.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/printable.h"
#include "support/child_process.h"
#include "support/files.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

using testing::HasSubstr;

// XML carries these; a C0 control other than a line feed, tab and carriage return it does not.
const std::string hostile = "evil\nyfw: forged\u2028line\u202egnp.\u2066exe\u009b2J\u0085\x7f";
const std::string shown = "evil\\x0ayfw: forged\\u2028line\\u202egnp.\\u2066exe\\u009b2J\\u0085\\x7f";

void expect_printable_lines(const std::string &text) {
    for (const std::string &line : lines_of(text))
        EXPECT_EQ(printable(line), line);
}

class HostileNames : public testing::Test {
protected:
    std::string device(const std::string &announcement) {
        files_.add("oper.xml", native_neighbors(native_neighbor("eth1", escaped(hostile), announcement) +
                                                native_neighbor("eth1", "r2", element("port-id-detail", "1"))));
        return files_.path().string();
    }

    const std::string announcement_ =
        element("chassis-id", escaped(hostile)) + element("port-id-detail", escaped(hostile)) +
        element("detail",
                element("port-description", escaped(hostile)) + element("system-name", escaped(hostile)));
    TemporaryDirectory files_;
};

TEST_F(HostileNames, AreEscapedInTheTextOfATopology) {
    const Outcome outcome = run_yfw({{"topology", "--device", device(announcement_)}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr(shown));
    expect_printable_lines(outcome.output);
}

TEST_F(HostileNames, AreEscapedInAGraph) {
    const Outcome outcome = run_yfw({{"topology", "--dot", "--device", device(announcement_)}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("forged"));
    expect_printable_lines(outcome.output);
}

// Two neighbors of one id, and a time to live that is no 16 bits.
TEST_F(HostileNames, AreEscapedInWarnings) {
    const std::string twice = announcement_ + "</lldp-neighbor><lldp-neighbor>" +
                              element("device-id", escaped(hostile)) +
                              element("port-id-detail", escaped(hostile)) + element("hold-time", "70000");
    const std::string place = device(element("hold-time", "70000") + twice);
    for (const std::string command : {"get", "topology"}) {
        std::vector<std::string> words{command, "--device", place};
        if (command == "get")
            words.emplace_back("/lldp");
        const Outcome outcome = run_yfw({words});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(lines_of(outcome.errors).size(), 2U) << outcome.errors;
        for (const std::string &line : lines_of(outcome.errors)) {
            EXPECT_TRUE(line.starts_with("yfw: warning: ")) << line;
            EXPECT_THAT(line, HasSubstr(shown));
        }
        expect_printable_lines(outcome.errors);
    }
}

TEST_F(HostileNames, AreEscapedInErrors) {
    const std::string place = device(announcement_ + element("mib", element("chassis-id-sub-type", "0")));
    const Outcome outcome = run_yfw({{"get", "/lldp", "--device", place}});
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(lines_of(outcome.errors).size(), 1U) << outcome.errors;
    EXPECT_THAT(outcome.errors, HasSubstr(shown));
    expect_printable_lines(outcome.errors);
}

TEST_F(HostileNames, AreEscapedInTheDebugLog) {
    const Outcome outcome = run_yfw({{"get", "/lldp", "--trace", "--device", device(announcement_)}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.errors, HasSubstr("oclldp_dev_id constructed is " + shown));
    expect_printable_lines(outcome.errors);
}

// A neighbor's id that somebody pastes from an answer.
TEST_F(HostileNames, AreEscapedInAnExplanation) {
    const Outcome outcome = run_yfw(
        {{"explain", "get", "/lldp/interfaces/interface/neighbors/neighbor[id='" + hostile + "#p']/state"}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_THAT(outcome.output, HasSubstr("/device-id = " + shown));
    expect_printable_lines(outcome.output);
}

// Documents are for programs: there the name is what the neighbor announced.
TEST_F(HostileNames, AreWholeInDocuments) {
    const Outcome outcome = run_yfw({{"get", "/lldp", "--format", "xml", "--device", device(announcement_)}});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.output, HasSubstr("\u2028line\u202egnp.\u2066exe\u009b2J\u0085\x7f"));
}

} // namespace
} // namespace yfw::test
