// The walkers of the native operational data, at every level of the native tree.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::ValuesIn;

const std::string unsupported = "Unsupported tag. Ignoring.";

class OperWalkerLevels : public OperTest, public ::testing::WithParamInterface<OperLevel> {
protected:
    const OperLevel &level() const { return GetParam(); }
    Node innermost() const { return node(level().tag()); }
    Node innermost_with(std::vector<Node> children) const { return innermost().children(std::move(children)); }
    // Walks from the root.
    terrno walk_down_to(Node bottom) { return walk(nest(level().path, 0, std::move(bottom))); }
    // Walks from the node of the walker whose loop walks the level.
    terrno walk_from_walker(Node bottom) {
        return run(level().walker, nest(level().path, level().walker_starts, std::move(bottom)));
    }
    std::vector<std::string> walkers_in_and_out(std::size_t depth) const {
        return oclldp_test::in_and_out(level().path, level().walker_starts, depth);
    }
};

INSTANTIATE_TEST_SUITE_P(Every, OperWalkerLevels, ValuesIn(oper_levels()), oper_level_label);

TEST_P(OperWalkerLevels, PushesEachNodeWithItsKindAndPopsItAgain) {
    EXPECT_EQ(walk_down_to(innermost()), YMAP_OK);
    EXPECT_THAT(hierarchy(fw), ElementsAreArray(in_and_out(level().path, 0, level().path.size())));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperWalkerLevels, IsReachedByTheWalkersOwnEntryToo) {
    EXPECT_EQ(walk_from_walker(innermost()), YMAP_OK);
    EXPECT_THAT(hierarchy(fw), ElementsAreArray(walkers_in_and_out(level().path.size())));
    EXPECT_EQ(fw.started().front(), oper + level().walker);
}

TEST_P(OperWalkerLevels, CallsTheCallbackOfEachLevelOnTheWayOnce) {
    walk_down_to(innermost());
    std::size_t expected = 0;
    for (auto end = level().path.begin() + 1; end <= level().path.end(); ++end) {
        if (oper_level_at({level().path.begin(), end}).callback == level().callback)
            ++expected;
    }
    EXPECT_EQ(ends_of(fw, oper + level().callback), expected);
}

TEST_P(OperWalkerLevels, CallsTheCallbackWithChildrenToo) {
    walk_from_walker(innermost_with({leaf("unheard-of", "1")}));
    EXPECT_GE(ends_of(fw, oper + level().callback), 1u);
}

TEST_P(OperWalkerLevels, HandsAChildOfAnotherModuleToTheLevelsHook) {
    EXPECT_EQ(walk_down_to(innermost_with({leaf("vendor-leaf", "1").in(foreign_ns)})), YMAP_OK);
    EXPECT_EQ(count_of(fw.started(), oper + level().hook), 1u);
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: " + unsupported)));
}

