// What lies below a native interface entry: its inline containers, the list of MTUs, the LLDP nodes that
// another module adds, and the top-level node that no tree registers.
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

const std::string root_walker = ifmgr + "lvla_interfaceconfigurations";
const std::string global_walker = ifmgr + "lvla_globalinterfaceconfiguration";
const std::string list_path = "/interface-configurations/interface-configuration";
const std::string entry_hook = root_walker + "_interfaceconfiguration_parse_augments";
const std::string lldp_augment = cfg + "augment_lvla_interface_configuration";

// A level of the tree: the walker that reaches it, the nodes between the walker's node and the level, and the
// hook for nodes of other modules.
struct Level {
    std::string label;
    std::string walker;
    std::vector<std::string> path;
    std::string hook;
};

void PrintTo(const Level &level, std::ostream *stream) {
    *stream << level.label;
}

std::string label_of(const ::testing::TestParamInfo<Level> &level) {
    return level.param.label;
}

bool is_list(const std::string &tag) {
    return tag == "interface-configuration" || tag == "mtu";
}

class IfmgrLevels : public OclldpTest, public ::testing::WithParamInterface<Level> {
protected:
    IfmgrLevels() { fw.node_info[{list_path, "interface-name"}] = {.value = "Gi1", .status = 0}; }

    // Walks the level's path with the given node at its end.
    terrno walk(Node innermost) {
        Node built = std::move(innermost);
        const std::vector<std::string> &path = GetParam().path;
        for (std::size_t above = path.size() - 1; above > 0; --above)
            built = node(path[above - 1]).children({std::move(built)});
        tree = std::make_unique<Tree>(built, native_ifmgr_ns);
        return call(GetParam().walker, context, *tree);
    }
    static Node innermost() { return node(GetParam().path.back()); }
    std::vector<std::string> hierarchy() const {
        std::vector<std::string> told;
        for (const std::string &step : steps(fw, false)) {
            if (step.starts_with("push") || step.starts_with("pop"))
                told.push_back(step);
        }
        return told;
    }
    static std::vector<std::string> in_and_out(std::size_t depth) {
        std::vector<std::string> told;
        const std::vector<std::string> &path = GetParam().path;
        for (std::size_t level = 0; level < depth; ++level)
            told.push_back("push " + path[level] + (is_list(path[level]) ? " 2" : " 1"));
        for (std::size_t level = depth; level > 0; --level)
            told.push_back("pop " + path[level - 1]);
        return told;
    }

    Context context;
    std::unique_ptr<Tree> tree;
};

INSTANTIATE_TEST_SUITE_P(Every, IfmgrLevels,
                         ValuesIn(std::vector<Level>{
                             {"interface_configurations",
                              root_walker,
                              {"interface-configurations"},
                              root_walker + "_parse_augments"},
                             {"interface_configuration",
                              root_walker,
                              {"interface-configurations", "interface-configuration"},
                              entry_hook},
                             {"dampening",
                              root_walker,
                              {"interface-configurations", "interface-configuration", "dampening"},
                              root_walker + "_interfaceconfiguration_dampening_parse_augments"},
                             {"mtus",
                              root_walker,
                              {"interface-configurations", "interface-configuration", "mtus"},
                              root_walker + "_interfaceconfiguration_mtus_parse_augments"},
                             {"mtu",
                              root_walker,
                              {"interface-configurations", "interface-configuration", "mtus", "mtu"},
                              root_walker + "_mtus_mtu_parse_augments"},
                             {"encapsulation",
                              root_walker,
                              {"interface-configurations", "interface-configuration", "encapsulation"},
                              root_walker + "_interfaceconfiguration_encapsulation_parse_augments"},
                             {"global_interface_configuration",
                              global_walker,
                              {"global-interface-configuration"},
                              global_walker + "_parse_augments"}}),
                         label_of);

TEST_P(IfmgrLevels, HandsAChildOfAnotherModuleToTheLevelsHook) {
    EXPECT_EQ(walk(innermost().children({leaf("vendor-leaf", "1").in(foreign_ns)})), YMAP_OK);
    const std::vector<std::string> started = fw.started();
    EXPECT_EQ(std::count(started.begin(), started.end(), GetParam().hook), 1);
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: Unsupported tag. Ignoring.")));
    EXPECT_THAT(hierarchy(), ElementsAreArray(in_and_out(GetParam().path.size())));
}

