// Paths as people type them, in the commands that read and change a device.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "edit_device.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::UnorderedElementsAre;

const std::string config = "/*/*[local-name()='config']/";
const std::string suppressed = "/lldp/config/suppress-tlv-advertisement";

std::string answer(const std::string &path) {
    const Outcome outcome = run_yfw({.arguments = {"get", path}});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    EXPECT_EQ(outcome.errors, "");
    return outcome.output;
}

TEST(AReadPath, NeedsNoQuotesAroundAKey) {
    const std::string quoted = answer("/lldp/interfaces/interface[name='eth1']/config");
    EXPECT_THAT(quoted, HasSubstr("eth1"));
    EXPECT_EQ(answer("/lldp/interfaces/interface[name=eth1]/config"), quoted);
}

TEST(AReadPath, TakesWildcards) {
    EXPECT_EQ(answer("/lldp/interfaces/interface[name=*]/config"), answer("/lldp/interfaces/interface/config"));
    EXPECT_EQ(answer("/lldp/interfaces/*/config"), answer("/lldp/interfaces/interface/config"));
    EXPECT_EQ(answer("//neighbor"), answer("/lldp/interfaces/interface/neighbors/neighbor"));
    EXPECT_EQ(answer("/lldp/.../neighbor"), answer("//neighbor"));
    EXPECT_EQ(answer("/lldp/..."), answer("/lldp"));
}

TEST(AReadPath, WithWildcardsReadsEachNodeOfThatName) {
    const std::string enabled = answer("/lldp/*/enabled");
    EXPECT_THAT(enabled, HasSubstr("\"config\": {\n      \"enabled\": true"));
    EXPECT_THAT(enabled, HasSubstr("\"state\": {\n      \"enabled\": true"));
}

TEST(AWildcardBelowALeaf, IsRefusedByEachCommand) {
    const std::string path = "/lldp/config/enabled/*";
    const std::vector<Strings> commands = {{"get", path},
                                           {"delete", path},
                                           {"set", path, "true"},
                                           {"explain", "get", path},
                                           {"explain", "delete", path},
                                           {"explain", "set", path, "true"}};
    const EditedDevice device{empty_device()};
    for (const Strings &command : commands) {
        const Outcome outcome = device.run(command);
        EXPECT_EQ(outcome.status, 2) << command.front();
        EXPECT_THAT(outcome.errors, HasSubstr(path + ": matches nothing in the model")) << command.front();
    }
}

TEST(AnUnknownNameInAPath, IsAnsweredWithTheOneThatWasMeant) {
    const Outcome outcome = run_yfw({.arguments = {"get", "/lldp/interfces"}});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.errors, "yfw: /lldp/interfces: unknown node \"interfces\" under \"/lldp\": did you mean "
                              "\"interfaces\"?\n");
}

class AnEditedPath : public testing::Test {
protected:
    void SetUp() override {
        for (const std::string name : {"eth1", "eth2"})
            expect_committed(
                device.set("/lldp/interfaces/interface[name=" + name + "]/config/enabled", "false"));
    }

    Strings enabled() const {
        return device.values("//*[local-name()='interface']/*/*[local-name()='enabled']");
    }

    const EditedDevice device{empty_device()};
};

TEST_F(AnEditedPath, SetsALeafOfEachEntry) {
    ASSERT_THAT(enabled(), ElementsAre("false", "false"));
    expect_committed(device.set("/lldp/interfaces/interface[name=*]/config/enabled", "true"));
    EXPECT_THAT(enabled(), ElementsAre("true", "true"));
    EXPECT_EQ(device.commits().size(), 4U);
}

TEST_F(AnEditedPath, DeletesEachEntry) {
    expect_committed(device.erase("//interface[name=*]"));
    EXPECT_THAT(enabled(), ElementsAre());
}

TEST_F(AnEditedPath, SetsReadsAndDeletesOneValueOfALeafList) {
    expect_committed(device.set(suppressed + "[.=SYSTEM_NAME]", "SYSTEM_NAME"));
    expect_committed(device.set(suppressed + "[.='PORT_DESCRIPTION']", "PORT_DESCRIPTION"));
    EXPECT_EQ(device.values(config + "*[local-name()='suppress-tlv-advertisement']").size(), 2U);
    const Outcome one = device.run({"get", "--config", suppressed + "[.=SYSTEM_NAME]"});
    EXPECT_THAT(one.output, HasSubstr("SYSTEM_NAME"));
    EXPECT_THAT(one.output, testing::Not(HasSubstr("PORT_DESCRIPTION")));
    expect_committed(device.erase(suppressed + "[.=SYSTEM_NAME]"));
    EXPECT_THAT(device.values(config + "*[local-name()='suppress-tlv-advertisement']"),
                ElementsAre(HasSubstr("PORT_DESCRIPTION")));
}

TEST_F(AnEditedPath, IsOneOfSeveralInADelete) {
    expect_committed(device.set("/lldp/config/hello-timer", "20"));
    expect_committed(
        device.run({"delete", "/lldp/config/hello-timer", "/lldp/interfaces/interface[name=eth2]"}));
    EXPECT_THAT(device.values(config + "*[local-name()='hello-timer']"), ElementsAre());
    EXPECT_THAT(enabled(), ElementsAre("false"));
    EXPECT_EQ(device.commits().size(), 5U);
}

TEST_F(AnEditedPath, ThatIsRefusedKeepsTheOthersFromBeingDeleted) {
    const DeviceState before = device.state();
    expect_refused(device.run({"delete", "/lldp/interfaces/interface[name=eth1]", "/lldp/config/hello-timer"}),
                   {"/lldp/config/hello-timer"}, "data-missing");
    EXPECT_EQ(device.state(), before);
}

TEST_F(AnEditedPath, ThatMatchesNothingIsRefused) {
    expect_refused(device.erase("//interface[name=eth9]"), {"//interface[name=eth9]", "matches nothing"},
                   "data-missing");
    expect_refused(device.set("/lldp/state/*", "1"), {"/lldp/state/*", "matches nothing"}, "data-missing");
}

TEST_F(AnEditedPath, MayHaveWildcardsInACommit) {
    expect_committed(device.run({"commit", "--", "set", "//interface[name=*]/config/enabled", "true", "delete",
                                 "/lldp/interfaces/interface[name=eth2]"}));
    EXPECT_THAT(enabled(), ElementsAre("true"));
}

} // namespace
} // namespace yfw::test
