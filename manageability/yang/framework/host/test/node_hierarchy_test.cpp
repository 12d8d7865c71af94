#include "host/node_hierarchy.h"

#include <gtest/gtest.h>

#include "host/request_context.h"
#include "test_nodes.h"

namespace yfw::host::test {
namespace {

constexpr const char *detail = "/lldp/nodes/node/neighbors/details/detail";
constexpr const char *neighbor = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor";

NodeText announcement(const char *port) {
    return {
        "lldp-neighbor",
        {leaf("port-id-detail", port), {"mib", {leaf("combined-capabilities", port + std::string("-caps"))}}}};
}

NodeText heard(const char *interface, const char *device, std::vector<NodeText> announcements) {
    NodeText text{"detail", {key("interface-name", interface), key("device-id", device)}};
    for (NodeText &made : announcements)
        text.children.push_back(std::move(made));
    return text;
}

NodeText card(const char *name, std::vector<NodeText> details) {
    return {"node",
            {key("node-name", name),
             {"neighbors", {{"details", std::move(details)}}},
             {"statistics", {leaf("received-packets", name + std::string("-frames"))}}}};
}

// Two nodes: the first with two neighbors, the second of which has two announcements; the second with one.
NodeText two_nodes() {
    return {"lldp",
            {{"global-lldp", {{"lldp-info", {leaf("system-name", "r1")}}}},
             {"nodes",
              {card("n1", {heard("eth1", "r2", {announcement("p1")}),
                           heard("eth2", "r3", {announcement("p2"), announcement("p3")})}),
               card("n2", {heard("eth9", "r9", {announcement("p9")})})}}}};
}

class LookUp : public testing::Test {
protected:
    void SetUp() override { context.hierarchy().start(tree.root()); }

    // Makes the node reached by these child indexes the current one, and its ancestors with it.
    void stand_in(std::initializer_list<uint32_t> numbers) {
        context.hierarchy().start(tree.root());
        context.hierarchy().push(tree.root());
        tidl_yfw_datatree *node = tree.at({});
        for (const uint32_t number : numbers) {
            node = &node->children[number];
            context.hierarchy().push(node);
        }
    }

    // "(none)" when it is absent.
    std::string value(const char *path_text, const char *leaf_name) {
        const char *found = "untouched";
        EXPECT_EQ(yfw_map_get_node_info(context.handle(), path_text, leaf_name, &found), YMAP_OK);
        return found != nullptr ? found : "(none)";
    }

