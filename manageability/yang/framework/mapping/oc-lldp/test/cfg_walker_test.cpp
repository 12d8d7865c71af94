// The walkers of the native LLDP configuration.
#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::ValuesIn;

// One level of the native tree: the walker that reaches it, the containers between that walker's node and the
// level, and the hook for nodes of other modules.
struct Level {
    std::string label;
    std::string walker;
    std::vector<std::string> path;
    std::string hook;
};

void PrintTo(const Level &level, std::ostream *stream) {
    *stream << level.label;
}

std::vector<Level> levels() {
    const std::string root = cfg + "lvla_lldp";
    const std::string tlvselect = cfg + "lvla_lldp_tlvselect";
    const std::string augment = cfg + "augment_lvla_interface_configuration";
    std::vector<Level> all = {
        {"lldp", root, {"lldp"}, root + "_parse_augments"},
        {"tlv_select", tlvselect, {"tlv-select"}, tlvselect + "_parse_augments"},
        {"tlv_select_from_the_root", root, {"lldp", "tlv-select"}, tlvselect + "_parse_augments"},
        {"interface_lldp", augment, {"lldp"}, cfg + "lvlb_lldp_parse_augments"},
        {"interface_transmit", augment, {"lldp", "transmit"}, root + "_transmit_parse_augments"},
        {"interface_receive", augment, {"lldp", "receive"}, root + "_receive_parse_augments"}};
    for (const std::string tag : {"system-name", "port-description", "system-description",
                                  "system-capabilities", "management-address"}) {
        std::string word = tag;
        word.erase(word.find('-'), 1);
        all.push_back({word, tlvselect, {"tlv-select", tag}, tlvselect + "_" + word + "_parse_augments"});
    }
    return all;
}

std::string label_of(const ::testing::TestParamInfo<Level> &info) {
    return info.param.label;
}

class CfgWalkerLevels : public OclldpTest, public ::testing::WithParamInterface<Level> {
protected:
    // The nodes on the level's path, ending in the given one.
    static Node nest(Node innermost) {
        Node built = std::move(innermost);
        const std::vector<std::string> &path = GetParam().path;
        for (std::size_t above = path.size() - 1; above > 0; --above)
            built = node(path[above - 1]).children({std::move(built)});
        return built;
    }
    static Node innermost() { return node(GetParam().path.back()); }
    // The hierarchy pushes and pops of the path, down to `depth` levels.
    static std::vector<std::string> in_and_out(std::size_t depth) {
        std::vector<std::string> told;
        const std::vector<std::string> &path = GetParam().path;
        for (std::size_t level = 0; level < depth; ++level)
            told.push_back("push " + path[level] + " 1");
        for (std::size_t level = depth; level > 0; --level)
            told.push_back("pop " + path[level - 1]);
        return told;
    }
    terrno walk(Node top) {
        tree = std::make_unique<Tree>(top, native_cfg_ns);
        return call(GetParam().walker, context, *tree);
    }

    Context context;
    std::unique_ptr<Tree> tree;
};

INSTANTIATE_TEST_SUITE_P(Every, CfgWalkerLevels, ValuesIn(levels()), label_of);

