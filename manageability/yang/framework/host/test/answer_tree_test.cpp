#include "host/answer_tree.h"

#include "answer_fixture.h"

namespace yfw::host::test {
namespace {

constexpr const char *types_ns = "http://openconfig.net/yang/lldp/types";

class AnswerTreeLeaf : public WrittenAnswer {
protected:
    // Adds an identity the way the capability mapping does: the created node gets the value's namespace.
    void add_identity(const std::string &path_text, const char *value, const char *value_ns) {
        tidl_yfw_datatree *node = nullptr;
        ASSERT_EQ(add_below(tree.root(), path_text, value, &node, 1), YMAP_OK);
        ASSERT_NE(node, nullptr);
        node->value_ns = yfw_strdup(value_ns, "YFW OCLLDP NS");
        node->framework_flags |= YFW_FW_HAS_VALUE_NS;
    }
};

TEST_F(AnswerTreeLeaf, MakesTheContainersOnTheWay) {
    add("/lldp/state/counters/frame-in", "42");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/counters/frame-in=42"}));
}

TEST_F(AnswerTreeLeaf, TakesTheValueOfTheLastAdd) {
    add("/lldp/state/counters/frame-in", "10");
    add("/lldp/state/counters/frame-in", "42");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/counters/frame-in=42"}));
}

TEST_F(AnswerTreeLeaf, KeepsItsValueWhenItIsAddedAgainWithoutOne) {
    add("/lldp/state/system-name", "r1");
    add("/lldp/state/system-name", nullptr);
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=r1"}));
}

TEST_F(AnswerTreeLeaf, IsNoPartOfTheAnswerWithoutAValue) {
    add("/lldp/state/system-name", nullptr);
    add("/lldp/state/chassis-id", "c1");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/chassis-id=c1"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerTreeLeaf, IsPartOfTheAnswerOnceALaterAddGivesItAValue) {
    add("/lldp/state/system-name", nullptr);
    add("/lldp/state/system-name", "r1");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=r1"}));
}

TEST_F(AnswerTreeLeaf, MayHoldAnEmptyText) {
    add("/lldp/state/system-name", "");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name="}));
}

TEST_F(AnswerTreeLeaf, CopiesItsText) {
    std::string text_of_the_caller = "r1";
    add("/lldp/state/system-name", text_of_the_caller.c_str());
    text_of_the_caller = "xx";
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=r1"}));
}

TEST_F(AnswerTreeLeaf, MayPassThroughAValueThatALaterAddCorrects) {
    add("/lldp/state/counters/last-clear", "71");
    add("/lldp/state/counters/last-clear", "2024-11-21T10:00:00+00:00");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/counters/last-clear=2024-11-21T10:00:00+00:00"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerTreeLeaf, IsGivenToThePluginWithNameAndValue) {
    tidl_yfw_datatree *node = nullptr;
    ASSERT_EQ(add_below(tree.root(), "/lldp/state/system-name", "r1", &node), YMAP_OK);
    ASSERT_NE(node, nullptr);
    EXPECT_STREQ(node->name, "system-name");
    EXPECT_STREQ(node->ns, "http://openconfig.net/yang/lldp");
    EXPECT_STREQ(node->value, "r1");
}

TEST_F(AnswerTreeLeaf, OfAnUnknownPathIsLeftOutWithOneWarning) {
    EXPECT_EQ(add_below(tree.root(), "/lldp/state/no-such-leaf", "1"), YMAP_OK);
    EXPECT_EQ(add_below(tree.root(), "/lldp/state/no-such-leaf", "2"), YMAP_OK);
    EXPECT_EQ(answer(), Lines{});
    EXPECT_EQ(warnings,
              Lines{"/lldp/state/no-such-leaf: the OpenConfig model in use has no such node; it is left out"});
}

TEST_F(AnswerTreeLeaf, OfSeveralUnknownPathsAreLeftOutWithOneWarningThatNamesThemAll) {
    EXPECT_EQ(add_below(tree.root(), "/lldp/statistics/frame-in", "1"), YMAP_OK);
    EXPECT_EQ(add_below(tree.root(), "/lldp/state/no-such-leaf", "1"), YMAP_OK);
    EXPECT_EQ(add_below(tree.root(), "/lldp/state/nor-such-leaf", "1"), YMAP_OK);
    EXPECT_EQ(answer(), Lines{});
    EXPECT_EQ(warnings, Lines{"/lldp/state/no-such-leaf: the OpenConfig model in use has no such node, nor "
                              "/lldp/state/nor-such-leaf, /lldp/statistics/frame-in; they are left out"});
}

TEST_F(AnswerTreeLeaf, OfARelativePathIsRefusedAtTheRoot) {
    EXPECT_NE(add_below(tree.root(), "state", "1"), YMAP_OK) << "a relative path needs an output node";
    EXPECT_EQ(answer(), Lines{});
}

TEST_F(AnswerTreeLeaf, TakesATrailingSlashForNothing) {
    add("/lldp/state/system-name/", "r1");
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=r1"}));
}

TEST_F(AnswerTreeLeaf, CollectsTheValuesOfALeafList) {
    constexpr const char *list = "/lldp/config/suppress-tlv-advertisement";
    for (const char *tlv : {"SYSTEM_NAME", "PORT_DESCRIPTION", "SYSTEM_NAME"})
        add(list, (std::string("openconfig-lldp-types:") + tlv).c_str());
    EXPECT_EQ(answer(), (Lines{std::string(list) + "=openconfig-lldp-types:SYSTEM_NAME",
                               std::string(list) + "=openconfig-lldp-types:PORT_DESCRIPTION"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerTreeLeaf, AddsNothingToALeafListWithoutAValue) {
    add("/lldp/config/suppress-tlv-advertisement", nullptr);
    EXPECT_EQ(answer(), Lines{});
}

TEST_F(AnswerTreeLeaf, IsQualifiedWithTheModuleOfItsValuesNamespace) {
    stitch("eth1", "r2#p");
    open_entry(capability_list);
    add_identity(std::string(capability_list) + "/name", "ROUTER", types_ns);
    add_identity(std::string(capability_list) + "/state/name", "ROUTER", types_ns);
    tree.qualify_identities(schemas().context());
    EXPECT_EQ(below(answer(), "/lldp/interfaces/interface[name='eth1']/neighbors/neighbor[id='r2#p']"),
              (Lines{"/capabilities/capability[name='openconfig-lldp-types:ROUTER']/state/"
                     "name=openconfig-lldp-types:ROUTER"}));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(AnswerTreeLeaf, IsQualifiedOnceHoweverOftenItWasAdded) {
    constexpr const char *list = "/lldp/config/suppress-tlv-advertisement";
    add_identity(list, "SYSTEM_NAME", types_ns);
    add_identity(list, "SYSTEM_NAME", types_ns);
    tree.qualify_identities(schemas().context());
    tree.qualify_identities(schemas().context());
    EXPECT_EQ(answer(), (Lines{std::string(list) + "=openconfig-lldp-types:SYSTEM_NAME"}));
}

TEST_F(AnswerTreeLeaf, IsNotQualifiedWithoutAFlagOrAKnownNamespace) {
    add_identity("/lldp/state/system-name", "r1", "urn:nobody:knows:this");
    tidl_yfw_datatree *node = nullptr;
    ASSERT_EQ(add_below(tree.root(), "/lldp/state/chassis-id", "c1", &node), YMAP_OK);
    node->value_ns = yfw_strdup(types_ns, "YFW OCLLDP NS"); // without the flag; the tree frees it all the same
    tree.qualify_identities(schemas().context());
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=r1", "/lldp/state/chassis-id=c1"}));
}

class AnswerTreeNode : public WrittenAnswer {};

TEST_F(AnswerTreeNode, TakesChildrenByNameBelowAnEntry) {
    tidl_yfw_datatree *eth1 = interface("eth1");
    ASSERT_NE(eth1, nullptr);
    EXPECT_STREQ(eth1->name, "interface");
    tidl_yfw_datatree *state = nullptr;
    EXPECT_EQ(add_below(eth1, "state", nullptr, &state), YMAP_OK);
    ASSERT_NE(state, nullptr);
    EXPECT_EQ(add_below(state, "enabled", "true"), YMAP_OK);
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/state/enabled=true"}));
}

TEST_F(AnswerTreeNode, TakesAnAbsolutePathThatItLiesOn) {
    tidl_yfw_datatree *eth1 = interface("eth1");
    interface("eth2"); // the current entry from here on
    EXPECT_EQ(add_below(eth1, "/lldp/interfaces/interface/state/enabled", "false"), YMAP_OK);
    EXPECT_EQ(answer(), (Lines{"/lldp/interfaces/interface[name='eth1']/state/enabled=false",
                               "/lldp/interfaces/interface[name='eth2']"}));
}

TEST_F(AnswerTreeNode, SendsAnAbsolutePathThatItDoesNotLieOnToTheTop) {
    tidl_yfw_datatree *eth1 = interface("eth1");
    EXPECT_EQ(add_below(eth1, "/lldp/state/system-name", "r1"), YMAP_OK);
    EXPECT_EQ(answer(), (Lines{"/lldp/state/system-name=r1", "/lldp/interfaces/interface[name='eth1']"}));
}

TEST_F(AnswerTreeNode, HasNoChildrenWhenItIsALeaf) {
    tidl_yfw_datatree *leaf_node = nullptr;
    ASSERT_EQ(add_below(tree.root(), "/lldp/state/system-name", "r1", &leaf_node), YMAP_OK);
    EXPECT_NE(add_below(leaf_node, "more", "1"), YMAP_OK);
}

TEST_F(AnswerTreeNode, IsNoAnswerWhenItIsAnEmptyContainer) {
    add("/lldp/interfaces", nullptr);
    EXPECT_EQ(data(), nullptr);
    EXPECT_TRUE(warnings.empty());
}

} // namespace
} // namespace yfw::host::test
