// Every callback without its input node, without its output node and without its context.
#include <gmock/gmock.h>

#include <set>

#include "oclldp_fixture.h"
#include "symbol_files.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const std::string oc = "ymap_oq_oclldp_openconfiglldp_";
const std::string cfg = "ymap_qo_oclldp_tarvoqdethernetlldpcfg_";
const std::string oper = "ymap_qo_oclldp_tarvoqdethernetlldpoper_";
const std::string ifmgr = "ymap_qo_oclldp_tarvoqdifmgrcfg_";

// Hand-written callbacks that log "NULL arguments passed", record no error path and write their exit trace.
bool says_null_arguments(const std::string &name) {
    static const std::set<std::string> names = {oc + "leaf_lvla_lldp_config_enabled",
                                                oc + "leaf_lvla_lldp_config_hellotimer",
                                                oc + "leaf_lvla_lldp_interface_name",
                                                oc + "cont_lvla_lldp_interfaces",
                                                oc + "list_lvla_lldp_interfaces_interface",
                                                "ymap_oc_lldp_suppresstlvadv_manual_cb",
                                                "ymap_oc_interface_enabled_man_cb",
                                                "ymap_qd_custom_tlv_typekey_man_cb",
                                                "ymap_qd_lldp_neighbor_capabilities_man_cb",
                                                "ymap_qd_lldp_tlvselect_manual_cb",
                                                "ymap_qd_lldp_tx_operman_cb",
                                                "ymap_qo_oclldp_intconfig_intname_man",
                                                "oclldp_interface_state_container_populate_man_cb",
                                                oper + "leaf_lvla_lldp_lldporgdeftlventry_oui"};
    return names.contains(name) || name.starts_with(oper + "leaf_lvla_lldp_statistics_");
}

// Callbacks that only trace: they succeed without any node.
bool only_traces(const std::string &name) {
    static const std::set<std::string> names = {oc + "duck_map_list",
                                                oc + "list_lvla_lldp_capabilities_capability",
                                                oper + "cont_lvla_lldp",
                                                oper + "duck_map_list",
                                                oper + "duck_map_leaf",
                                                oper + "list_lvla_lldp_details_detail",
                                                cfg + "duck_map_list",
                                                cfg + "duck_map_leaf",
                                                cfg + "duck_map_container",
                                                cfg + "leaf_lvla_lldp_holdtime",
                                                cfg + "leaf_lvla_lldp_reinit",
                                                cfg + "leaf_lvla_lldp_extendedshowwidth",
                                                cfg + "leaf_lvla_lldp_enablesubintf",
                                                cfg + "leaf_lvla_lldp_lldpintfenter",
                                                cfg + "leaf_lvla_lldp_tlvselect_tlvselectenter"};
    if (names.contains(name) || name.starts_with(cfg + "cont_") || name.starts_with(ifmgr + "duck_"))
        return true;
    // All node callbacks of the interface configuration except the three with a body.
    static const std::set<std::string> with_body = {
        ifmgr + "cont_lvla_interfaceconfigurations",
        ifmgr + "list_lvla_interfaceconfigurations_interfaceconfiguration",
        ifmgr + "leaf_lvla_interfaceconfigurations_interfaceconfiguration_interfacename"};
    const bool node_callback = name.starts_with(ifmgr + "cont_") || name.starts_with(ifmgr + "list_") ||
                               name.starts_with(ifmgr + "leaf_");
    return node_callback && !with_body.contains(name);
}

enum class Missing { input, output };

void PrintTo(Missing missing, std::ostream *stream) {
    *stream << (missing == Missing::input ? "input" : "output");
}

struct Outcome {
    terrno status;
    std::vector<std::string> debug_lines;
    std::vector<std::string> numbered_lines;
    std::size_t error_paths;
    std::size_t adds;
};

// One test runs all callbacks: they share the double, which is reset between calls.
class EveryCallback : public OclldpTest, public ::testing::WithParamInterface<Missing> {
protected:
    Outcome run(const std::string &name, Missing missing, uint32_t kind) {
        Context context(kind);
        Tree in(leaf("a-node", "1"));
        tidl_yfw_datatree *const input =
            missing == Missing::input ? nullptr : static_cast<tidl_yfw_datatree *>(in);
        tidl_yfw_datatree *const out = missing == Missing::output ? nullptr : &output;
        fw.forget_calls();
        const terrno status = is_container_callback(name) ? plugin->call_container(name, context, input, 0, out)
                                                          : plugin->call(name, context, input, out);
        return {status, fw.debug_lines(), fw.numbered_lines(), fw.error_paths.size(), fw.adds.size()};
    }
};