TEST_P(CfgWalkerLevels, PushesEachContainerPopsItAgainAndSucceedsWithoutChildren) {
    EXPECT_EQ(walk(nest(innermost())), YMAP_OK);
    EXPECT_THAT(steps(fw, false), ElementsAreArray(in_and_out(GetParam().path.size())));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(CfgWalkerLevels, CallsTheContainerCallbackOfEachContainer) {
    walk(nest(innermost()));
    EXPECT_EQ(ends_of(fw, cfg + "duck_map_container"), GetParam().path.size());
}

TEST_P(CfgWalkerLevels, HandsAChildOfAnotherModuleToTheLevelsHook) {
    EXPECT_EQ(walk(nest(innermost().children({leaf("vendor-leaf", "1").in(foreign_ns)}))), YMAP_OK);
    EXPECT_THAT(fw.started(), Contains(GetParam().hook));
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: Unsupported tag. Ignoring.")));
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_P(CfgWalkerLevels, IgnoresAnUnknownChildOfTheNativeModule) {
    EXPECT_EQ(walk(nest(innermost().children({leaf("unheard-of", "1")}))), YMAP_OK);
    EXPECT_THAT(fw.numbered_lines(), Contains("TRC: Unsupported tag. Ignoring."));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Unsupported tag. Ignoring."));
    EXPECT_THAT(fw.started(), Not(Contains(GetParam().hook)));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_P(CfgWalkerLevels, GoesOnAfterChildrenThatAreNotItsOwn) {
    const auto strangers = [] {
        return std::vector<Node>{leaf("unheard-of", "1"), leaf("vendor-leaf", "1").in(foreign_ns),
                                 leaf("unheard-of", "2"), leaf("vendor-leaf", "2").in(foreign_ns)};
    };
    EXPECT_EQ(walk(nest(innermost().children(strangers()))), YMAP_OK);
    const std::vector<std::string> started = fw.started();
    EXPECT_EQ(std::count(started.begin(), started.end(), GetParam().hook), 2);
    const std::vector<std::string> lines = fw.debug_lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "TRC: Unsupported tag. Ignoring."), 2);
}

TEST_P(CfgWalkerLevels, FailsAtAChildWithoutATagAndPopsAllTheSame) {
    EXPECT_EQ(walk(nest(innermost().children(
                  {leaf("x", "1").without_tag(), leaf("vendor-leaf", "1").in(foreign_ns)}))),
              YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(steps(fw, false), ElementsAreArray(in_and_out(GetParam().path.size())));
    EXPECT_THAT(fw.started(), Not(Contains(GetParam().hook)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(CfgWalkerLevels, FailsWithoutPushingANodeWhoseChildrenAreMissing) {
    EXPECT_EQ(walk(nest(innermost().broken_children(2))), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
    EXPECT_THAT(steps(fw, false), ElementsAreArray(in_and_out(GetParam().path.size() - 1)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(CfgWalkerLevels, TakesAMissingArrayWithACountOfZeroForNoChildren) {
    EXPECT_EQ(walk(nest(innermost().broken_children(0))), YMAP_OK);
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_P(CfgWalkerLevels, LooksAtNoChildrenThatTheFlagDoesNotVouchFor) {
    tree = std::make_unique<Tree>(nest(innermost().children({leaf("x", "1").without_tag()})), native_cfg_ns);
    tidl_yfw_datatree *level = *tree;
    for (std::size_t below = 1; below < GetParam().path.size(); ++below)
        level = &level->children[0];
    level->node_flags = 0;
    EXPECT_EQ(call(GetParam().walker, context, *tree), YMAP_OK);
    EXPECT_THAT(fw.errors(), IsEmpty());
}

class CfgWalker : public OclldpTest {
protected:
    // Walks /lldp with the given children.
    terrno walk(std::vector<Node> children) {
        tree = std::make_unique<Tree>(node("lldp").children(std::move(children)), native_cfg_ns);
        return call(cfg + "lvla_lldp", context, *tree);
    }

    Context context;
    std::unique_ptr<Tree> tree;
};

TEST_F(CfgWalker, TellsItsWholeWalk) {
    const std::string walker = cfg + "lvla_lldp", hook = walker + "_parse_augments",
                      callback = cfg + "leaf_lvla_lldp_enable", duck = cfg + "duck_map_container";
    EXPECT_EQ(walk({leaf("enable", "true"), leaf("vendor-leaf", "1").in(foreign_ns), leaf("holdtime", "9")}),
              YMAP_OK);
    EXPECT_THAT(steps(fw), ElementsAre(walker + ": Start", "push lldp 1", duck + ": End", callback + ": Start",
                                       "add /lldp/config/enabled", "add /lldp/state/enabled",
                                       callback + ": End", hook + ": Start", hook + ": End",
                                       walker + ": Unsupported tag. Ignoring.", "pop lldp", walker + ": End"));
}

struct Dispatch {
    std::string tag;
    std::string callback;
};

void PrintTo(const Dispatch &dispatch, std::ostream *stream) {
    *stream << dispatch.tag;
}

class CfgRootDispatch : public CfgWalker, public ::testing::WithParamInterface<Dispatch> {};

INSTANTIATE_TEST_SUITE_P(EveryLeaf, CfgRootDispatch,
                         ValuesIn(std::vector<Dispatch>{
                             {"timer", "leaf_lvla_lldp_timer"},
                             {"enable", "leaf_lvla_lldp_enable"},
                             {"system-name", "leaf_lvla_lldp_systemname"},
                             {"system-description", "leaf_lvla_lldp_systemdescription"},
                             {"chassis-id", "leaf_lvla_lldp_chassisid"},
                             {"chassis-id-type", "leaf_lvla_lldp_chassisidtype"}}));

TEST_P(CfgRootDispatch, CallsTheLeafCallbackOfTheTag) {
    EXPECT_EQ(walk({leaf(GetParam().tag, "value")}), YMAP_OK);
    EXPECT_THAT(fw.started(), Contains(cfg + GetParam().callback));
}

TEST_P(CfgRootDispatch, GoesByTheTagWhateverTheModule) {
    EXPECT_EQ(walk({leaf(GetParam().tag, "value").in(foreign_ns)}), YMAP_OK);
    EXPECT_THAT(fw.started(), Contains(cfg + GetParam().callback));
    EXPECT_THAT(fw.started(), Not(Contains(cfg + "lvla_lldp_parse_augments")));
}

TEST_P(CfgRootDispatch, StopsAtTheFirstFailureAndPassesItUp) {
    fw.fail("yfw_map_datatree_add_path_flagged", 0, 0x1234);
    EXPECT_EQ(walk({leaf(GetParam().tag, "value"), leaf("enable", "true")}), 0x1234u);
    EXPECT_THAT(steps(fw, false), Contains("pop lldp"));
    const std::vector<std::string> started = fw.started();
    EXPECT_EQ(std::count(started.begin(), started.end(), cfg + "leaf_lvla_lldp_enable"),
              GetParam().tag == "enable" ? 1 : 0);
}

TEST_P(CfgRootDispatch, PassesTheSubtreeDoneStatusUpAsItIs) {
    fw.fail("yfw_map_datatree_add_path_flagged", 0, YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(walk({leaf(GetParam().tag, "value")}), YMAP_STS_SUBTREE_DONE);
}

TEST_P(CfgRootDispatch, MarksAnErrorNodeOfTheFourTextLeavesBeforeItsCallback) {
    const bool marks = GetParam().tag != "enable" && GetParam().tag != "timer";
    std::vector<uint32_t> flags_at_add;
    fw.on_add([&](const Add &) { flags_at_add.push_back(context.req.request_flags); });
    EXPECT_EQ(walk({leaf(GetParam().tag, "value").framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(5)}),
              YMAP_OK);
    EXPECT_EQ(context.req.request_flags, marks ? 0x100u : 0u);
    EXPECT_THAT(flags_at_add, ::testing::AllOf(Not(IsEmpty()), ::testing::Each(context.req.request_flags)));
    const std::vector<std::string> messages = messages_of(fw, cfg + "lvla_lldp");
    EXPECT_EQ(std::count(messages.begin(), messages.end(), "got xpath error node "), marks ? 1 : 0);
    const std::vector<std::string> lines = fw.debug_lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "TRC: got xpath error node "), marks ? 1 : 0);
}

TEST_P(CfgRootDispatch, MarksNothingWithoutBothTheBitAndTheNodeType) {
    EXPECT_EQ(walk({leaf(GetParam().tag, "a").node_type(5),
                    leaf(GetParam().tag, "b").framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(4),
                    leaf(GetParam().tag, "c").framework_flags(0xf7).node_type(5)}),
              YMAP_OK);
    EXPECT_EQ(context.req.request_flags, 0u);
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: got xpath error node ")));
}

TEST_F(CfgWalker, KeepsTheOtherRequestFlagsWhenItMarksAnErrorNode) {
    context.req.request_flags = YFW_REQ_REPLACE_MERGE_PASS;
    EXPECT_EQ(walk({leaf("system-name", "r1").framework_flags(0x1c).node_type(5)}), YMAP_OK);
    EXPECT_EQ(context.req.request_flags, YFW_REQ_REPLACE_MERGE_PASS | YFW_REQ_XPATH_ERROR_NODE);
}

TEST_F(CfgWalker, WalksChildrenInTheOrderOfTheArray) {
    EXPECT_EQ(walk({leaf("chassis-id", "c"), leaf("system-name", "n"), leaf("chassis-id", "d")}), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/config/chassis-id = c", "/lldp/config/system-name = n",
                                           "/lldp/config/chassis-id = d"));
}

TEST_F(CfgWalker, ComparesAChildWithTheTagsInTheirFixedOrder) {
    walk({leaf("unheard-of", "1")});
    std::vector<std::string> tags;
    for (const Call &match : fw.calls_of("yfw_map_do_these_match")) {
        for (const std::string tag : {"tlv-select", "timer", "enable", "system-name", "system-description",
                                      "chassis-id", "chassis-id-type"}) {
            if (match.args == "unheard-of, " + tag || match.args == tag + ", unheard-of")
                tags.push_back(tag);
        }
    }
    EXPECT_THAT(tags, ElementsAre("tlv-select", "timer", "enable", "system-name", "system-description",
                                  "chassis-id", "chassis-id-type"));
}

TEST_F(CfgWalker, SkipsTheSixSettingsWithoutAnOpenConfigCounterpart) {
    EXPECT_EQ(walk({leaf("holdtime", "120"), leaf("reinit", "2"), leaf("extended-show-width", "true"),
                    leaf("enable-subintf", "true"), leaf("lldp-intf-enter", "true"),
                    node("tlv-select").children({leaf("tlv-select-enter", "true")})}),
              YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
    const std::vector<std::string> lines = fw.debug_lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "TRC: Unsupported tag. Ignoring."), 6);
    EXPECT_THAT(fw.started(), Not(Contains(cfg + "duck_map_leaf")));
}

TEST_F(CfgWalker, ReadsAResponseWithOnlyATimerAsEnabled) {
    context.descriptor.req_type = YMAP_REQ_GET_CONFIG;
    context.descriptor.req_selection_empty = 1;
    EXPECT_EQ(walk({leaf("timer", "30")}), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/config/enabled = true", "/lldp/config/hello-timer = 30"));
}

class CfgTlvDispatch : public OclldpTest, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(EveryTlv, CfgTlvDispatch,
                         ValuesIn(std::vector<std::string>{"system-name", "port-description",
                                                           "system-description", "system-capabilities",
                                                           "management-address"}));

TEST_P(CfgTlvDispatch, HandsTheDisableLeafOfTheTlvToItsCallback) {
    Context context;
    std::string word = GetParam();
    word.erase(word.find('-'), 1);
    Tree tree(node("tlv-select").children({node(GetParam()).children({leaf("disable", "true")})}),
              native_cfg_ns);
    EXPECT_EQ(call(cfg + "lvla_lldp_tlvselect", context, tree), YMAP_OK);
    EXPECT_THAT(fw.started(), Contains(cfg + "leaf_lvla_lldp_" + word + "_disable"));
    EXPECT_THAT(fw.started(), Contains("ymap_qd_lldp_tlvselect_manual_cb"));
}

TEST_P(CfgTlvDispatch, PassesTheFailureOfTheDisableLeafUpThroughBothLevels) {
    Context context;
    fw.fail("yfw_map_get_node_info", 5, 0x77);
    Tree tree(node("lldp").children({node("tlv-select")
                                         .children({node(GetParam()).children({leaf("disable", "true")}),
                                                    leaf("unheard-of", "1")}),
                                     leaf("enable", "true")}),
              native_cfg_ns);
    EXPECT_EQ(call(cfg + "lvla_lldp", context, tree), 0x77u);
    EXPECT_THAT(steps(fw, false), ElementsAre("push lldp 1", "push tlv-select 1", "push " + GetParam() + " 1",
                                              "pop " + GetParam(), "pop tlv-select", "pop lldp"));
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: Unsupported tag. Ignoring.")));
}

} // namespace
} // namespace oclldp_test
