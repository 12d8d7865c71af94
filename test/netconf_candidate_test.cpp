// The candidate and the running configuration: copy, validate, commit and discard.
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"
#include "support/child_process.h"

namespace yfw::test {
namespace {

const std::string original = "r1.example.net";

std::string copy_config(const std::string &source, const std::string &target) {
    return "<copy-config><target><" + target + "/></target><source>" + source + "</source></copy-config>";
}

std::string validate(const std::string &source) {
    return "<validate><source>" + source + "</source></validate>";
}

std::string inline_config(const std::string &content) {
    return "<config>" + lldp(content) + "</config>";
}

class NetconfCandidate : public NetconfTest {
protected:
    NetconfClient client{server().socket()};
    NetconfClient other{server().socket()};
};

TEST_F(NetconfCandidate, IsTheRunningConfigurationAtFirst) {
    EXPECT_EQ(everything(client, "candidate"), everything(client));
}

TEST_F(NetconfCandidate, FollowsTheRunningConfigurationUntilItIsEdited) {
    expect_ok(other.rpc(edit_config("running", name_edit("new"))));
    EXPECT_EQ(name(client, "candidate"), "new");
}

TEST_F(NetconfCandidate, IsSharedByAllSessions) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    EXPECT_EQ(name(other, "candidate"), "new");
    EXPECT_EQ(name(other), original);
}

TEST_F(NetconfCandidate, BecomesTheRunningConfigurationByACommit) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc(edit_config("candidate", lldp("<config><hello-timer>40</hello-timer></config>"))));
    const std::string candidate = everything(client, "candidate");
    expect_ok(client.rpc("<commit/>"));
    EXPECT_EQ(everything(other), candidate);
    EXPECT_EQ(everything(other, "candidate"), candidate);
}

TEST_F(NetconfCandidate, IsWhatTheCommandLineReadsAfterACommit) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc("<commit/>"));
    const Outcome outcome = run_yfw(
        {.arguments = {"get", "--config", "/lldp", "--format", "xml", "--device", server().device().string()}});
    EXPECT_EQ(openconfig(outcome.output), everything(client)) << outcome.errors;
}

TEST_F(NetconfCandidate, ChangesNothingWhenNothingIsCommitted) {
    const std::string before = everything(client);
    expect_ok(client.rpc("<commit/>"));
    EXPECT_EQ(everything(client), before);
}

TEST_F(NetconfCandidate, IsTheRunningConfigurationAgainWhenItIsDiscarded) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc("<discard-changes/>"));
    EXPECT_EQ(everything(client, "candidate"), everything(client));
    EXPECT_EQ(name(client), original);
}

TEST_F(NetconfCandidate, IsKeptThroughARefusedEdit) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    EXPECT_EQ(
        error_tag(client.rpc(edit_config("candidate", lldp("<config><enabled>maybe</enabled></config>")))),
        "invalid-value");
    EXPECT_EQ(name(client, "candidate"), "new");
}

TEST_F(NetconfCandidate, TakesCreateAndDeleteForWhatItHoldsItself) {
    const auto timer = [](const char *operation) {
        return edit_config("candidate", lldp("<config><hello-timer nc:operation=\"" + std::string(operation) +
                                             "\">40</hello-timer></config>"));
    };
    expect_ok(client.rpc(timer("create")));
    EXPECT_EQ(error_tag(client.rpc(timer("create"))), "data-exists");
    expect_ok(client.rpc(timer("delete")));
    EXPECT_EQ(error_tag(client.rpc(timer("delete"))), "data-missing");
}

TEST_F(NetconfCandidate, SurvivesTheRunningConfigurationsChange) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("mine"))));
    expect_ok(other.rpc(edit_config("running", name_edit("theirs"))));
    EXPECT_EQ(name(client, "candidate"), "mine");
    expect_ok(client.rpc("<commit/>"));
    EXPECT_EQ(name(other), "mine");
}

// --- copies ---

TEST_F(NetconfCandidate, IsTakenFromTheRunningConfigurationByACopy) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc(copy_config("<running/>", "candidate")));
    EXPECT_EQ(name(client, "candidate"), original);
}

TEST_F(NetconfCandidate, IsWrittenOverTheRunningConfigurationByACopy) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc(copy_config("<candidate/>", "running")));
    EXPECT_EQ(name(other), "new");
}

TEST_F(NetconfCandidate, IsReplacedByAConfigurationInTheRequest) {
    expect_ok(client.rpc(copy_config(
        inline_config("<config><enabled>true</enabled><system-name>new</system-name></config>"), "candidate")));
    EXPECT_EQ(values(client, "candidate", "/openconfig-lldp:lldp/config/*|//openconfig-lldp:interface/name"),
              (std::vector<std::string>{"true", "new"}));
    EXPECT_EQ(name(client), original);
}

