// The walker of the LLDP nodes below one native interface, the hooks for nodes of other modules, and the
// callbacks of nodes with nothing to map.
#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::ValuesIn;

const std::string augment = cfg + "augment_lvla_interface_configuration";

class CfgAugment : public OclldpTest {
protected:
    terrno walk(const Node &top, const std::string &ns = native_cfg_ns) {
        tree = std::make_unique<Tree>(top, ns);
        return call(augment, context, *tree);
    }

    Context context;
    std::unique_ptr<Tree> tree;
};

TEST_F(CfgAugment, WalksTransmitAndReceiveAndProducesNothing) {
    EXPECT_EQ(walk(node("lldp").children({node("transmit").children({leaf("disable", "true")}),
                                          node("receive").children({leaf("disable", "true")})})),
              YMAP_OK);
    EXPECT_THAT(steps(fw, false), ElementsAre("push lldp 1", "push transmit 1", "pop transmit",
                                              "push receive 1", "pop receive", "pop lldp"));
    EXPECT_EQ(ends_of(fw, cfg + "duck_map_container"), 3u);
    EXPECT_THAT(fw.started(),
                ElementsAre(augment, cfg + "leaf_lvla_lldp_transmit_disable", "ymap_qd_lldp_tx_man_cb",
                            cfg + "leaf_lvla_lldp_receive_disable", "ymap_qd_lldp_rx_man_cb"));
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(CfgAugment, NamesTheNodeHandedInOnce) {
    walk(node("lldp").children({node("transmit").children({leaf("disable", "true")}), node("receive")}));
    const auto processing = [](const std::string &line) { return line.starts_with("TRC: Processing tag"); };
    std::vector<std::string> debug_log, numbered;
    for (const std::string &line : fw.debug_lines())
        if (processing(line))
            debug_log.push_back(line);
    for (const std::string &line : fw.numbered_lines())
        if (processing(line))
            numbered.push_back(line);
    EXPECT_THAT(debug_log, ElementsAre("TRC: Processing tag 'lldp'"));
    EXPECT_EQ(numbered, debug_log);
}

TEST_F(CfgAugment, CutsTheNumberedLineOfALongTagButNotTheDebugLine) {
    const std::string tag(300, 'x');
    EXPECT_EQ(walk(leaf(tag, "1")), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Processing tag '" + tag + "'"));
    std::vector<std::size_t> lengths;
    for (const LogLine &line : fw.lines) {
        if (line.channel == LogLine::Channel::numbered && line.message.starts_with("Processing tag"))
            lengths.push_back(line.text.size());
    }
    EXPECT_THAT(lengths, ElementsAre(249u));
}

TEST_F(CfgAugment, SkipsAnInterfaceLevelEnable) {
    EXPECT_EQ(walk(node("lldp").children({leaf("enable", "true")})), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Unsupported tag. Ignoring."));
    EXPECT_THAT(fw.started(), ElementsAre(augment));
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(CfgAugment, HandsANodeOfAnotherModuleToTheInterfaceHook) {
    EXPECT_EQ(walk(node("cdp"), foreign_ns), YMAP_OK);
    EXPECT_THAT(fw.started(), ElementsAre(augment, cfg + "lvla_interface_configuration_parse_augments"));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Processing tag 'cdp'"));
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: Unsupported tag. Ignoring.")));
    EXPECT_THAT(steps(fw, false), IsEmpty());
}

TEST_F(CfgAugment, SkipsANodeOfItsOwnModuleThatIsNotLldp) {
    EXPECT_EQ(walk(node("cdp")), YMAP_OK);
    EXPECT_THAT(fw.started(), ElementsAre(augment));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Unsupported tag. Ignoring."));
    EXPECT_THAT(steps(fw, false), IsEmpty());
}

TEST_F(CfgAugment, RefusesANodeWithoutATag) {
    EXPECT_EQ(walk(node("lldp").without_tag()), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(CfgAugment, PrintsNoTagThatIsNotThere) {
    EXPECT_EQ(walk(node("lldp").without_tag(), foreign_ns), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "ERR: Tag name is not available!", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.started(), ElementsAre(augment));
}

TEST_F(CfgAugment, MarksNoErrorNodes) {
    const auto disable = [] {
        return leaf("disable", "true").framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(YFW_NODE_TYPE_ERROR);
    };
    EXPECT_EQ(walk(node("lldp").children({node("transmit").children({disable()})})), YMAP_OK);
    EXPECT_EQ(context.req.request_flags, 0u);
}

TEST_F(CfgAugment, StopsTheOuterLoopAtAFailureBelow) {
    EXPECT_EQ(walk(node("lldp").children({node("transmit").children({leaf("x", "1").without_tag()}),
                                          node("receive").children({leaf("disable", "true")})})),
              YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(steps(fw, false), ElementsAre("push lldp 1", "push transmit 1", "pop transmit", "pop lldp"));
    EXPECT_THAT(fw.started(), ElementsAre(augment));
}

const std::vector<std::string> hooks = {
    "lvla_lldp",
    "lvla_lldp_tlvselect",
    "lvla_lldp_tlvselect_systemname",
    "lvla_lldp_tlvselect_portdescription",
    "lvla_lldp_tlvselect_systemdescription",
    "lvla_lldp_tlvselect_systemcapabilities",
    "lvla_lldp_tlvselect_managementaddress",
    "lvla_interface_configuration",
    "lvlb_lldp",
    "lvla_lldp_transmit",
    "lvla_lldp_receive",
};

class CfgHook : public OclldpTest, public ::testing::WithParamInterface<std::string> {
protected:
    const std::string name = cfg + GetParam() + "_parse_augments";
};

INSTANTIATE_TEST_SUITE_P(Every, CfgHook, ValuesIn(hooks));

TEST_P(CfgHook, AcceptsAndIgnoresANodeEvenOneThatTheRequestAdds) {
    Context context(1);
    fw.is_request_add = true;
    Tree tree(leaf("vendor-leaf", "1"), foreign_ns);
    EXPECT_EQ(call(name, context, tree), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_EQ(context.err_node_name(), std::nullopt);
}

TEST_P(CfgHook, RefusesNullNodesAndRecordsTheErrorPathOnce) {
    Context context;
    Tree tree(leaf("vendor-leaf", "1"), foreign_ns);
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(name, context, tree, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_EQ(fw.error_paths.size(), 2u);
    EXPECT_EQ(ends_of(fw, name), 0u);
}

struct Duck {
    std::string name;
    std::string serves; // the function that implements the name
};

void PrintTo(const Duck &duck, std::ostream *stream) {
    *stream << duck.name;
}

class CfgDuck : public OclldpTest, public ::testing::WithParamInterface<Duck> {};

std::vector<Duck> ducks() {
    std::vector<Duck> all = {{"duck_map_list", "duck_map_list"}, {"duck_map_leaf", "duck_map_leaf"}};
    for (const std::string leaf_name : {"holdtime", "reinit", "extendedshowwidth", "enablesubintf",
                                        "lldpintfenter", "tlvselect_tlvselectenter"})
        all.push_back({"leaf_lvla_lldp_" + leaf_name, "duck_map_leaf"});
    for (const std::string container :
         {"duck_map_container", "cont_lvla_lldp", "cont_lvla_lldp_tlvselect",
          "cont_lvla_lldp_tlvselect_systemname", "cont_lvla_lldp_tlvselect_portdescription",
          "cont_lvla_lldp_tlvselect_systemdescription", "cont_lvla_lldp_tlvselect_systemcapabilities",
          "cont_lvla_lldp_tlvselect_managementaddress", "cont_lvlb_lldp", "cont_lvla_lldp_transmit",
          "cont_lvla_lldp_receive"})
        all.push_back({container, "duck_map_container"});
    return all;
}

INSTANTIATE_TEST_SUITE_P(Every, CfgDuck, ValuesIn(ducks()));

TEST_P(CfgDuck, LeavesOnlyItsExitLineOnBothChannels) {
    Context context;
    Tree tree(leaf("holdtime", "120"), native_cfg_ns);
    const bool container = GetParam().serves == "duck_map_container";
    EXPECT_EQ(container ? plugin->call_container(cfg + GetParam().name, context, tree, 3, &output)
                        : call(cfg + GetParam().name, context, tree),
              YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: End"));
    EXPECT_THAT(steps(fw), ElementsAre(cfg + GetParam().serves + ": End"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

class CfgTraceOnly : public OclldpTest, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, CfgTraceOnly,
                         ValuesIn(std::vector<std::string>{
                             "ymap_qd_lldp_tx_man_cb", "ymap_qd_lldp_rx_man_cb", cfg + "leaf_lvlb_lldp_enable",
                             cfg + "leaf_lvla_lldp_transmit_disable", cfg + "leaf_lvla_lldp_receive_disable"}));

TEST_P(CfgTraceOnly, TracesItsStartAndEndAndProducesNothing) {
    Context context;
    Tree tree(leaf("disable", "true"), native_cfg_ns);
    EXPECT_EQ(call(GetParam(), context, tree), YMAP_OK);
    EXPECT_THAT(messages_of(fw, GetParam()), ElementsAre("Start", "End"));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

TEST_P(CfgTraceOnly, SaysNothingWithBothChannelsClosed) {
    Context context;
    context.ctx.trace_enabled = 0;
    fw.log_traces = fw.log_errors = false;
    Tree tree(leaf("disable", "true"), native_cfg_ns);
    EXPECT_EQ(call(GetParam(), context, tree), YMAP_OK);
    EXPECT_TRUE(fw.lines.empty());
}

} // namespace
} // namespace oclldp_test
