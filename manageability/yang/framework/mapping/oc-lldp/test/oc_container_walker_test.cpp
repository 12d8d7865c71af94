// How an OpenConfig container is walked: hierarchy, walk flags, replace, callbacks that end a walk, the
// child loop, and the mapping of whole containers.
#include <gmock/gmock.h>

#include <algorithm>

#include "oc_walker_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::IsSupersetOf;
using ::testing::Not;
using ::testing::SizeIs;

const std::string system_name = oq("lvla_lldp_config_systemname");
const std::string chassis_id = oq("lvla_lldp_config_chassisid");

// The leaf walkers of "config", in the order in which mapping it whole calls them.
std::vector<std::string> all_config_leaves() {
    std::vector<std::string> walkers;
    for (const WalkerChild &child : walker_table()[1].children)
        walkers.push_back(child.walker);
    return walkers;
}

class ContainerWalker : public OcWalkerTest {
protected:
    ContainerWalker() { fw.sysdb_items["enable"] = {.value = 1}; }

    std::vector<std::string> config_leaves_entered() const {
        const std::vector<std::string> all = all_config_leaves();
        std::vector<std::string> kept;
        for (const std::string &function : entered()) {
            if (std::find(all.begin(), all.end(), function) != all.end())
                kept.push_back(function);
        }
        return kept;
    }
};

// ---- hierarchy and walk flags ----------------------------------------------------------------------

class Hierarchy : public ContainerWalker, public ::testing::WithParamInterface<uint32_t> {
protected:
    Context context{GetParam()};
    Tree tree{node("config").children({node("system-name")})};
};

TEST_P(Hierarchy, HoldsTheContainerWhileItIsWalked) {
    std::vector<std::string> at_the_leaf;
    when(system_name, "Start", [&] { at_the_leaf = hierarchy(); });
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(at_the_leaf, ElementsAre("+config, 1"));
    EXPECT_THAT(hierarchy(), ElementsAre("+config, 1", "-config"));
    EXPECT_EQ(tree->hierarchy_marker, YFW_MARKER_CONTAINER);
    EXPECT_EQ(tree->framework_flags, YFW_FW_HAS_MARKER);
}

TEST_P(Hierarchy, IsLeftAloneWhileAWholeSubtreeIsMapped) {
    context.req.map_all = 1;
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(hierarchy(), IsEmpty());
    EXPECT_EQ(tree->hierarchy_marker, 0u);
    EXPECT_EQ(tree->framework_flags, 0u);
    EXPECT_EQ(context.req.map_all, 1u);
}

INSTANTIATE_TEST_SUITE_P(OfEachKind, Hierarchy, ::testing::Values(0u, 10u, plain_edit));

struct WalkFlags {
    uint32_t kind;
    uint32_t map_all;
    uint32_t before;
    uint32_t after;
};

class WalkFlagsAtEntry : public ContainerWalker, public ::testing::WithParamInterface<WalkFlags> {};

TEST_P(WalkFlagsAtEntry, AreMaskedInAReadOnly) {
    Context context(GetParam().kind);
    context.req.map_all = GetParam().map_all;
    context.req.walk_flags = GetParam().before;
    Tree tree(node("config").children({leaf("colour", "blue").in(foreign_ns)}));
    fw.is_request_add = false;
    uint32_t at_the_child = 0;
    when(config_walker + "_parse_augments", "Start", [&] { at_the_child = context.req.walk_flags; });
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_EQ(at_the_child, GetParam().after);
}

// The mask keeps the lowest bit of every hexadecimal digit but the last.
INSTANTIATE_TEST_SUITE_P(OfAContainer, WalkFlagsAtEntry,
                         ::testing::Values(WalkFlags{0, 0, 0xffffffff, 0x11111110},
                                           WalkFlags{10, 0, 0xffffffff, 0x11111110},
                                           WalkFlags{10, 0, 0x10007, 0x10000},
                                           WalkFlags{plain_edit, 0, 0xffffffff, 0xffffffff},
                                           WalkFlags{10, 1, 0xfffffffe, 0xfffffffe}));

// ---- does the node have children? ------------------------------------------------------------------

TEST_F(ContainerWalker, WithoutTheChildrenValidFlagANodeHasNoChildren) {
    Context context(plain_edit);
    Tree tree(node("config").children({leaf("system-name", "r1")}));
    tree->node_flags = 0;
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(config_leaves_entered(), IsEmpty());
}