TEST_P(EveryCallback, WithoutANodeAnswersWithItsStatusAndItsLinesOnBothChannels) {
    for (const uint32_t kind : {0u, 10u, 1u}) {
        for (const std::string &name : callback_names()) {
            SCOPED_TRACE(name + " of kind " + std::to_string(kind));
            if (says_null_arguments(name) || only_traces(name))
                continue;
            const Outcome outcome = run(name, GetParam(), kind);
            EXPECT_EQ(outcome.status, YMAP_ERR_INVALID_ARGS);
            // No "End" on this path.
            EXPECT_THAT(outcome.debug_lines, ElementsAre("TRC: Start", "ERR: Invalid arguments passed!"));
            EXPECT_EQ(outcome.numbered_lines, outcome.debug_lines);
            EXPECT_EQ(outcome.error_paths, 1u);
            EXPECT_EQ(outcome.adds, 0u);
        }
    }
}

TEST_P(EveryCallback, ThatSaysNullArgumentsLeavesByTheCommonExitWithoutAnErrorPath) {
    for (const uint32_t kind : {0u, 10u, 1u}) {
        for (const std::string &name : callback_names()) {
            SCOPED_TRACE(name + " of kind " + std::to_string(kind));
            if (!says_null_arguments(name))
                continue;
            const Outcome outcome = run(name, GetParam(), kind);
            EXPECT_EQ(outcome.status, YMAP_ERR_MAP_FAILED);
            EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed"));
            EXPECT_EQ(outcome.debug_lines.front(), "TRC: Start");
            EXPECT_EQ(outcome.debug_lines.back(), "TRC: End");
            EXPECT_EQ(outcome.numbered_lines, outcome.debug_lines);
            EXPECT_EQ(outcome.error_paths, 0u);
            EXPECT_EQ(outcome.adds, 0u);
        }
    }
}

TEST_P(EveryCallback, ThatOnlyTracesSucceedsWithoutANode) {
    for (const std::string &name : callback_names()) {
        SCOPED_TRACE(name);
        if (!only_traces(name))
            continue;
        const Outcome outcome = run(name, GetParam(), YMAP_REQ_GET);
        EXPECT_EQ(outcome.status, YMAP_OK);
        EXPECT_EQ(outcome.debug_lines.back(), "TRC: End");
        EXPECT_EQ(outcome.numbered_lines, outcome.debug_lines);
        EXPECT_THAT(fw.errors(), IsEmpty());
        EXPECT_EQ(outcome.error_paths, 0u);
        EXPECT_EQ(outcome.adds, 0u);
    }
}

INSTANTIATE_TEST_SUITE_P(WithoutItsNode, EveryCallback, ::testing::Values(Missing::input, Missing::output),
                         [](const auto &test) {
                             return test.param == Missing::input ? std::string("Input") : std::string("Output");
                         });

TEST_F(OclldpTest, TheOpenConfigListDuckTracesItsEndOnly) {
    Context context;
    EXPECT_EQ(plugin->call(oc + "duck_map_list", context, nullptr, nullptr), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: End"));
    EXPECT_THAT(fw.numbered_lines(), ElementsAre("TRC: End"));
}

TEST_F(OclldpTest, ANullContextAbortsEveryCallback) {
    GTEST_FLAG_SET(death_test_style, "fast");
    Tree in(leaf("a-node", "1"));
    for (const std::string &name : callback_names()) {
        // The interface mapping answers a NULL context with a status.
        if (name == "ymap_qo_oclldp_ifmgr_intconfig_man")
            continue;
        SCOPED_TRACE(name);
        const auto call_it = [&] {
            if (is_container_callback(name))
                plugin->call_container(name, nullptr, in, 0, &output);
            else
                plugin->call(name, nullptr, in, &output);
        };
        EXPECT_DEATH(call_it(), AllOf(HasSubstr("manageability/yang/framework/mapping/oc-lldp/src/"),
                                      HasSubstr("Assertion `NULL != ctx' failed")));
    }
}

TEST_F(OclldpTest, TheInterfaceMappingAnswersANullContextWithAStatus) {
    Tree in(node("interface-configuration"));
    EXPECT_EQ(plugin->call("ymap_qo_oclldp_ifmgr_intconfig_man", nullptr, in, &output), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.calls, IsEmpty());
}

} // namespace
} // namespace oclldp_test