    NodeTree tree{two_nodes()};
    RequestContext context{{}, nullptr, nullptr, nullptr};
};

TEST_F(LookUp, FindsALeafOfTheEntryThatTheWalkStandsIn) {
    stand_in({1, 0, 1, 0, 1});
    EXPECT_EQ(value(detail, "interface-name"), "eth2");
    EXPECT_EQ(value(detail, "device-id"), "r3");
    stand_in({1, 1, 1, 0, 0});
    EXPECT_EQ(value(detail, "interface-name"), "eth9");
}

TEST_F(LookUp, FindsTheEntriesAboveTheOneThatTheWalkStandsIn) {
    stand_in({1, 0, 1, 0, 1, 3});
    EXPECT_EQ(value(detail, "device-id"), "r3");
    EXPECT_EQ(value("/lldp/nodes/node", "node-name"), "n1");
}

TEST_F(LookUp, TellsTheEntriesOfAListWithoutKeysApart) {
    stand_in({1, 0, 1, 0, 1, 3});
    EXPECT_EQ(value(neighbor, "port-id-detail"), "p3");
    EXPECT_EQ(value("/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/mib", "combined-capabilities"),
              "p3-caps");
    stand_in({1, 0, 1, 0, 1, 2});
    EXPECT_EQ(value(neighbor, "port-id-detail"), "p2");
}

TEST_F(LookUp, FindsTheSameLeafFromFurtherDown) {
    stand_in({1, 0, 1, 0, 1, 3, 1});
    EXPECT_EQ(value(neighbor, "port-id-detail"), "p3");
    EXPECT_EQ(value(std::string(neighbor).append("/mib").c_str(), "combined-capabilities"), "p3-caps");
}

TEST_F(LookUp, LooksBelowWhereTheWalkStands) {
    stand_in({1, 0, 1, 0, 0});
    EXPECT_EQ(value(neighbor, "port-id-detail"), "p1");
}

TEST_F(LookUp, FindsASiblingContainerOfTheEntryItStandsIn) {
    stand_in({1, 1, 1, 0, 0});
    EXPECT_EQ(value("/lldp/nodes/node/statistics", "received-packets"), "n2-frames");
    EXPECT_EQ(value("/lldp/global-lldp/lldp-info", "system-name"), "r1");
}

TEST_F(LookUp, GivesNoValueAndSuccessForWhatIsAbsent) {
    stand_in({1, 0, 1, 0, 0});
    EXPECT_EQ(value(detail, "chassis-id"), "(none)");
    EXPECT_EQ(value("/lldp/nodes/node/interfaces/interface", "interface-name"), "(none)");
    EXPECT_EQ(value("/lldp/nodes/node/interfaces/interface/interface-stats", "last-clear"), "(none)");
    EXPECT_EQ(value("/interface-configurations/interface-configuration", "interface-name"), "(none)");
}

TEST_F(LookUp, GivesNoValueForANodeThatIsNoLeaf) {
    stand_in({1, 0, 1, 0, 0});
    EXPECT_EQ(value("/lldp/nodes/node", "statistics"), "(none)");
}

TEST_F(LookUp, WorksFromTheTopWhenTheWalkStandsNowhereYet) {
    EXPECT_EQ(value("/lldp/global-lldp/lldp-info", "system-name"), "r1");
    EXPECT_EQ(value("/lldp/config", "enabled"), "(none)");
}

TEST_F(LookUp, FindsNothingWithoutATree) {
    context.hierarchy().start(nullptr);
    EXPECT_EQ(value("/lldp/global-lldp/lldp-info", "system-name"), "(none)");
}

TEST_F(LookUp, FollowsTheWalkOutOfAnEntryAndIntoTheNext) {
    stand_in({1, 0, 1, 0, 0});
    yfw_map_remove_from_node_hierarchy(context.handle(), tree.at({1, 0, 1, 0, 0}));
    yfw_map_add_to_node_hierarchy(context.handle(), tree.at({1, 0, 1, 0, 1}), 2);
    EXPECT_EQ(value(detail, "device-id"), "r3");
}

// On the OpenConfig side, a leaf in another container of the request.
TEST(LookUpInARequest, FindsTheSettingThatTheRequestCarriesBeside) {
    NodeTree tree(NodeText{"lldp",
                           {{"config", {leaf("enabled", "true"), leaf("system-name", "r1")}},
                            {"interfaces", {{"interface", {key("name", "eth1")}}}}}});
    RequestContext context({}, nullptr, nullptr, nullptr);
    context.hierarchy().start(tree.root());
    for (const auto *node : {tree.at({}), tree.at({1}), tree.at({1, 0})})
        yfw_map_add_to_node_hierarchy(context.handle(), node, 1);
    const char *found = nullptr;
    EXPECT_EQ(yfw_map_get_node_info(context.handle(), "/lldp/config", "enabled", &found), YMAP_OK);
    EXPECT_STREQ(found, "true");
}

class Standing : public LookUp {};

TEST_F(Standing, IsLeftWithEverythingAboveWhenANodeIsPopped) {
    stand_in({1, 0, 1, 0, 0});
    EXPECT_EQ(context.hierarchy().depth(), 6u);
    yfw_map_remove_from_node_hierarchy(context.handle(), tree.at({1, 0}));
    EXPECT_EQ(context.hierarchy().depth(), 2u);
    EXPECT_EQ(context.hierarchy().instance_path(), "/lldp/nodes");
}

TEST_F(Standing, IsUnchangedWhenANodeIsPoppedThatIsNotThere) {
    stand_in({1, 0});
    yfw_map_remove_from_node_hierarchy(context.handle(), tree.at({1, 1}));
    EXPECT_EQ(context.hierarchy().depth(), 3u);
}

TEST_F(Standing, ReadsAsAPathWithKeys) {
    stand_in({1, 0, 1, 0, 1});
    EXPECT_EQ(context.hierarchy().instance_path(), "/lldp/nodes/node[node-name='n1']/neighbors/details/"
                                                   "detail[interface-name='eth2'][device-id='r3']");
}

TEST_F(Standing, BeginsAnewOnAnotherTree) {
    stand_in({1, 0});
    context.hierarchy().start(tree.root());
    EXPECT_EQ(context.hierarchy().depth(), 0u);
    EXPECT_EQ(context.hierarchy().instance_path(), "");
}

TEST_F(Standing, MakesTheEntryAtAListPathTheCurrentOne) {
    stand_in({1, 0, 1, 0, 1});
    EXPECT_EQ(yfw_map_update_current_list_node(context.handle(), detail), YMAP_OK);
    EXPECT_EQ(context.hierarchy().current_list_entry(), tree.at({1, 0, 1, 0, 1}));
    EXPECT_EQ(yfw_map_update_current_list_node(context.handle(), "/lldp/nodes/node"), YMAP_OK);
    EXPECT_EQ(context.hierarchy().current_list_entry(), tree.at({1, 0}));
}

TEST_F(Standing, SucceedsForAListThatTheRequestHasNoNodeOf) {
    stand_in({1});
    EXPECT_EQ(yfw_map_update_current_list_node(context.handle(), detail), YMAP_OK);
    EXPECT_EQ(yfw_map_update_current_list_node(context.handle(), "/lldp/interfaces/interface"), YMAP_OK);
}

} // namespace
} // namespace yfw::host::test