TEST_F(ContainerWalker, InAWholeSubtreeThatIsForcedANodeHasNoChildren) {
    Context context(YMAP_REQ_GET);
    context.req.map_all = 1;
    context.req.walk_flags = YFW_WALK_WHOLE_SUBTREE;
    Tree tree(node("config").children({node("system-name")}));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_EQ(config_leaves_entered(), all_config_leaves());
}

TEST_F(ContainerWalker, TellsTheCallbackHowManyChildrenItWillWalk) {
    Context context(YMAP_REQ_GET_CONFIG);
    Tree with(node("interfaces").children({node("interface")}));
    EXPECT_EQ(call(interfaces_walker, context, with), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Mapping done for this node"));
    fw.forget_calls();
    Tree without(node("interfaces"));
    EXPECT_EQ(call(interfaces_walker, context, without), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: No subtrees"));
}

// ---- replace ---------------------------------------------------------------------------------------

struct Seen {
    std::string path;
    uint32_t request_flags;
    uint32_t replace_marker;
    uint32_t operation;
    bool changed;
    bool has_children;

    bool operator==(const Seen &) const = default;
};

void PrintTo(const Seen &seen, std::ostream *stream) {
    *stream << seen.path << " flags " << seen.request_flags << " marker " << seen.replace_marker
            << " operation " << seen.operation << (seen.changed ? " changed" : "")
            << (seen.has_children ? " children" : "");
}

class Replace : public ContainerWalker {
protected:
    Replace() {
        fw.on_add([this](const Add &add) {
            seen.push_back({add.path, context.req.request_flags, context.req.replace_marker, tree->operation,
                            (tree->node_flags & YFW_NODE_OPERATION_CHANGED) != 0,
                            (tree->node_flags & YFW_NODE_CHILDREN_VALID) != 0 && tree->children != nullptr &&
                                tree->child_count == 2});
        });
    }

    static Seen removed(const std::string &path) {
        return {path, YFW_REQ_REPLACE_DELETE_PASS, 1, YFW_OP_REMOVE, true, false};
    }
    static Seen merged(const std::string &path) {
        return {path, YFW_REQ_REPLACE_MERGE_PASS, 1, YFW_OP_NONE, true, true};
    }

    Context context{YMAP_REQ_EDIT_ONE_KEY};
    Tree tree{node("config")
                  .operation(YFW_OP_REPLACE)
                  .children({leaf("system-name", "r1"), leaf("chassis-id", "7")})};
    std::vector<Seen> seen;
};

TEST_F(Replace, RemovesTheWholeContainerFirstAndThenMergesTheChildren) {
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(seen, ElementsAre(removed("/lldp"), removed("/lldp/timer"),
                                  removed("/lldp/tlv-select/tlv-select-enter"), removed("/lldp/tlv-select"),
                                  removed("/lldp/system-name"), removed("/lldp/system-description"),
                                  removed("/lldp/chassis-id"), removed("/lldp/chassis-id-type"),
                                  merged("/lldp/system-name"), merged("/lldp/chassis-id")));
}

TEST_F(Replace, CallsAllLeafCallbacksInTheFirstPassAndTheNamedOnesInTheSecond) {
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    std::vector<std::string> expected = all_config_leaves();
    expected.push_back(system_name);
    expected.push_back(chassis_id);
    EXPECT_EQ(config_leaves_entered(), expected);
}

TEST_F(Replace, LeavesTheNodeAMergeWithItsChildrenAndTheRequestAsItWas) {
    const tidl_yfw_datatree *const children = tree->children;
    context.req.request_flags = 0x100;
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_EQ(tree->operation, YFW_OP_NONE);
    EXPECT_EQ(tree->node_flags, YFW_NODE_OPERATION_CHANGED | YFW_NODE_CHILDREN_VALID);
    EXPECT_EQ(tree->children, children);
    EXPECT_EQ(tree->child_count, 2u);
    EXPECT_EQ(context.req.request_flags, 0x100u);
    EXPECT_EQ(context.req.replace_marker, 0u);
    EXPECT_EQ(context.req.map_all, 0u);
    EXPECT_THAT(hierarchy(), ElementsAre("+config, 1", "-config"));
}

TEST_F(Replace, RunsTheContainersCallbackInEachPass) {
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    std::vector<std::string> callbacks;
    for (const std::string &function : entered()) {
        if (function == oq("duck_map_container"))
            callbacks.push_back(function);
    }
    EXPECT_THAT(callbacks, SizeIs(2));
}

// ---- a replace that fails --------------------------------------------------------------------------

// YMAP_STS_SUBTREE_DONE has its meaning only as a node callback's answer.
class FailingReplace : public Replace, public ::testing::WithParamInterface<terrno> {
protected:
    void expect_the_request_as_it_was() {
        EXPECT_EQ(tree->operation, YFW_OP_NONE);
        EXPECT_NE(tree->children, nullptr);
        EXPECT_EQ(tree->child_count, 2u);
        EXPECT_EQ(context.req.request_flags, 0u);
        EXPECT_EQ(context.req.replace_marker, 0u);
        EXPECT_EQ(left().back(), config_walker);
        EXPECT_THAT(hierarchy(), ElementsAre("+config, 1", "-config"));
    }
};

TEST_P(FailingReplace, DoesNotMergeAfterTheFrameworkRefusedToRemove) {
    fw.fail("yfw_map_datatree_add_path_flagged", 2, GetParam());
    EXPECT_EQ(call(config_walker, context, tree), GetParam());
    EXPECT_THAT(seen, Each(Field(&Seen::request_flags, static_cast<uint32_t>(YFW_REQ_REPLACE_DELETE_PASS))));
    expect_the_request_as_it_was();
}

TEST_P(FailingReplace, EndsWhereTheFrameworkRefusedToMerge) {
    fw.fail("yfw_map_datatree_add_path_flagged", 9, GetParam()); // the first add of the merge
    EXPECT_EQ(call(config_walker, context, tree), GetParam());
    EXPECT_THAT(seen, SizeIs(9));
    expect_the_request_as_it_was();
}

INSTANTIATE_TEST_SUITE_P(WithAStatusOfTheFramework, FailingReplace,
                         ::testing::Values(0x77u, YMAP_STS_SUBTREE_DONE));

// ---- callbacks that end a walk ---------------------------------------------------------------------

class DeletedInterfaces : public ContainerWalker {
protected:
    Context context{plain_edit};
    Tree tree{node("interfaces").operation(YFW_OP_DELETE)};
};

TEST_F(DeletedInterfaces, AreDoneWhenTheCallbackSaysSo) {
    EXPECT_EQ(call(interfaces_walker, context, tree), YMAP_OK);
    EXPECT_THAT(entered(), ElementsAre(interfaces_walker, oq("cont_lvla_lldp_interfaces"),
                                       std::string("oc_to_qd_lldp_interface_delete")));
    // The walker writes no exit trace.
    EXPECT_THAT(left(), Not(Contains(interfaces_walker)));
    EXPECT_THAT(hierarchy(), ElementsAre("+interfaces, 1", "-interfaces"));
}

TEST_F(DeletedInterfaces, LeaveTheHierarchyAloneWhileAWholeSubtreeIsMapped) {
    context.req.map_all = 1;
    EXPECT_EQ(call(interfaces_walker, context, tree), YMAP_OK);
    EXPECT_THAT(hierarchy(), IsEmpty());
}

TEST_F(ContainerWalker, DoesNotWalkTheChildrenWhenTheCallbackFails) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x77);
    Tree tree(node("interfaces").children({node("interface")}));
    EXPECT_EQ(call(interfaces_walker, context, tree), 0x77u);
    EXPECT_THAT(entered(), ElementsAre(interfaces_walker, oq("cont_lvla_lldp_interfaces")));
    EXPECT_EQ(left().back(), interfaces_walker);
    EXPECT_THAT(hierarchy(), ElementsAre("+interfaces, 1", "-interfaces"));
}

