// The walker of the native interface configurations: its entries, their place in the output list, and how a
// failure or a skipped entry affects the walk.
#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::ValuesIn;

const std::string walker = ifmgr + "lvla_interfaceconfigurations";
const std::string list_path = "/interface-configurations/interface-configuration";
const std::string list_callback = ifmgr + "list_lvla_interfaceconfigurations_interfaceconfiguration";
const std::string mapping = "ymap_qo_oclldp_ifmgr_intconfig_man";
const std::string name_leaf = ifmgr + "leaf_lvla_interfaceconfigurations_interfaceconfiguration_interfacename";
const std::string push = "push interface-configuration 2", pop = "pop interface-configuration",
                  current = "current " + list_path, list_add = "list+ interface-configuration",
                  list_drop = "list- interface-configuration";

class IfmgrWalker : public OclldpTest {
protected:
    IfmgrWalker() {
        Selection{.kind = YMAP_REQ_GET, .selection_empty = 1, .content = 0}.apply(context);
        fw.node_info[{list_path, "interface-name"}] = {.value = "Gi1", .status = 0};
    }

    static Node entry(std::vector<Node> children) {
        return node("interface-configuration").children(std::move(children));
    }
    static Node named() { return entry({leaf("interface-name", "Gi1")}); }
    terrno walk(std::vector<Node> entries) {
        tree = std::make_unique<Tree>(node("interface-configurations").children(std::move(entries)),
                                      native_ifmgr_ns);
        return call(walker, context, *tree);
    }
    // Makes each add to the output list change its depth by this much.
    void change_depth(int by) {
        fw.on_call("yfw_add_to_output_list_ctx", [this, by](const Call &) {
            context.req.output_list.depth = static_cast<uint8_t>(context.req.output_list.depth + by);
        });
    }
    // The walk without log lines, between the root's push and pop.
    std::vector<std::string> told() const {
        std::vector<std::string> all = steps(fw, false);
        EXPECT_EQ(all.front(), "push interface-configurations 1");
        EXPECT_EQ(all.back(), "pop interface-configurations");
        return {all.begin() + 1, all.end() - 1};
    }
    std::size_t mapped() const {
        const std::vector<std::string> started = fw.started();
        return static_cast<std::size_t>(std::count(started.begin(), started.end(), mapping));
    }

    Context context;
    std::unique_ptr<Tree> tree;
};

