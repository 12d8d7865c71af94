// Access rules for writes (RFC 8341): what is checked is what changes.
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_rules.h"

namespace yfw::test {
namespace {

using testing::EndsWith;

const std::string original = "r1.example.net";
const std::string global = "/oc:lldp/oc:config";
const std::string system_name = global + "/oc:system-name";
const std::string hello_timer = global + "/oc:hello-timer";
const std::string list = "/oc:lldp/oc:interfaces/oc:interface";

std::string deny(const std::string &path, const std::string &operations) {
    return writable + rules_for("*", data_rule(path, operations, "deny"));
}

std::string permit(const std::string &path, const std::string &operations) {
    return rules_for("*", data_rule(path, operations, "permit"));
}

struct WriteCase {
    const char *name;
    std::string rules;
    std::string edit;
    std::string denied_at{}; // the end of the error's path; nothing: the edit is allowed
    std::string options{};
};

std::string write_name(const testing::TestParamInfo<std::tuple<WriteCase, const char *>> &test) {
    return std::string(std::get<0>(test.param).name) + "_" + std::get<1>(test.param);
}

class AWrite : public NetconfRules, public testing::WithParamInterface<std::tuple<WriteCase, const char *>> {
protected:
    AWrite() : NetconfRules(std::get<0>(GetParam()).rules) {}