TEST_P(IfmgrLevels, IgnoresAnUnknownChildOfTheNativeModuleAndGoesOn) {
    EXPECT_EQ(walk(innermost().children({leaf("unheard-of", "1"), leaf("vendor-leaf", "1").in(foreign_ns)})),
              YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Unsupported tag. Ignoring."));
    EXPECT_THAT(fw.numbered_lines(), Contains("TRC: Unsupported tag. Ignoring."));
    EXPECT_THAT(fw.started(), Contains(GetParam().hook));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_P(IfmgrLevels, FailsAtAChildWithoutATagAndPopsAllTheSame) {
    EXPECT_EQ(
        walk(innermost().children({leaf("x", "1").without_tag(), leaf("vendor-leaf", "1").in(foreign_ns)})),
        YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(hierarchy(), ElementsAreArray(in_and_out(GetParam().path.size())));
    EXPECT_THAT(fw.started(), Not(Contains(GetParam().hook)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(IfmgrLevels, FailsWithoutPushingANodeWhoseChildrenAreMissing) {
    EXPECT_EQ(walk(innermost().broken_children(2)), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
    EXPECT_THAT(hierarchy(), ElementsAreArray(in_and_out(GetParam().path.size() - 1)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(IfmgrLevels, AcceptsAndIgnoresWhatItsHookIsGiven) {
    context.descriptor.req_type = 1;
    fw.is_request_add = true;
    Tree stranger(leaf("vendor-leaf", "1"), foreign_ns);
    EXPECT_EQ(call(GetParam().hook, context, stranger), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

TEST_P(IfmgrLevels, RefusesNullNodesInItsHook) {
    Tree stranger(leaf("vendor-leaf", "1"), foreign_ns);
    EXPECT_EQ(plugin->call(GetParam().hook, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(GetParam().hook, context, stranger, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
    EXPECT_EQ(ends_of(fw, GetParam().hook), 0u);
}

// ---- below an entry

class IfmgrEntry : public OclldpTest {
protected:
    IfmgrEntry() { fw.node_info[{list_path, "interface-name"}] = {.value = "Gi1", .status = 0}; }

    terrno walk(std::vector<Node> children, bool with_another = false) {
        std::vector<Node> entries = {node("interface-configuration").children(std::move(children))};
        if (with_another)
            entries.push_back(node("interface-configuration").children({leaf("interface-name", "Gi1")}));
        tree = std::make_unique<Tree>(node("interface-configurations").children(std::move(entries)),
                                      native_ifmgr_ns);
        return call(root_walker, context, *tree);
    }
    // The walk between the entry's insertion in the output list and its pop.
    std::vector<std::string> told() const {
        const std::vector<std::string> all = steps(fw, false);
        const auto from = std::find(all.begin(), all.end(), "list+ interface-configuration");
        return {from + 1, std::find(from, all.end(), "pop interface-configuration")};
    }

    Context context;
    std::unique_ptr<Tree> tree;
};

TEST_F(IfmgrEntry, WalksAnMtuLikeAListEntryWithADoNothingCallback) {
    fw.on_call("yfw_add_to_output_list_ctx", [this](const Call &) { ++context.req.output_list.depth; });
    EXPECT_EQ(walk({node("mtus").children(
                  {node("mtu").children({leaf("owner", "ethernet"), leaf("mtu", "1514")}), node("mtu")})}),
              YMAP_OK);
    const std::string current = "current " + list_path + "/mtus/mtu";
    EXPECT_THAT(told(), ElementsAre("push mtus 1", "push mtu 2", current, "list+ mtu", "pop mtu", "list- mtu",
                                    "push mtu 2", current, "list+ mtu", "pop mtu", "list- mtu", "pop mtus"));
    EXPECT_EQ(ends_of(fw, ifmgr + "duck_map_list"), 2u);
    EXPECT_THAT(fw.errors(), ElementsAre("No keys specified with a list node."));
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(IfmgrEntry, KeepsAnMtuThatTheOutputListDidNotTake) {
    EXPECT_EQ(walk({node("mtus").children({node("mtu").children({leaf("owner", "ethernet")})})}), YMAP_OK);
    EXPECT_THAT(told(), ElementsAre("push mtus 1", "push mtu 2", "current " + list_path + "/mtus/mtu",
                                    "list+ mtu", "pop mtu", "pop mtus"));
}

TEST_F(IfmgrEntry, TurnsAnMtuThatIsDoneIntoSuccess) {
    fw.fail("yfw_map_update_current_list_node", 2, YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(walk({node("mtus").children({node("mtu"), node("mtu")}), leaf("vendor", "1").in(foreign_ns)}),
              YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_map_update_current_list_node"), SizeIs(3));
    EXPECT_THAT(fw.started(), Contains(entry_hook));
}

TEST_F(IfmgrEntry, PassesTheFailureOfAnMtuUpAfterThePops) {
    fw.on_call("yfw_add_to_output_list_ctx", [this](const Call &call) {
        if (call.args.starts_with("interface-configuration"))
            ++context.req.output_list.depth;
    });
    fw.fail("yfw_map_update_current_list_node", 2, 0x61);
    EXPECT_EQ(
        walk({node("mtus").children({node("mtu"), node("mtu")}), leaf("vendor", "1").in(foreign_ns)}, true),
        0x61u);
    std::vector<std::string> after = steps(fw, false);
    after.erase(after.begin(), std::find(after.begin(), after.end(), "pop mtu"));
    EXPECT_THAT(after, ElementsAre("pop mtu", "pop mtus", "pop interface-configuration",
                                   "list- interface-configuration", "pop interface-configurations"));
    EXPECT_EQ(ends_of(fw, ifmgr + "duck_map_list"), 0u);
    EXPECT_THAT(fw.started(), Not(Contains(entry_hook)));
}

TEST_F(IfmgrEntry, CallsADoNothingCallbackForEachInlineContainer) {
    EXPECT_EQ(walk({node("dampening").children({leaf("half-life", "1")}), node("mtus"), node("encapsulation")}),
              YMAP_OK);
    EXPECT_THAT(told(), ElementsAre("push dampening 1", "pop dampening", "push mtus 1", "pop mtus",
                                    "push encapsulation 1", "pop encapsulation"));
    EXPECT_EQ(ends_of(fw, ifmgr + "duck_map_container"), 3u);
}

TEST_F(IfmgrEntry, SkipsTheSettingsWithoutAnOpenConfigCounterpart) {
    EXPECT_EQ(walk({leaf("active", "act"), leaf("bandwidth", "1"), leaf("description", "x"),
                    leaf("interface-mode-non-physical", "x"), leaf("interface-virtual", ""),
                    leaf("link-status", ""), leaf("secondary-admin-state", "x"), leaf("shutdown", "")}),
              YMAP_OK);
    const std::vector<std::string> lines = fw.debug_lines();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), "TRC: Unsupported tag. Ignoring."), 8);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(IfmgrEntry, HandsTheGraftedLldpNodesToTheirOwnWalker) {
    EXPECT_EQ(walk({leaf("interface-name", "Gi1"),
                    node("lldp")
                        .children({leaf("enable", "true"), node("transmit").children({leaf("disable", "true")}),
                                   node("receive").children({leaf("disable", "true")})})
                        .in(native_cfg_ns)}),
              YMAP_OK);
    EXPECT_THAT(told(), ElementsAre("push lldp 1", "push transmit 1", "pop transmit", "push receive 1",
                                    "pop receive", "pop lldp"));
    std::vector<std::string> started = fw.started();
    started.erase(started.begin(), std::find(started.begin(), started.end(), entry_hook));
    EXPECT_THAT(started, ElementsAre(entry_hook, lldp_augment, cfg + "leaf_lvla_lldp_transmit_disable",
                                     "ymap_qd_lldp_tx_man_cb", cfg + "leaf_lvla_lldp_receive_disable",
                                     "ymap_qd_lldp_rx_man_cb"));
}

TEST_F(IfmgrEntry, ReturnsTheResultOfTheGraftedNodesWalker) {
    Tree grafted(node("lldp").broken_children(1), native_cfg_ns);
    EXPECT_EQ(call(entry_hook, context, grafted), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.started(), ElementsAre(entry_hook, lldp_augment));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: Processing tag 'lldp'"));
}

TEST_F(IfmgrEntry, EndsTheWalkAtAFailureOfTheGraftedNodes) {
    EXPECT_EQ(walk({node("lldp").broken_children(1).in(native_cfg_ns), leaf("interface-name", "Gi1")}, true),
              YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.calls_of("yfw_map_update_current_list_node"), SizeIs(1));
}

TEST_F(IfmgrEntry, MapsNoChildOfTheGlobalInterfaceConfiguration) {
    Tree global(node("global-interface-configuration").children({leaf("link-status", "x")}), native_ifmgr_ns);
    EXPECT_EQ(call(global_walker, context, global), YMAP_OK);
    EXPECT_THAT(messages_of(fw, global_walker), ElementsAre("Start", "Unsupported tag. Ignoring.", "End"));
    EXPECT_EQ(ends_of(fw, ifmgr + "duck_map_container"), 1u);
    EXPECT_THAT(fw.adds, IsEmpty());
}

// ---- nodes with nothing to map

struct Duck {
    std::string name;
    std::string serves; // the function that implements the name
};

void PrintTo(const Duck &duck, std::ostream *stream) {
    *stream << duck.name;
}

std::vector<Duck> ducks() {
    std::vector<Duck> all;
    const auto add = [&all](const std::string &prefix, const std::vector<std::string> &names,
                            const std::string &serves) {
        for (const std::string &name : names)
            all.push_back({prefix + name, serves});
    };
    add("", {"duck_map_container"}, "duck_map_container");
    add("", {"duck_map_list"}, "duck_map_list");
    add("", {"duck_map_leaf"}, "duck_map_leaf");
    add("cont_lvla_", {"globalinterfaceconfiguration"}, "duck_map_container");
    add("cont_lvla_interfaceconfigurations_interfaceconfiguration_", {"dampening", "mtus", "encapsulation"},
        "duck_map_container");
    add("list_lvla_interfaceconfigurations_mtus_", {"mtu"}, "duck_map_list");
    add("leaf_lvla_interfaceconfigurations_interfaceconfiguration_",
        {"active", "bandwidth", "description", "interfacemodenonphysical", "interfacevirtual", "linkstatus",
         "secondaryadminstate", "shutdown"},
        "duck_map_leaf");
    add("leaf_lvla_interfaceconfigurations_dampening_",
        {"args", "halflife", "restartpenalty", "reusethreshold", "suppressthreshold", "suppresstime"},
        "duck_map_leaf");
    add("leaf_lvla_interfaceconfigurations_encapsulation_", {"encapsulation", "capsulationoptions"},
        "duck_map_leaf");
    add("leaf_lvla_interfaceconfigurations_mtu_", {"mtu", "owner"}, "duck_map_leaf");
    add("leaf_lvla_globalinterfaceconfiguration_", {"linkstatus"}, "duck_map_leaf");
    return all;
}

class IfmgrDuck : public OclldpTest, public ::testing::WithParamInterface<Duck> {};

INSTANTIATE_TEST_SUITE_P(Every, IfmgrDuck, ValuesIn(ducks()));

TEST_P(IfmgrDuck, TracesUnderTheNameOfItsKindAndProducesNothing) {
    Context context;
    Tree in(leaf("shutdown", ""), native_ifmgr_ns);
    const bool is_container = GetParam().serves == "duck_map_container";
    EXPECT_EQ(is_container ? plugin->call_container(ifmgr + GetParam().name, context, in, 2, &output)
                           : call(ifmgr + GetParam().name, context, in),
              YMAP_OK);
    EXPECT_EQ(messages_of(fw, ifmgr + GetParam().serves).back(), "End");
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

} // namespace
} // namespace oclldp_test