TEST_F(IfmgrWalker, TellsTheWholeWalkOfAnEntry) {
    fw.xpath["/lldp/enable"] = {.value = "true", .status = 0};
    change_depth(1);
    EXPECT_EQ(walk({named()}), YMAP_OK);
    EXPECT_THAT(told(), ElementsAre(push, current, "add /lldp/interfaces/interface/config/name",
                                    "add /lldp/interfaces/interface/config/enabled", list_add, pop, list_drop));
    EXPECT_THAT(fw.started(), ElementsAre(walker, ifmgr + "cont_lvla_interfaceconfigurations", list_callback,
                                          mapping, "yfw_oclldp_util_is_ifhandle_exist", name_leaf,
                                          "ymap_qo_oclldp_intconfig_intname_man"));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(IfmgrWalker, AddsTheEntryAndTheOutputTreeToTheOutputList) {
    change_depth(1);
    walk({named()});
    EXPECT_THAT(fw.calls_of("yfw_add_to_output_list_ctx"),
                ElementsAre(Call{"yfw_add_to_output_list_ctx", "interface-configuration, output"}));
    EXPECT_THAT(fw.calls_of("yfw_remove_from_output_list_ctx"),
                ElementsAre(Call{"yfw_remove_from_output_list_ctx", "interface-configuration, output"}));
}

TEST_F(IfmgrWalker, ReadsTheNameAfterTheEntryIsInTheOutputList) {
    walk({named()});
    std::vector<std::string> order;
    for (const Call &made : fw.mapping_calls()) {
        if (made.operation == "yfw_map_get_node_info" || made.operation == "yfw_add_to_output_list_ctx")
            order.push_back(made.operation);
    }
    EXPECT_THAT(order,
                ElementsAre("yfw_map_get_node_info", "yfw_add_to_output_list_ctx", "yfw_map_get_node_info"));
}

struct Depth {
    int start;
    int change;
    bool dropped;
};

class IfmgrDepth : public IfmgrWalker, public ::testing::WithParamInterface<Depth> {};

INSTANTIATE_TEST_SUITE_P(
    Every, IfmgrDepth, ValuesIn(std::vector<Depth>{{0, 1, true}, {3, 2, true}, {0, 0, false}, {3, -1, false}}));

TEST_P(IfmgrDepth, DropsAnEntryOnlyIfTheListGrew) {
    context.req.output_list.depth = static_cast<uint8_t>(GetParam().start);
    change_depth(GetParam().change);
    EXPECT_EQ(walk({named()}), YMAP_OK);
    EXPECT_THAT(told(), GetParam().dropped ? ElementsAreArray({push, current, list_add, pop, list_drop})
                                           : ElementsAreArray({push, current, list_add, pop}));
}

TEST_F(IfmgrWalker, TakesAnEntryThatTheListRefusedForMapped) {
    fw.fail("yfw_add_to_output_list_ctx", 1, 0x31);
    EXPECT_EQ(walk({named(), named()}), YMAP_OK);
    EXPECT_EQ(mapped(), 2u);
    EXPECT_THAT(fw.started(), Contains(name_leaf));
}

TEST_F(IfmgrWalker, MapsEachEntryInOrder) {
    EXPECT_EQ(walk({named(), named(), named()}), YMAP_OK);
    std::vector<std::string> thrice;
    for (int round = 0; round < 3; ++round)
        thrice.insert(thrice.end(), {push, current, list_add, pop});
    EXPECT_THAT(told(), ElementsAreArray(thrice));
    EXPECT_EQ(mapped(), 3u);
}

// The error is only logged; the entry is still mapped.
TEST_F(IfmgrWalker, ComplainsOfAnEntryWithoutChildrenAndMapsIt) {
    fw.xpath["/lldp/enable"] = {.value = "false", .status = 0};
    change_depth(1);
    EXPECT_EQ(walk({node("interface-configuration"), entry({})}), YMAP_OK);
    EXPECT_THAT(fw.errors(),
                ElementsAre("No keys specified with a list node.", "No keys specified with a list node."));
    EXPECT_THAT(fw.numbered_lines(), Contains("ERR: No keys specified with a list node."));
    EXPECT_THAT(fw.error_paths, IsEmpty());
    EXPECT_EQ(mapped(), 2u);
    EXPECT_THAT(summaries(fw), Contains("/lldp/interfaces/interface/config/enabled = false"));
    EXPECT_THAT(fw.calls_of("yfw_remove_from_output_list_ctx"), SizeIs(2));
}

// ---- skipped entries and failures

TEST_F(IfmgrWalker, SkipsAnEntryWhoseCallbackHandledItAndGoesOn) {
    fw.node_info[{list_path, "interface-name"}] = {.value = "macsec0", .status = YMAP_STS_SUBTREE_DONE};
    EXPECT_EQ(walk({named(), named()}), YMAP_OK);
    EXPECT_THAT(told(), ElementsAre(push, current, pop, push, current, pop));
    EXPECT_THAT(fw.started(), Not(Contains(name_leaf)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(IfmgrWalker, ForgivesAChildThatEndsItsEntryAndGoesOn) {
    change_depth(1);
    // The list callback reads the name first, then the name's own callback does.
    fw.on_call("yfw_map_get_node_info", [this](const Call &) {
        const bool of_the_leaf = fw.calls_of("yfw_map_get_node_info").size() == 2;
        fw.node_info[{list_path, "interface-name"}] = {.value = "Gi1",
                                                       .status = of_the_leaf ? YMAP_STS_SUBTREE_DONE : 0};
    });
    EXPECT_EQ(walk({entry({leaf("interface-name", "Gi1"), leaf("vendor", "1").in(foreign_ns)}), named()}),
              YMAP_OK);
    EXPECT_THAT(told(),
                ElementsAre(push, current, list_add, pop, list_drop, push, current, list_add, pop, list_drop));
    EXPECT_THAT(fw.started(),
                Not(Contains(walker + "_interfaceconfiguration_parse_augments"))); // the loop has ended
}

TEST_F(IfmgrWalker, StopsAtAnEntryWhoseCallbackFails) {
    fw.node_info.clear();
    change_depth(1);
    EXPECT_EQ(walk({named(), named()}), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(told(), ElementsAre(push, current, list_add, pop, list_drop));
    EXPECT_THAT(fw.started(), Not(Contains(name_leaf)));
    EXPECT_EQ(mapped(), 1u);
}

TEST_F(IfmgrWalker, StopsAtAChildThatFailsAndTakesTheEntryOutAgain) {
    change_depth(1);
    fw.fail("yfw_map_get_node_info", 2, 0x41);
    EXPECT_EQ(walk({entry({leaf("interface-name", "Gi1"), leaf("vendor", "1").in(foreign_ns)}), named()}),
              YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(told(), ElementsAre(push, current, list_add, pop, list_drop));
    EXPECT_THAT(fw.started(), Not(Contains(walker + "_interfaceconfiguration_parse_augments")));
    EXPECT_EQ(mapped(), 1u);
}

TEST_F(IfmgrWalker, CallsNoCallbackForAnEntryThatIsNotTheCurrentOne) {
    fw.fail("yfw_map_update_current_list_node", 1, 0x42);
    EXPECT_EQ(walk({named(), named()}), 0x42u);
    EXPECT_EQ(mapped(), 0u);
    EXPECT_THAT(fw.started(), Not(Contains(name_leaf)));
    EXPECT_THAT(told(), Contains(pop));
    EXPECT_THAT(fw.calls_of("yfw_map_update_current_list_node"), SizeIs(1));
}

TEST_F(IfmgrWalker, GoesOnAfterAnEntryThatIsDoneBeforeItIsCurrent) {
    fw.fail("yfw_map_update_current_list_node", 1, YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(walk({named(), named()}), YMAP_OK);
    EXPECT_EQ(mapped(), 1u);
}

TEST_F(IfmgrWalker, FailsAtAnEntryWhoseChildrenAreMissing) {
    EXPECT_EQ(walk({node("interface-configuration").broken_children(1), named()}), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(mapped(), 0u);
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(IfmgrWalker, FailsAtAChildOfAnEntryWithoutATag) {
    change_depth(1);
    EXPECT_EQ(walk({entry({leaf("x", "1").without_tag(), leaf("interface-name", "Gi1")}), named()}),
              YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(told(), ElementsAre(push, current, list_add, pop, list_drop));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(IfmgrWalker, FailsAtAChildOfTheRootWithoutATag) {
    EXPECT_EQ(walk({named().without_tag(), named()}), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(told(), IsEmpty());
    EXPECT_EQ(mapped(), 0u);
}

TEST_F(IfmgrWalker, FailsWithoutPushingARootWhoseChildrenAreMissing) {
    Tree broken(node("interface-configurations").broken_children(3), native_ifmgr_ns);
    EXPECT_EQ(call(walker, context, broken), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

TEST_F(IfmgrWalker, RefusesNullNodes) {
    Tree root(node("interface-configurations"), native_ifmgr_ns);
    for (const bool without_input : {true, false}) {
        fw.forget_calls();
        EXPECT_EQ(plugin->call(walker, context, without_input ? nullptr : root.operator->(),
                               without_input ? &output : nullptr),
                  YMAP_ERR_INVALID_ARGS);
        EXPECT_THAT(messages_of(fw, walker), ElementsAre("Start", "Invalid arguments passed!"));
        EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
        EXPECT_THAT(fw.error_paths, SizeIs(1));
        EXPECT_THAT(fw.mapping_calls(), SizeIs(1));
    }
}

// ---- the root's container callback

const std::string container = ifmgr + "cont_lvla_interfaceconfigurations";

TEST_F(IfmgrWalker, TurnsARootWithoutChildrenIntoAnEmptyContainer) {
    Tree root(node("interface-configurations"), native_ifmgr_ns);
    EXPECT_EQ(call(walker, context, root), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/interfaces"));
    EXPECT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
    EXPECT_THAT(messages_of(fw, container), ElementsAre("Start", "No subtrees", "End"));
    EXPECT_THAT(steps(fw, false), ElementsAre("push interface-configurations 1", "add /lldp/interfaces",
                                              "pop interface-configurations"));
}

TEST_F(IfmgrWalker, PassesUpTheFailureToAddTheEmptyContainer) {
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x51);
    Tree root(node("interface-configurations"), native_ifmgr_ns);
    EXPECT_EQ(call(walker, context, root), 0x51u);
    EXPECT_THAT(steps(fw, false), Contains("pop interface-configurations"));
}

TEST_F(IfmgrWalker, MapsNothingForARootWithChildrenButSaysSo) {
    walk({leaf("unheard-of", "1")});
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(messages_of(fw, container), ElementsAre("Start", "No mapping done for this node", "End"));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
}

TEST_F(IfmgrWalker, GoesByTheCountThatTheContainerCallbackIsGiven) {
    Tree root(node("interface-configurations").children({named()}), native_ifmgr_ns);
    EXPECT_EQ(plugin->call_container(container, context, root, 1, &output), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_EQ(plugin->call_container(container, context, root, 0, &output), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/interfaces"));
}

TEST_F(IfmgrWalker, RefusesNullNodesInTheContainerCallback) {
    Tree root(node("interface-configurations"), native_ifmgr_ns);
    EXPECT_EQ(plugin->call_container(container, context, nullptr, 0, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call_container(container, context, root, 0, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
    EXPECT_THAT(fw.adds, IsEmpty());
}

} // namespace
} // namespace oclldp_test