    void expect_as_written(const std::string &operation) {
        const WriteCase &write = std::get<0>(GetParam());
        const std::string target = std::get<1>(GetParam());
        NetconfClient client(server().socket());
        const std::string before = everything(client, target);
        const Xml reply = client.rpc(operation);
        if (write.denied_at.empty())
            return expect_ok(reply);
        EXPECT_EQ(error_tag(reply), "access-denied") << reply.printed;
        EXPECT_THAT(reply.text_at("rpc-error/error-path"), EndsWith(write.denied_at)) << reply.printed;
        EXPECT_EQ(everything(client, target), before);
        EXPECT_EQ(name(client), original);
    }
};

TEST_P(AWrite, IsDecidedByWhatChanges) {
    const auto &[write, target] = GetParam();
    expect_as_written(edit_config(target, write.edit, write.options));
}

TEST_P(AWrite, IsDecidedInTheSameWayByTheNewerOperation) {
    const auto &[write, target] = GetParam();
    expect_as_written(edit_data(target, write.edit, write.options));
}

const std::string at_config = "/oc-lldp:lldp/oc-lldp:config/oc-lldp:";
const std::string at_list = "/oc-lldp:lldp/oc-lldp:interfaces/oc-lldp:interface[oc-lldp:name='";
const std::string new_name = config_edit(leaf_edit("system-name", "new"));
const std::string same_name = config_edit(leaf_edit("system-name", original));
const std::string no_name = config_edit(leaf_edit("system-name", "", "remove"));
const std::string new_timer = config_edit(leaf_edit("hello-timer", "40"));
const std::string without_description =
    config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", original), "replace");

INSTANTIATE_TEST_SUITE_P(
    ThatIs, AWrite,
    testing::Combine(
        testing::Values(
            WriteCase{"DeniedByDefault", "<read-default>permit</read-default>", new_name,
                      at_config + "system-name"},
            WriteCase{"OfTheSameDeniedByDefault", "<read-default>permit</read-default>", same_name},
            WriteCase{"PermittedByDefault", writable, new_name},
            WriteCase{"AnUpdateAndDenied", deny(system_name, "update"), new_name, at_config + "system-name"},
            WriteCase{"AnUpdateAndOthersAreDenied", deny(system_name, "create delete"), new_name},
            WriteCase{"AnUpdateOfTheSame", deny(system_name, "update"), same_name},
            WriteCase{"AnUpdateWithinWhatIsDenied", deny("/oc:lldp", "update"), new_name,
                      at_config + "system-name"},
            WriteCase{"AnUpdateBesideWhatIsDenied", deny(hello_timer, "*"), new_name},
            WriteCase{"AnUpdateWhoseModuleIsDenied",
                      writable + rules_for("*", module_rule("openconfig-lldp", "update", "deny")), new_name,
                      at_config + "system-name"},
            WriteCase{"ACreationAndDenied", deny(hello_timer, "create"), new_timer, at_config + "hello-timer"},
            WriteCase{"ACreationAndOthersAreDenied", deny(hello_timer, "update delete"), new_timer},
            WriteCase{"ADeletionAndDenied", deny(system_name, "delete"), no_name, at_config + "system-name"},
            WriteCase{"ADeletionAndOthersAreDenied", deny(system_name, "create update"), no_name},
            WriteCase{"ADeletionOfWhatIsNot", deny(hello_timer, "delete"),
                      config_edit(leaf_edit("hello-timer", "", "remove"))},
            WriteCase{"ADeletionByAReplacement", deny(global + "/oc:system-description", "delete"),
                      without_description, at_config + "system-description"},
            WriteCase{"AReplacementThatKeepsWhatIsDenied", deny(system_name, "*"), without_description},
            WriteCase{"ADeletionByTheDefaultOperation", deny(list + "[oc:name='eth2']", "delete"),
                      config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", original)),
                      at_list + "eth2']", "<default-operation>replace</default-operation>"},
            WriteCase{"AnEntryCreatedAndDenied", deny(list, "create"), interface_edit("eth4", "true"),
                      at_list + "eth4']"},
            WriteCase{"AnEntryUpdatedWhereCreationsAreDenied", deny(list, "create"),
                      interface_edit("eth2", "false")},
            WriteCase{"AnEntryDeletedAndDenied", deny(list + "[oc:name='eth2']", "delete"),
                      interface_edit("eth2", "", "delete"), at_list + "eth2']"},
            WriteCase{"AnotherEntryDeleted", deny(list + "[oc:name='eth2']", "delete"),
                      interface_edit("eth3", "", "delete")},
            WriteCase{"OfTwoLeavesOfWhichOneIsDenied", deny(hello_timer, "create"),
                      config_edit(leaf_edit("system-name", "new") + leaf_edit("hello-timer", "40")),
                      at_config + "hello-timer"},
            WriteCase{"PermittedAloneAgainstTheDefault", permit(system_name, "update"), new_name},
            WriteCase{"NotThePermittedOne", permit(system_name, "update"), new_timer,
                      at_config + "hello-timer"},
            WriteCase{"NotThePermittedOperation", permit(system_name, "create"), new_name,
                      at_config + "system-name"},
            WriteCase{
                "PermittedBeforeItIsDenied",
                rules_for("*", data_rule(system_name, "*", "permit") + data_rule("/oc:lldp", "*", "deny")),
                new_name},
            WriteCase{"DeniedByRulesThatAreOff",
                      "<enable-nacm>false</enable-nacm>" + rules_for("*", data_rule("/oc:lldp", "*", "deny")),
                      new_name}),
        testing::Values("running", "candidate")),
    write_name);

// --- copies and commits ---

// The writer may not change the name, root may.
class ACommitUnderRules : public NetconfRules {
protected:
    ACommitUnderRules()
        : NetconfRules(writable + rules_for(writers, data_rule(system_name, "create update delete", "deny"))) {}
    void SetUp() override {
        NetconfRules::SetUp();
        if (IsSkipped() || HasFailure())
            return;
        root.emplace(server().socket());
        other.emplace(server().socket(), std::vector{base_1_0, base_1_1}, writer);
    }
    void expect_denied(const std::string &operation) {
        const Xml reply = other->rpc(operation);
        EXPECT_EQ(error_tag(reply), "access-denied") << reply.printed;
        EXPECT_THAT(reply.text_at("rpc-error/error-path"), EndsWith(at_config + "system-name"))
            << reply.printed;
        EXPECT_EQ(name(*root), original);
    }
    std::optional<NetconfClient> root, other;
};

const std::string copy_of_candidate =
    "<copy-config><target><running/></target><source><candidate/></source></copy-config>";

TEST_F(ACommitUnderRules, IsRefusedToWhoMayNotMakeItsChanges) {
    expect_ok(root->rpc(edit_config("candidate", new_name)));
    expect_denied("<commit/>");
    expect_denied("<commit><confirmed/></commit>");
    expect_denied(copy_of_candidate);
    EXPECT_EQ(name(*root, "candidate"), "new");
    expect_ok(root->rpc("<commit/>"));
    EXPECT_EQ(name(*other), "new");
}

TEST_F(ACommitUnderRules, IsTakenWhenItChangesOtherThings) {
    expect_ok(other->rpc(edit_config("candidate", new_timer)));
    expect_ok(other->rpc("<commit/>"));
    EXPECT_EQ(values(*root, "running", "/openconfig-lldp:lldp/config/hello-timer"),
              std::vector<std::string>{"40"});
}

TEST_F(ACommitUnderRules, IsTakenWhenItChangesNothing) {
    expect_ok(other->rpc("<commit/>"));
    expect_ok(other->rpc(copy_of_candidate));
}

TEST_F(ACommitUnderRules, IsNoWayToCopyAnotherConfigurationEither) {
    const std::string source = "</target><source><config>" +
                               config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", "new")) +
                               "</config></source></copy-config>";
    for (const char *target : {"<running/>", "<candidate/>"})
        expect_denied("<copy-config><target>" + std::string(target) + source);
    expect_ok(root->rpc("<copy-config><target><running/>" + source));
}

} // namespace
} // namespace yfw::test