// ---- the child loop --------------------------------------------------------------------------------

TEST_F(ContainerWalker, WalksChildrenInTheirOwnOrder) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("config").children({node("chassis-id"), node("system-name"), node("chassis-id")}));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(config_leaves_entered(), ElementsAre(chassis_id, system_name, chassis_id));
}

TEST_F(ContainerWalker, StopsAtTheFirstChildThatFails) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x77);
    Tree tree(node("config").children({node("system-name"), node("chassis-id")}));
    EXPECT_EQ(call(config_walker, context, tree), 0x77u);
    EXPECT_THAT(config_leaves_entered(), ElementsAre(system_name));
    EXPECT_EQ(left().back(), config_walker);
    EXPECT_THAT(hierarchy(), ElementsAre("+config, 1", "-config"));
    // The framework reported the failure; nothing is added on the way up.
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(ContainerWalker, PassesAStatusThroughAllLevels) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x77);
    Tree tree(node("lldp").children({node("config").children({node("system-name")}), node("interfaces")}));
    EXPECT_EQ(call(root_walker, context, tree), 0x77u);
    EXPECT_THAT(hierarchy(), ElementsAre("+lldp, 1", "+config, 1", "-config", "-lldp"));
}

TEST_F(ContainerWalker, PassesTheFrameworksSubtreeDoneThroughAllLevels) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, YMAP_STS_SUBTREE_DONE);
    Tree tree(node("lldp").children({node("config").children({node("system-name")}), node("interfaces")}));
    EXPECT_EQ(call(root_walker, context, tree), YMAP_STS_SUBTREE_DONE);
    EXPECT_THAT(hierarchy(), ElementsAre("+lldp, 1", "+config, 1", "-config", "-lldp"));
    EXPECT_THAT(left(), AllOf(Contains(config_walker), Contains(root_walker)));
}