TEST_P(OperWalkerLevels, IgnoresAnUnknownChildOfTheNativeModule) {
    EXPECT_EQ(walk_down_to(innermost_with({leaf("unheard-of", "1")})), YMAP_OK);
    EXPECT_THAT(messages_of(fw, oper + level().walker), Contains(unsupported));
    EXPECT_EQ(count_of(fw.debug_lines(), "TRC: " + unsupported), 1u);
    EXPECT_THAT(fw.started(), Not(Contains(oper + level().hook)));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_P(OperWalkerLevels, GoesOnAfterChildrenThatAreNotItsOwn) {
    EXPECT_EQ(
        walk_from_walker(innermost_with({leaf("unheard-of", "1"), leaf("vendor-leaf", "1").in(foreign_ns),
                                         leaf("unheard-of", "2"), leaf("vendor-leaf", "2").in(foreign_ns)})),
        YMAP_OK);
    EXPECT_EQ(count_of(fw.started(), oper + level().hook), 2u);
    EXPECT_EQ(count_of(fw.debug_lines(), "TRC: " + unsupported), 2u);
}

TEST_P(OperWalkerLevels, FailsAtAChildWithoutATagAndPopsAllTheSame) {
    EXPECT_EQ(walk_from_walker(
                  innermost_with({leaf("x", "1").without_tag(), leaf("vendor-leaf", "1").in(foreign_ns)})),
              YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(hierarchy(fw), ElementsAreArray(walkers_in_and_out(level().path.size())));
    EXPECT_THAT(fw.started(), Not(Contains(oper + level().hook)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperWalkerLevels, FailsWithoutPushingANodeWhoseChildrenAreMissing) {
    EXPECT_EQ(walk_from_walker(innermost().broken_children(2)), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
    EXPECT_THAT(hierarchy(fw), ElementsAreArray(walkers_in_and_out(level().path.size() - 1)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperWalkerLevels, TakesAMissingArrayWithACountOfZeroForNoChildren) {
    EXPECT_EQ(walk_from_walker(innermost().broken_children(0)), YMAP_OK);
    EXPECT_THAT(fw.errors(), Not(Contains("Failed to get subtrees!")));
    EXPECT_THAT(hierarchy(fw), ElementsAreArray(walkers_in_and_out(level().path.size())));
}

TEST_P(OperWalkerLevels, LooksAtNoChildrenThatTheFlagDoesNotVouchFor) {
    Tree tree(nest(level().path, level().walker_starts, innermost_with({leaf("x", "1").without_tag()})),
              native_oper_ns);
    tidl_yfw_datatree *bottom = tree;
    for (std::size_t at = level().walker_starts + 1; at < level().path.size(); ++at)
        bottom = &bottom->children[0];
    bottom->node_flags = 0;
    EXPECT_EQ(call(oper + level().walker, context, tree), YMAP_OK);
    EXPECT_THAT(fw.errors(), Not(Contains("Tag name is not available!")));
}

TEST_P(OperWalkerLevels, TriesTheTagsInTheirFixedOrderAndTheModuleLast) {
    walk_from_walker(innermost_with({leaf("unheard-of", "1")}));
    std::vector<std::string> tried;
    for (const Call &match : fw.calls_of("yfw_map_do_these_match")) {
        const std::size_t comma = match.args.find(", ");
        const std::string first = match.args.substr(0, comma), second = match.args.substr(comma + 2);
        if (first == "unheard-of" || second == "unheard-of")
            tried.push_back(first == "unheard-of" ? second : first);
        else if (first == native_oper_ns && second == native_oper_ns)
            tried.push_back("the module");
    }
    std::vector<std::string> expected = level().tags;
    expected.push_back("the module");
    EXPECT_EQ(tried, expected);
}

// ---- request kinds: only a get of configuration and state is walked ------------------------------------

std::vector<OperLevel> walkers_own_levels() {
    std::vector<OperLevel> own;
    std::copy_if(oper_levels().begin(), oper_levels().end(), std::back_inserter(own),
                 [](const OperLevel &level) { return level.is_walkers_own(); });
    return own;
}

class OperWalkerKinds : public OperTest, public ::testing::WithParamInterface<OperLevel> {
protected:
    std::vector<Node> every_tag(const std::string &ns) const {
        std::vector<Node> nodes;
        for (const std::string &tag : GetParam().tags)
            nodes.push_back(leaf(tag, "1").in(ns));
        return nodes;
    }
    Node own_node(std::vector<Node> children) const {
        return node(GetParam().tag()).children(std::move(children));
    }
    static constexpr uint32_t other_kinds[] = {0, 1, 8, 9, 11, 15};
};

INSTANTIATE_TEST_SUITE_P(Every, OperWalkerKinds, ValuesIn(walkers_own_levels()), oper_level_label);

TEST_P(OperWalkerKinds, TakeNoTagOfTheirOwnInAnotherKindOfRequest) {
    for (const uint32_t kind : other_kinds) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        context.descriptor.req_type = kind;
        EXPECT_EQ(run(GetParam().walker, own_node(every_tag(native_oper_ns))), YMAP_OK);
        EXPECT_THAT(hierarchy(fw), ElementsAreArray(in_and_out(GetParam().path, GetParam().path.size() - 1,
                                                               GetParam().path.size())));
        EXPECT_EQ(count_of(messages_of(fw, oper + GetParam().walker), unsupported), GetParam().tags.size());
    }
}

TEST_P(OperWalkerKinds, HandTagsOfAnotherModuleToTheHookInAnotherKindOfRequest) {
    for (const uint32_t kind : other_kinds) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        context.descriptor.req_type = kind;
        EXPECT_EQ(run(GetParam().walker, own_node(every_tag(foreign_ns))), YMAP_OK);
        EXPECT_EQ(count_of(fw.started(), oper + GetParam().hook), GetParam().tags.size());
    }
}

TEST_P(OperWalkerKinds, TakeEachTagOfTheirOwnInAGet) {
    plugin->neighbor_list_mapped() = 1;
    EXPECT_EQ(run(GetParam().walker, own_node(every_tag(native_oper_ns))), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: " + unsupported)));
    EXPECT_THAT(fw.started(), Not(Contains(oper + GetParam().hook)));
}

TEST_P(OperWalkerKinds, RejectAMissingNodeOrOutputWithAnErrorPath) {
    Tree native(node(GetParam().tag()), native_oper_ns);
    EXPECT_EQ(plugin->call(oper + GetParam().walker, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(oper + GetParam().walker, context, native, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.mapping_calls(),
                ElementsAre(Call{"yfw_oc_error_path", "NULL"}, Call{"yfw_oc_error_path", "NULL"}));
    EXPECT_EQ(ends_of(fw, oper + GetParam().walker), 0u);
}

// ---- hooks --------------------------------------------------------------------------------------------

TEST_P(OperWalkerLevels, HasAHookThatAcceptsNodesInEveryKindOfRequest) {
    fw.is_request_add = true;
    for (const uint32_t kind : {0u, 1u, 10u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        context.descriptor.req_type = kind;
        EXPECT_EQ(run(level().hook, node("vendor-node").in(foreign_ns)), YMAP_OK);
        EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "TRC: End"));
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
        EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    }
}

// ---- the walk as a whole ------------------------------------------------------------------------------

using OperWalker = OperTest;

TEST_F(OperWalker, TellsItsWholeWalk) {
    const std::string walker = oper + "lvla_lldp", container = oper + "cont_lvla_lldp",
                      chassis = oper + "leaf_lvla_lldp_lldpinfo_chassisid",
                      name = oper + "leaf_lvla_lldp_lldpinfo_systemname",
                      hook = oper + "lvla_lldp_globallldp_parse_augments";
    EXPECT_EQ(
        walk(node("lldp").children(
            {node("global-lldp")
                 .children({node("lldp-info").children({leaf("system-name", "r1"), leaf("chassis-id", "c")}),
                            leaf("vendor", "1").in(foreign_ns)})})),
        YMAP_OK);
    std::vector<std::string> told = steps(fw);
    std::erase(told, container + ": Start");
    EXPECT_THAT(told,
                ElementsAre(walker + ": Start", "push lldp 1", container + ": End", "push global-lldp 1",
                            container + ": End", "push lldp-info 1", container + ": End", name + ": Start",
                            "add /lldp/state/system-name", name + ": End", chassis + ": Start",
                            "add /lldp/state/chassis-id", chassis + ": End", "pop lldp-info", hook + ": Start",
                            hook + ": End", "pop global-lldp", "pop lldp", walker + ": End"));
}

TEST_F(OperWalker, PassesAFailedContainerCallbackUpWithoutWalkingOn) {
    fw.fail(add_path, 1, 0x77);
    EXPECT_EQ(walk(node("lldp").children(
                  {node("nodes").children({node("node").children(
                       {node("interfaces"), node("statistics").children({leaf("last-clear", "1")})})}),
                   node("global-lldp")})),
              0x77u);
    EXPECT_THAT(hierarchy(fw), ElementsAre("push lldp 1", "push nodes 1", "push node 2", "push interfaces 1",
                                           "pop interfaces", "pop node", "pop nodes", "pop lldp"));
}

TEST_F(OperWalker, MapsAnEmptyInterfacesContainerToAnEmptyOne) {
    EXPECT_EQ(
        walk(node("lldp").children({node("nodes").children({node("node").children({node("interfaces")})})})),
        YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/interfaces"));
}

TEST_F(OperWalker, MapsInterfacesWithoutNeighborsToEntriesKeyedByNameOnly) {
    std::vector<Node> interfaces;
    for (const std::string name : {"eth1", "eth2"})
        interfaces.push_back(node("interface").children({leaf("interface-name", name)}));
    std::size_t next = 0;
    fw.node_info.clear();
    fw.node_info_fallback = [&](const std::string &, const std::string &name) {
        // The list callback and the state callback each look up the name.
        return name == "interface-name" ? TextAnswer{.value = next++ < 2 ? "eth1" : "eth2"} : TextAnswer{};
    };
    EXPECT_EQ(walk(node("lldp").children({node("nodes").children(
                  {node("node").children({node("interfaces").children(interfaces)})})})),
              YMAP_OK);
    ASSERT_EQ(fw.searches.size(), 2u);
    EXPECT_EQ(fw.searches[0].key_value, "eth1");
    EXPECT_EQ(fw.searches[1].key_value, "eth2");
    EXPECT_THAT(fw.stitches, IsEmpty());
    const auto is_neighbors = [](const std::string &path) {
        return path.find("neighbors") != std::string::npos;
    };
    EXPECT_EQ(std::ranges::count_if(fw.add_paths(), is_neighbors), 0);
    EXPECT_EQ(count_of(summaries(fw), oc_interface + "/name = eth1"), 1u);
    EXPECT_EQ(count_of(summaries(fw), oc_interface + "/name = eth2"), 1u);
}

TEST_F(OperWalker, LeavesAllLeavesOfANeighborThatIsNotStitchedOutWithoutAnError) {
    answer(native_detail, "device-id", std::nullopt);
    const Node tlv = node("lldp-org-def-tlv-entry")
                         .children({leaf("oui", "0x1b21"), leaf("tlv-subtype", "1"), leaf("tlv-value", "abc")});
    const Node address =
        node("lldp-addr-entry")
            .children({node("address").children({leaf("address-type", "ipv4"), leaf("ipv4-address", "10.0.0.1"),
                                                 leaf("ipv6-address", "fe80::1")})});
    EXPECT_EQ(
        run("lvla_lldp_detail_lldpneighbor",
            node("lldp-neighbor")
                .children(
                    {node("detail").children({node("network-addresses").children({address}),
                                              leaf("port-description", "p"), leaf("system-name", "s"),
                                              leaf("system-description", "d"), leaf("age", "3"),
                                              leaf("enabled-capabilities", "B"), leaf("last-update", "4")}),
                     node("mib").children({leaf("combined-capabilities", "1310740"),
                                           node("org-def-tlv-list").children({tlv}),
                                           leaf("chassis-id-sub-type", "4"), leaf("port-id-sub-type", "6")}),
                     leaf("device-id", "switch7"), leaf("chassis-id", "c"), leaf("port-id-detail", "eth1/0/1"),
                     leaf("hold-time", "120")})),
        YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: " + unsupported)));
}

} // namespace
} // namespace oclldp_test
