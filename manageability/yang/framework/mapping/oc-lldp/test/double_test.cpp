// The double itself, on which the other tests rely.
#include <gmock/gmock.h>

#include "oclldp_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::ElementsAre;

TEST_F(OclldpTest, LoadsThePlugInAfreshForEachTest) {
    EXPECT_EQ(plugin->ring_index(), 0);
    plugin->ring_index() = 17;
    plugin.reset();
    plugin = std::make_unique<Plugin>();
    EXPECT_EQ(plugin->ring_index(), 0);
}

TEST_F(OclldpTest, TheDoubleBuildsContiguousChildrenWithTheirFlags) {
    Tree tree(node("lldp").children({node("config").children({leaf("enabled", "true")}), node("state")}));
    EXPECT_EQ(tree->child_count, 2u);
    EXPECT_EQ(tree->node_flags, YFW_NODE_CHILDREN_VALID);
    EXPECT_STREQ(tree->children[1].name, "state");
    EXPECT_STREQ(tree.at("config/enabled").value, "true");
    EXPECT_STREQ(tree.at("config/enabled").ns, oc_ns);
}

TEST_F(OclldpTest, TheDoubleFailsTheNthCallOfAnOperationOnly) {
    Context context;
    fw.fail("yfw_map_update_current_list_node", 2, 77);
    EXPECT_EQ(yfw_map_update_current_list_node(context, "/a"), 0u);
    EXPECT_EQ(yfw_map_update_current_list_node(context, "/b"), 77u);
    EXPECT_EQ(yfw_map_update_current_list_node(context, "/c"), 0u);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(Call{"yfw_map_update_current_list_node", "/a"},
                                                Call{"yfw_map_update_current_list_node", "/b"},
                                                Call{"yfw_map_update_current_list_node", "/c"}));
}

TEST_F(OclldpTest, TheDoubleKeepsAccountOfFrameworkStrings) {
    char *copy = yfw_strdup("text", "YFW MAP");
    EXPECT_EQ(fw.live_strings(), 1u);
    EXPECT_EQ(fw.live_strings("YFW MAP"), 1u);
    qdos_named_free(copy);
    EXPECT_EQ(fw.live_strings(), 0u);
}

TEST_F(OclldpTest, TheDoublesBoundedCopyTerminatesAndTellsOfACut) {
    char text[4] = "???";
    EXPECT_EQ(yfw_strncpy_s("caller", text, sizeof text, "abc", 3), 0u);
    EXPECT_STREQ(text, "abc");
    EXPECT_NE(yfw_strcpy_s("caller", text, sizeof text, "abcd"), 0u);
    EXPECT_STREQ(text, "abc");
    EXPECT_EQ(yfw_strcpy_s("caller", text, sizeof text, "ab"), 0u);
    EXPECT_NE(yfw_strcat_s("caller", text, sizeof text, "cd"), 0u);
    EXPECT_STREQ(text, "abc");
}

} // namespace
} // namespace oclldp_test