TEST_F(ContainerWalker, PassesTheFrameworksSubtreeDoneUpWhenItMapsTheWholeTree) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, YMAP_STS_SUBTREE_DONE);
    Tree tree(node("lldp"));
    EXPECT_EQ(call(root_walker, context, tree), YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(config_leaves_entered(), all_config_leaves());
    EXPECT_EQ(left().back(), root_walker);
}

// The callback's answer counts, wherever it has it from.
TEST_F(ContainerWalker, EndsInSuccessWhenTheCallbackPassesSubtreeDoneOn) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, YMAP_STS_SUBTREE_DONE);
    Tree tree(node("interfaces").children({node("interface")}));
    EXPECT_EQ(call(interfaces_walker, context, tree), YMAP_OK);
    EXPECT_THAT(entered(), ElementsAre(interfaces_walker, oq("cont_lvla_lldp_interfaces")));
    EXPECT_THAT(left(), Not(Contains(interfaces_walker)));
    EXPECT_THAT(hierarchy(), ElementsAre("+interfaces, 1", "-interfaces"));
}

TEST_F(ContainerWalker, GoesOnAfterAnUnsupportedTagInARead) {
    Context context(YMAP_REQ_GET_CONFIG);
    Tree tree(node("config").children({node("colour"), node("system-name")}));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(config_leaves_entered(), ElementsAre(system_name));
}

TEST_F(ContainerWalker, StopsAtAnUnsupportedTagInAnEdit) {
    Context context(plain_edit);
    Tree tree(node("config").children({node("colour"), leaf("system-name", "r1")}));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(config_leaves_entered(), IsEmpty());
    EXPECT_THAT(fw.adds, IsEmpty());
}

// ---- content match ---------------------------------------------------------------------------------

struct Selection {
    const char *name;
    std::vector<Node> children;
    bool whole;
    uint32_t walk_flags; // afterwards
};

void PrintTo(const Selection &selection, std::ostream *stream) {
    *stream << selection.name;
}

class ContentMatch : public ContainerWalker, public ::testing::WithParamInterface<Selection> {};

TEST_P(ContentMatch, AloneSelectsTheWholeContainer) {
    for (const uint32_t kind : {0u, 10u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        Context context(kind);
        Tree tree(node("config").children(GetParam().children));
        EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
        std::vector<std::string> expected;
        for (const Node &child : GetParam().children)
            expected.push_back(*child.name == "system-name" ? system_name : chassis_id);
        if (GetParam().whole) {
            const auto all = all_config_leaves();
            expected.insert(expected.end(), all.begin(), all.end());
        }
        EXPECT_EQ(config_leaves_entered(), expected);
        EXPECT_EQ(context.req.walk_flags, GetParam().walk_flags);
        EXPECT_EQ(context.req.map_all, 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(
    OfLeaves, ContentMatch,
    ::testing::Values(
        Selection{"OneMatch", {match("system-name", "r1")}, true, 0x10000},
        Selection{"TwoMatches", {match("system-name", "r1"), match("chassis-id", "7")}, true, 0x10000},
        Selection{"MatchThenSelection", {match("system-name", "r1"), node("chassis-id")}, false, 0x10006},
        Selection{"SelectionThenMatch", {node("chassis-id"), match("system-name", "r1")}, false, 0x10006},
        Selection{"OneSelection", {node("chassis-id")}, false, 0x2}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(ContainerWalker, AContentMatchLeafIsAFilterOfTheNativeRead) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("config").children({match("system-name", "r1")}));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_EQ(fw.adds.front().path, "/lldp/system-name");
    EXPECT_EQ(fw.adds.front().value, "r1");
}

// ---- whole containers ------------------------------------------------------------------------------

TEST_F(ContainerWalker, MapsTheWholeTreeWithMapAllSetThroughout) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("lldp"));
    std::vector<uint32_t> seen;
    for (const std::string &walker : {config_walker, interfaces_walker, oq("lvla_lldp_state"), system_name,
                                      oq("lvla_lldp_state_counters"), interface_walker})
        when(walker, "Start", [&] { seen.push_back(context.req.map_all); });
    call(root_walker, context, tree);
    EXPECT_THAT(seen, AllOf(SizeIs(6), Each(1u)));
    EXPECT_EQ(context.req.map_all, 0u);
    EXPECT_THAT(hierarchy(), ElementsAre("+lldp, 1", "-lldp"));
}

TEST_F(ContainerWalker, KeepsMapAllThatAnOuterWalkerHasSet) {
    Context context(YMAP_REQ_GET);
    context.req.map_all = 1;
    Tree tree(node("config"));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_EQ(config_leaves_entered(), all_config_leaves());
    EXPECT_EQ(context.req.map_all, 1u);
}

TEST_F(ContainerWalker, CallsEveryChildOfAWholeContainerAndReturnsTheFirstFailure) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 2, 0x77);
    fw.fail("yfw_map_datatree_add_path_flagged", 4, 0x88);
    Tree tree(node("config"));
    EXPECT_EQ(call(config_walker, context, tree), 0x77u);
    EXPECT_EQ(config_leaves_entered(), all_config_leaves());
    EXPECT_EQ(entered().back(), config_walker + "_parse_augments");
}