TEST_F(NetconfCandidate, IsNotCopiedToItself) {
    for (const char *datastore : {"running", "candidate"})
        EXPECT_EQ(error_tag(client.rpc(copy_config("<" + std::string(datastore) + "/>", datastore))),
                  "invalid-value");
}

struct RefusedCase {
    const char *name;
    std::string operation;
};

class AnOperationOnDatastores : public NetconfCandidate, public testing::WithParamInterface<RefusedCase> {};

TEST_P(AnOperationOnDatastores, IsRefusedWithNothingChanged) {
    const std::string before = everything(client);
    const Xml reply = client.rpc(GetParam().operation);
    EXPECT_NE(error_tag(reply), "") << reply.printed;
    EXPECT_EQ(everything(client), before);
    EXPECT_EQ(everything(client, "candidate"), before);
}

INSTANTIATE_TEST_SUITE_P(
    Being, AnOperationOnDatastores,
    testing::Values(
        RefusedCase{"ADeleteOfRunning", "<delete-config><target><running/></target></delete-config>"},
        RefusedCase{"ADeleteOfStartup", "<delete-config><target><startup/></target></delete-config>"},
        RefusedCase{"ADeleteOfNothing", "<delete-config/>"},
        RefusedCase{"ACopyToStartup", copy_config("<running/>", "startup")},
        RefusedCase{"ACopyFromStartup", copy_config("<startup/>", "running")},
        RefusedCase{"ACopyFromAUrl", copy_config("<url>file:///tmp/x</url>", "running")},
        RefusedCase{"ACopyWithoutASource", "<copy-config><target><running/></target></copy-config>"},
        RefusedCase{"ACopyWithoutATarget", "<copy-config><source><running/></source></copy-config>"},
        RefusedCase{"ACopyOfAnInvalidConfiguration",
                    copy_config(inline_config("<config><enabled>maybe</enabled></config>"), "candidate")},
        RefusedCase{"AValidationOfStartup", validate("<startup/>")},
        RefusedCase{"AValidationOfNothing", "<validate/>"},
        RefusedCase{"AValidationOfAnUnknownElement", validate(inline_config("<nonsense/>"))},
        RefusedCase{"AValidationOfAnInvalidValue",
                    validate(inline_config("<config><hello-timer>often</hello-timer></config>"))},
        RefusedCase{"ACommitWithAnUnknownParameter", "<commit><nonsense/></commit>"},
        RefusedCase{"ACommitWithATimeoutOfNoNumber",
                    "<commit><confirmed/><confirm-timeout>soon</confirm-timeout></commit>"},
        RefusedCase{"ACommitWithATimeoutOfZero",
                    "<commit><confirmed/><confirm-timeout>0</confirm-timeout></commit>"},
        RefusedCase{"ACommitWithATimeoutThatIsNotConfirmed",
                    "<commit><confirm-timeout>10</confirm-timeout></commit>"},
        RefusedCase{"ACommitThatPersistsAndIsNotConfirmed", "<commit><persist>x</persist></commit>"},
        RefusedCase{"ACommitThatConfirmsNothing", "<commit><persist-id>x</persist-id></commit>"},
        RefusedCase{"ACancelOfNothing", "<cancel-commit/>"}),
    [](const auto &test) { return test.param.name; });

// It would make final what the client means to try.
TEST_F(NetconfCandidate, IsNotCommittedWithParametersOfAConfirmedCommitAlone) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    for (const char *parameter : {"confirm-timeout", "persist"}) {
        const std::string name_of_parameter = parameter;
        const Xml error = expect_error(
            client.rpc("<commit><" + name_of_parameter + ">10</" + name_of_parameter + "></commit>"),
            "protocol", "bad-element");
        EXPECT_EQ(error_info(error, "bad-element"), parameter);
        EXPECT_THAT(error.text_at("error-message"), testing::HasSubstr("<confirmed/>"));
    }
    EXPECT_EQ(name(client), original);
}

class AValidation : public NetconfCandidate, public testing::WithParamInterface<RefusedCase> {};

TEST_P(AValidation, FindsNothingWrong) {
    expect_ok(client.rpc(edit_config("candidate", name_edit("new"))));
    expect_ok(client.rpc(validate(GetParam().operation)));
    EXPECT_EQ(name(client), original);
    EXPECT_EQ(name(client, "candidate"), "new");
}

INSTANTIATE_TEST_SUITE_P(
    Of, AValidation,
    testing::Values(RefusedCase{"Running", "<running/>"}, RefusedCase{"Candidate", "<candidate/>"},
                    RefusedCase{"AConfiguration",
                                inline_config("<config><hello-timer>40</hello-timer></config>")}),
    [](const auto &test) { return test.param.name; });

} // namespace
} // namespace yfw::test
