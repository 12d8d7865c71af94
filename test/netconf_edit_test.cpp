// Edits of a datastore; refused edits change nothing.
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "netconf_server.h"

namespace yfw::test {
namespace {

using Strings = std::vector<std::string>;

const std::string all_values = "/openconfig-lldp:lldp/config/*|//openconfig-lldp:interface/config/*";
const Strings names{"eth1", "true", "eth2", "true", "eth3", "true"};

Strings with_interfaces(Strings global) {
    global.insert(global.end(), names.begin(), names.end());
    return global;
}

// --- the result of an edit ---

struct EditCase {
    const char *name;
    std::string config;
    Strings values; // of the datastore afterwards
    std::string options{};
};

class AnEditOf : public NetconfTest, public testing::WithParamInterface<std::tuple<EditCase, const char *>> {
protected:
    const EditCase &edit() const { return std::get<0>(GetParam()); }
    std::string target() const { return std::get<1>(GetParam()); }
};

TEST_P(AnEditOf, ChangesItsTargetAndNothingElse) {
    NetconfClient client(server().socket()), other(server().socket());
    const std::string before = everything(client);
    expect_ok(client.rpc(edit_config(target(), edit().config, edit().options)));
    EXPECT_EQ(values(other, target(), all_values), edit().values);
    if (target() == "candidate") {
        EXPECT_EQ(everything(other, "running"), before);
    }
}

const Strings original{"true", "r1.example.net", "Router r1 software 1.0"};
const std::string description = "Router r1 software 1.0";

INSTANTIATE_TEST_SUITE_P(
    A, AnEditOf,
    testing::Combine(
        testing::Values(
            EditCase{"LeafMerged", config_edit(leaf_edit("system-name", "new")),
                     with_interfaces({"true", "new", description})},
            EditCase{"LeafAdded", config_edit(leaf_edit("hello-timer", "40")),
                     with_interfaces({"true", "40", "r1.example.net", description})},
            EditCase{"LeafReplaced", config_edit(leaf_edit("system-name", "new", "replace")),
                     with_interfaces({"true", "new", description})},
            EditCase{"LeafCreated", config_edit(leaf_edit("hello-timer", "40", "create")),
                     with_interfaces({"true", "40", "r1.example.net", description})},
            EditCase{"LeafDeleted", config_edit(leaf_edit("system-name", "", "delete")),
                     with_interfaces({"true", description})},
            EditCase{"LeafRemoved", config_edit(leaf_edit("system-name", "", "remove")),
                     with_interfaces({"true", description})},
            EditCase{"LeafRemovedThatIsNot", config_edit(leaf_edit("hello-timer", "", "remove")),
                     with_interfaces(original)},
            EditCase{"ContainerReplaced",
                     config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", "new"), "replace"),
                     with_interfaces({"true", "new"})},
            EditCase{"InterfaceCreated",
                     interface_edit("eth4", "true", "create"),
                     {"true", "r1.example.net", description, "eth1", "true", "eth2", "true", "eth3", "true",
                      "eth4", "true"}},
            EditCase{"InterfaceDeleted",
                     interface_edit("eth2", "", "delete"),
                     {"true", "r1.example.net", description, "eth1", "true", "eth3", "true"}},
            EditCase{"InterfaceMerged",
                     interface_edit("eth2", "false"),
                     {"true", "r1.example.net", description, "eth1", "true", "eth2", "false", "eth3", "true"}},
            EditCase{"MergeByDefault", config_edit(leaf_edit("system-name", "new")),
                     with_interfaces({"true", "new", description}),
                     "<default-operation>merge</default-operation>"},
            EditCase{"NoneByDefault", config_edit(leaf_edit("system-name", "new")), with_interfaces(original),
                     "<default-operation>none</default-operation>"},
            EditCase{"NoneByDefaultWithAnOperationInside",
                     config_edit(leaf_edit("system-name", "new", "merge") +
                                 leaf_edit("system-description", "", "delete")),
                     with_interfaces({"true", "new"}), "<default-operation>none</default-operation>"},
            EditCase{"ReplaceByDefault",
                     config_edit(leaf_edit("enabled", "true") + leaf_edit("system-name", "new")),
                     {"true", "new"},
                     "<default-operation>replace</default-operation>"},
            EditCase{"TestOnly", config_edit(leaf_edit("system-name", "new")), with_interfaces(original),
                     "<test-option>test-only</test-option>"},
            EditCase{"TestThenSet", config_edit(leaf_edit("system-name", "new")),
                     with_interfaces({"true", "new", description}), "<test-option>test-then-set</test-option>"},
            EditCase{"Set", config_edit(leaf_edit("system-name", "new")),
                     with_interfaces({"true", "new", description}), "<test-option>set</test-option>"},
            EditCase{"AllOptions", config_edit(leaf_edit("system-name", "new")),
                     with_interfaces({"true", "new", description}),
                     "<default-operation>merge</default-operation><test-option>test-then-set</test-option>"
                     "<error-option>rollback-on-error</error-option>"},
            EditCase{"EmptyConfigThatReplaces", "", {}, "<default-operation>replace</default-operation>"},
            EditCase{"EmptyConfig", "", with_interfaces(original)}),
        testing::Values("running", "candidate")),
    [](const auto &test) { return std::string(std::get<0>(test.param).name) + "_" + std::get<1>(test.param); });

TEST_F(NetconfTest, AnEditOfOptionsInAnyOrderIsTaken) {
    NetconfClient client(server().socket());
    expect_ok(client.rpc("<edit-config><config>" + name_edit("new") +
                         "</config><error-option>stop-on-error</error-option><target><running/></target>"
                         "</edit-config>"));
    EXPECT_EQ(name(client), "new");
}

TEST_F(NetconfTest, ACopyOfAnEmptyConfigurationEmptiesItsTarget) {
    NetconfClient client(server().socket());
    const std::string before = everything(client);
    const std::string source = "<source><config/></source></copy-config>";
    expect_ok(client.rpc("<copy-config><target><candidate/></target>" + source));
    EXPECT_EQ(values(client, "candidate", "//*"), Strings{});
    EXPECT_EQ(everything(client), before);
    expect_ok(client.rpc("<copy-config><target><running/></target>" + source));
    EXPECT_EQ(values(client, "running", "//*"), Strings{});
    expect_ok(client.rpc("<copy-config><target><running/></target>" + source));
}

// --- refused ---

struct RefusedCase {
    const char *name;
    std::string config;
    std::string tag;
    std::string path{}; // the end of the error's path
    std::string info{}; // "name=value" of the error's info
    std::string options{};
};

class AnEditThatIsRefused : public NetconfTest,
                            public testing::WithParamInterface<std::tuple<RefusedCase, const char *>> {};

TEST_P(AnEditThatIsRefused, ChangesNothing) {
    const auto &[edit, target] = GetParam();
    NetconfClient client(server().socket());
    const std::string before = everything(client, target);
    const Xml reply = client.rpc(edit_config(target, edit.config, edit.options));
    EXPECT_EQ(error_tag(reply), edit.tag) << reply.printed;
    EXPECT_EQ(everything(client, target), before);
    EXPECT_EQ(everything(client, "running"), before);
}

TEST_P(AnEditThatIsRefused, SaysWhereAndWhat) {
    const auto &[edit, target] = GetParam();
    NetconfClient client(server().socket());
    const Xml reply = client.rpc(edit_config(target, edit.config, edit.options));
    const Xml *error = reply.child("rpc-error");
    ASSERT_NE(error, nullptr) << reply.printed;
    const Xml *path = error->child("error-path");
    EXPECT_THAT(path != nullptr ? path->text : "", testing::EndsWith(edit.path)) << reply.printed;
    const std::string info_name = edit.info.substr(0, edit.info.find('='));
    if (!edit.info.empty()) {
        EXPECT_EQ(info_name + "=" + error_info(*error, info_name), edit.info) << reply.printed;
    }
}

const std::string in_config = "/oc-lldp:lldp/oc-lldp:config/oc-lldp:";
const std::string in_list = "/oc-lldp:lldp/oc-lldp:interfaces/oc-lldp:interface[oc-lldp:name='";

INSTANTIATE_TEST_SUITE_P(
    Because, AnEditThatIsRefused,
    testing::Combine(
        testing::Values(
            RefusedCase{"ALeafExists", config_edit(leaf_edit("system-name", "new", "create")), "data-exists",
                        in_config + "system-name"},
            RefusedCase{"AnInterfaceExists", interface_edit("eth1", "true", "create"), "data-exists",
                        in_list + "eth1']"},
            RefusedCase{"ALeafIsMissing", config_edit(leaf_edit("hello-timer", "", "delete")), "data-missing",
                        in_config + "hello-timer"},
            RefusedCase{"AnInterfaceIsMissing", interface_edit("eth9", "", "delete"), "data-missing",
                        in_list + "eth9']"},
            RefusedCase{"AnElementIsUnknown", config_edit(leaf_edit("nonsense", "1")), "unknown-element", "",
                        "bad-element=nonsense"},
            RefusedCase{"AContainerIsUnknown", lldp("<nonsense><more/></nonsense>"), "unknown-element", "",
                        "bad-element=nonsense"},
            RefusedCase{"ATopNodeIsUnknown", "<nonsense xmlns=\"http://openconfig.net/yang/lldp\"/>",
                        "unknown-element", "", "bad-element=nonsense"},
            RefusedCase{"ANamespaceIsUnknown", "<lldp xmlns=\"urn:example:nonsense\"/>", "unknown-namespace",
                        "", "bad-namespace=urn:example:nonsense"},
            RefusedCase{"ANamespaceWithinIsUnknown",
                        config_edit("<system-name xmlns=\"urn:example:nonsense\">x</system-name>"),
                        "unknown-namespace", "", "bad-namespace=urn:example:nonsense"},
            RefusedCase{"ANumberIsNone", config_edit(leaf_edit("hello-timer", "often")), "invalid-value",
                        in_config + "hello-timer"},
            RefusedCase{"ANumberIsNotInTheNativeRange", config_edit(leaf_edit("hello-timer", "65536000")),
                        "invalid-value", in_config + "hello-timer"},
            RefusedCase{"ABooleanIsNone", config_edit(leaf_edit("enabled", "yes")), "invalid-value",
                        in_config + "enabled"},
            RefusedCase{"ATextIsTooLong", config_edit(leaf_edit("system-name", std::string(256, 'x'))),
                        "invalid-value", in_config + "system-name"},
            RefusedCase{"ANameDiffersFromItsKey",
                        lldp("<interfaces><interface><name>eth1</name><config><name>eth2</name></config>"
                             "</interface></interfaces>"),
                        "data-missing", "config/oc-lldp:name"},
            RefusedCase{"AnInterfaceHasNoName",
                        lldp("<interfaces><interface><config><enabled>true</enabled></config></interface>"
                             "</interfaces>"),
                        "missing-element", "", "bad-element=name"},
            RefusedCase{"AnEntryOfALeafListIsDeletedWithoutItsValue",
                        config_edit(leaf_edit("suppress-tlv-advertisement", "", "delete")), "missing-element",
                        in_config + "suppress-tlv-advertisement", "bad-element=suppress-tlv-advertisement"},
            RefusedCase{"OperationsContradictOneAnother",
                        lldp("<config xmlns:nc=\"" + base_namespace + "\" nc:operation=\"delete\">" +
                             leaf_edit("system-name", "x", "merge") + "</config>"),
                        "bad-attribute", in_config + "system-name", "bad-attribute=operation"},
            RefusedCase{"TheTopNodeHasNoNamespace", "<lldp xmlns=\"\"><config/></lldp>", "unknown-namespace",
                        "", "bad-element=lldp"},
            RefusedCase{"AnInterfaceIsNamedThatIsNotThere", interface_edit("eth9", "true"), "data-missing",
                        in_list + "eth9']", "", "<default-operation>none</default-operation>"},
            RefusedCase{"AnOperationIsUnknown", config_edit(leaf_edit("system-name", "x", "nonsense")),
                        "bad-attribute", in_config + "system-name", "bad-attribute=operation"},
            RefusedCase{"TheSecondOfTwoIsWrong",
                        config_edit(leaf_edit("system-name", "new") + leaf_edit("hello-timer", "often")),
                        "invalid-value", in_config + "hello-timer"},
            RefusedCase{"OneIsWrongWithRollback",
                        config_edit(leaf_edit("system-name", "new") + leaf_edit("enabled", "true", "create")),
                        "data-exists", in_config + "enabled", "",
                        "<error-option>rollback-on-error</error-option>"},
            RefusedCase{"OneIsWrongWithStop",
                        config_edit(leaf_edit("system-name", "new") + leaf_edit("enabled", "true", "create")),
                        "data-exists", in_config + "enabled", "", "<error-option>stop-on-error</error-option>"},
            RefusedCase{"ATestShowsIt", config_edit(leaf_edit("hello-timer", "often")), "invalid-value",
                        in_config + "hello-timer", "", "<test-option>test-only</test-option>"},
            RefusedCase{"ATestShowsThatItExists", config_edit(leaf_edit("enabled", "true", "create")),
                        "data-exists", in_config + "enabled", "", "<test-option>test-only</test-option>"}),
        testing::Values("running", "candidate")),
    [](const auto &test) { return std::string(std::get<0>(test.param).name) + "_" + std::get<1>(test.param); });

// --- requests that are not edits ---

struct RequestCase {
    const char *name;
    std::string request;
    Strings tags;
    std::string bad_element{};
};

class ARequestToEdit : public NetconfTest, public testing::WithParamInterface<RequestCase> {};

TEST_P(ARequestToEdit, IsRefusedWithNothingChanged) {
    NetconfClient client(server().socket());
    const std::string before = everything(client);
    const Xml reply = client.rpc(GetParam().request);
    EXPECT_THAT(GetParam().tags, testing::Contains(error_tag(reply))) << reply.printed;
    if (!GetParam().bad_element.empty() && reply.child("rpc-error") != nullptr) {
        EXPECT_EQ(error_info(*reply.child("rpc-error"), "bad-element"), GetParam().bad_element);
    }
    EXPECT_EQ(everything(client), before);
}

const std::string new_name = "<config>" + name_edit("new") + "</config>";
const std::string running = "<target><running/></target>";

INSTANTIATE_TEST_SUITE_P(
    Of, ARequestToEdit,
    testing::Values(
        RequestCase{"NothingAtAll", "<edit-config/>", {"missing-element"}},
        RequestCase{"NoTarget", "<edit-config>" + new_name + "</edit-config>", {"missing-element"}, "target"},
        RequestCase{"NoConfig", "<edit-config>" + running + "</edit-config>", {"missing-element"}, "config"},
        RequestCase{"TwoTargets",
                    "<edit-config><target><running/><candidate/></target>" + new_name + "</edit-config>",
                    {"bad-element", "unknown-element", "invalid-value"}},
        RequestCase{"ADatastoreThatIsNotOffered",
                    edit_config("startup", name_edit("new")),
                    {"invalid-value", "unknown-element", "bad-element", "operation-not-supported"}},
        RequestCase{"AnUnknownParameter",
                    "<edit-config>" + running + "<nonsense/>" + new_name + "</edit-config>",
                    {"unknown-element"},
                    "nonsense"},
        RequestCase{"AnUnknownDefaultOperation",
                    edit_config("running", name_edit("new"), "<default-operation>nonsense</default-operation>"),
                    {"invalid-value", "bad-element"}},
        RequestCase{"ADefaultOperationThatIsForElementsOnly",
                    edit_config("running", name_edit("new"), "<default-operation>delete</default-operation>"),
                    {"invalid-value", "bad-element"}},
        RequestCase{"AnUnknownTestOption",
                    edit_config("running", name_edit("new"), "<test-option>nonsense</test-option>"),
                    {"invalid-value", "bad-element"}},
        RequestCase{"AnUnknownErrorOption",
                    edit_config("running", name_edit("new"), "<error-option>nonsense</error-option>"),
                    {"invalid-value", "bad-element"}},
        RequestCase{"ContinueOnError",
                    edit_config("running", name_edit("new"), "<error-option>continue-on-error</error-option>"),
                    {"operation-not-supported"},
                    "error-option"},
        RequestCase{"TwoTargetElements",
                    "<edit-config>" + running + running + new_name + "</edit-config>",
                    {"bad-element"},
                    "target"},
        RequestCase{"TwoConfigs",
                    "<edit-config>" + running + new_name + new_name + "</edit-config>",
                    {"bad-element"},
                    "config"},
        RequestCase{"TwoTestOptions",
                    edit_config("running", name_edit("new"),
                                "<test-option>set</test-option><test-option>set</test-option>"),
                    {"bad-element"},
                    "test-option"},
        RequestCase{"TwoDefaultOperations",
                    edit_config("running", name_edit("new"),
                                "<default-operation>merge</default-operation>"
                                "<default-operation>merge</default-operation>"),
                    {"bad-element"},
                    "default-operation"},
        RequestCase{"TextInTheTarget",
                    "<edit-config><target>x<running/></target>" + new_name + "</edit-config>",
                    {"bad-element"},
                    "target"},
        RequestCase{"TextInTheDatastore",
                    "<edit-config><target><running>x</running></target>" + new_name + "</edit-config>",
                    {"bad-element"},
                    "running"},
        RequestCase{"AnUnknownAttributeOfAParameter",
                    "<edit-config><target x=\"1\"><running/></target>" + new_name + "</edit-config>",
                    {"unknown-attribute"},
                    "target"},
        RequestCase{"AnUnknownAttributeOfTheOperation",
                    "<edit-config x=\"1\">" + running + new_name + "</edit-config>",
                    {"unknown-attribute"},
                    "edit-config"},
        RequestCase{"AnElementInADefaultOperation",
                    "<edit-config>" + running + "<default-operation>merge<x/></default-operation>" + new_name +
                        "</edit-config>",
                    {"unknown-element"},
                    "x"},
        RequestCase{"AnElementInATestOption",
                    "<edit-config>" + running + "<test-option>set<x/></test-option>" + new_name +
                        "</edit-config>",
                    {"unknown-element"},
                    "x"},
        RequestCase{"AnElementInAToken",
                    "<commit><confirmed/><persist>a<x/></persist></commit>",
                    {"unknown-element"},
                    "x"},
        RequestCase{"TextBesideTheOperation", "a<get/>", {"bad-element"}, "rpc"},
        RequestCase{"AValidationOfAUrl",
                    "<validate><source><url>file:///tmp/x</url></source></validate>",
                    {"operation-not-supported"}},
        RequestCase{"TwoFilters", "<get><filter/><filter/></get>", {"bad-element"}, "filter"},
        RequestCase{"TwoSources",
                    "<get-config><source><running/></source><source><running/></source></get-config>",
                    {"bad-element"},
                    "source"},
        RequestCase{"ACopyOfADatastoreAndAConfig",
                    "<copy-config>" + running + "<source><config/><candidate/></source></copy-config>",
                    {"unknown-element"},
                    "candidate"},
        RequestCase{"AUrl",
                    "<edit-config>" + running + "<url>file:///tmp/x</url></edit-config>",
                    {"operation-not-supported", "unknown-element", "missing-element"}},
        RequestCase{"State",
                    edit_config("running", lldp("<state><system-name>new</system-name></state>")),
                    {"unknown-element", "bad-element", "invalid-value", "operation-not-supported"}},
        RequestCase{"TheServersOwnState",
                    edit_config("running", "<netconf-state xmlns=\"urn:ietf:params:xml:ns:yang:"
                                           "ietf-netconf-monitoring\"/>"),
                    {"unknown-element", "unknown-namespace", "bad-element", "invalid-value",
                     "operation-not-supported"}}),
    [](const auto &test) { return test.param.name; });

TEST_F(NetconfTest, AnErrorIsBriefHoweverLongTheRequestIs) {
    constexpr size_t longest_reply = 2000;
    const std::string many_digits(1000000, '9');
    const std::string long_name(40000, 'a');
    NetconfClient client(server().socket());
    for (const std::string &request :
         {edit_config("running", config_edit(leaf_edit("hello-timer", many_digits))),
          edit_config("running", config_edit(leaf_edit("system-name", many_digits))),
          edit_config("running", config_edit(leaf_edit("enabled", "true", many_digits))),
          edit_config("running", config_edit("<" + long_name + "/>")),
          edit_config("running", config_edit("<enabled " + long_name + "=\"\">true</enabled>")),
          edit_config("running", interface_edit(many_digits, "maybe")),
          edit_config("running", "<lldp xmlns=\"urn:" + many_digits + "\"/>"), "<" + long_name + "/>",
          "<get xmlns=\"urn:" + many_digits + "\"/>", "<get><" + long_name + "/></get>",
          "<get " + long_name + "=\"\"/>"}) {
        const Xml reply = client.rpc(request);
        EXPECT_NE(error_tag(reply), "") << request.substr(0, 200);
        EXPECT_LT(reply.printed.size(), longest_reply) << request.substr(0, 200);
    }
}

} // namespace
} // namespace yfw::test