TEST_F(ContainerWalker, MapsTheStateOfAWholeReadAlthoughATlvTypeIsNotMapped) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("lldp"));
    EXPECT_EQ(call(root_walker, context, tree), YMAP_STS_NO_MAPPING);
    EXPECT_THAT(fw.add_paths(), IsSupersetOf({"/lldp/global-lldp/lldp-info/system-name",
                                              "/lldp/nodes/node/statistics/last-clear"}));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(ContainerWalker, EndsTheChildLoopAtALeafThatIsNotMapped) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("state").children({node("type"), node("oui")}));
    EXPECT_EQ(call(oq("lvla_lldp_tlv_state"), context, tree), YMAP_STS_NO_MAPPING);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(entered(), Not(Contains(oq("lvla_lldp_state_oui"))));
}

TEST_F(ContainerWalker, MapsNothingOfAnEditWithoutChildren) {
    Context context(plain_edit);
    Tree tree(node("config"));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
}

class WholeDelete : public ContainerWalker, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(WholeDelete, RemovesEveryLeafAndRestoresTheOperation) {
    Context context(plain_edit);
    Tree tree(node("config").operation(GetParam()));
    std::vector<uint32_t> operations;
    std::vector<const tidl_yfw_datatree *> sources;
    fw.on_add([&](const Add &add) {
        operations.push_back(tree->operation);
        if (add.source != nullptr)
            sources.push_back(add.source);
    });
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(fw.add_paths(), ElementsAre("/lldp", "/lldp/timer", "/lldp/tlv-select/tlv-select-enter",
                                            "/lldp/tlv-select", "/lldp/system-name", "/lldp/system-description",
                                            "/lldp/chassis-id", "/lldp/chassis-id-type"));
    EXPECT_THAT(operations, Each(YFW_OP_REMOVE));
    EXPECT_THAT(sources, Each(static_cast<const tidl_yfw_datatree *>(tree)));
    EXPECT_EQ(tree->operation, GetParam());
}

INSTANTIATE_TEST_SUITE_P(OfAContainer, WholeDelete, ::testing::Values(YFW_OP_DELETE, YFW_OP_REMOVE));

TEST_F(ContainerWalker, MarksTheOperationOfADeletedContainerAsChanged) {
    Context context(plain_edit);
    Tree tree(node("config").operation(YFW_OP_DELETE));
    std::vector<int> flags;
    fw.on_add([&](const Add &) { flags.push_back(tree->node_flags & YFW_NODE_OPERATION_CHANGED); });
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(flags, Each(YFW_NODE_OPERATION_CHANGED));
}

TEST_F(ContainerWalker, DeletesNamedChildrenOnly) {
    Context context(plain_edit);
    Tree tree(
        node("config").operation(YFW_OP_DELETE).children({leaf("system-name", "r1").operation(YFW_OP_DELETE)}));
    EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
    EXPECT_THAT(fw.add_paths(), ElementsAre("/lldp/system-name"));
}

} // namespace
} // namespace oclldp_test
