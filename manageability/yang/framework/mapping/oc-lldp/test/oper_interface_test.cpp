// Native interface entries: the OpenConfig entry keyed by name, and its state.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::Range;
using ::testing::SizeIs;
using ::testing::Values;

const std::string list_callback = "list_lvla_lldp_interfaces_interface";
const std::string populate = "oclldp_interface_state_container_populate_man_cb";
const std::string stats_path = native_interface + "/interface-stats";
constexpr std::size_t state_adds = 10;

class OperInterface : public OperTest {
protected:
    OperInterface() {
        answer(native_interface, "tx-enabled", "1");
        answer(native_interface, "rx-enabled", "1");
        const std::vector<std::string> counters = {
            "received-packets", "transmitted-packets", "bad-packets",       "discarded-packets",
            "discarded-tl-vs",  "unrecognized-tl-vs",  "transmit-failures", "last-clear"};
        for (std::size_t index = 0; index < counters.size(); ++index)
            answer(stats_path, counters[index], std::to_string(100 + index));
    }

    terrno run_populate() {
        trees.emplace_back(std::make_unique<Tree>(node("interface"), native_oper_ns));
        return call(populate, context, *trees.back());
    }
    std::string enabled_value() const {
        for (const Add &add : fw.adds) {
            if (add.path == oc_interface + "/state/enabled")
                return add.value.value_or("(none)");
        }
        return "(no add)";
    }
};

// ---- the list callback -------------------------------------------------------------------------------

TEST_F(OperInterface, FindsOrMakesTheEntryThatIsKeyedByTheName) {
    answer(native_interface, "interface-name", "eth1/0/1");
    EXPECT_EQ(run(list_callback, node("interface")), YMAP_OK);
    ASSERT_THAT(fw.searches, SizeIs(1));
    EXPECT_EQ(fw.searches[0].parent, &output);
    EXPECT_EQ(fw.searches[0].slot, &context.req.output_list.current_list_node);
    EXPECT_EQ(fw.searches[0].list_path, oc_interface);
    EXPECT_EQ(fw.searches[0].key_value, "eth1/0/1");
    EXPECT_EQ(fw.searches[0].key_name, "name");
    EXPECT_EQ(fw.searches[0].ns, oc_ns);
}

TEST_F(OperInterface, ReadsTheKeyThenSearchesThenFillsTheStateOfTheEntryFound) {
    EXPECT_EQ(run(list_callback, node("interface")), YMAP_OK);
    const std::vector<Call> calls = fw.mapping_calls();
    ASSERT_GE(calls.size(), 2u);
    EXPECT_EQ(calls[0], (Call{"yfw_map_get_node_info", native_interface + ", interface-name"}));
    EXPECT_EQ(calls[1], (Call{"yfw_map_search_or_add_list", oc_interface + ", eth1, name"}));
    EXPECT_EQ(fw.started(), (std::vector<std::string>{oper + list_callback, populate}));
    ASSERT_THAT(fw.adds, SizeIs(state_adds));
    EXPECT_NE(context.req.output_list.current_list_node, nullptr);
    EXPECT_THAT(fw.adds, Each(Field(&Add::parent, context.req.output_list.current_list_node)));
}

TEST_F(OperInterface, ReturnsTheStatusOfTheState) {
    fw.fail(add_path, state_adds, 0x4321);
    EXPECT_EQ(run(list_callback, node("interface")), 0x4321u);
}

TEST_F(OperInterface, ThatCannotBeFoundOrMadePassesTheStatusUpWithoutState) {
    fw.fail("yfw_map_search_or_add_list", 1, 0x55);
    EXPECT_EQ(run(list_callback, node("interface")), 0x55u);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(OperInterface, OfAnotherKindOfRequestGetsItsEntryWithNothingUnderIt) {
    for (const uint32_t kind : {0u, 1u, 8u, 15u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        context.descriptor.req_type = kind;
        EXPECT_EQ(run(list_callback, node("interface")), YMAP_OK);
        EXPECT_THAT(fw.searches, SizeIs(1));
        EXPECT_THAT(fw.adds, IsEmpty());
    }
}

TEST_F(OperInterface, WithoutANameIsAFailedMapping) {
    answer(native_interface, "interface-name", std::nullopt);
    EXPECT_EQ(run(list_callback, node("interface")), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.searches, IsEmpty());
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
    EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
}

TEST_F(OperInterface, WhoseNameCannotBeReadIsAFailedMapping) {
    fw.fail("yfw_map_get_node_info", 1, 0x99);
    EXPECT_EQ(run(list_callback, node("interface")), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.searches, IsEmpty());
}

TEST_F(OperInterface, WithoutARequestContextIsAFailedMapping) {
    context->req_ctx = nullptr;
    EXPECT_EQ(run(list_callback, node("interface")), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.searches, IsEmpty());
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(OperInterface, WithoutANameEndsTheWalkOfAllInterfaces) {
    answer(native_interface, "interface-name", std::nullopt);
    const Node entry = node("interface").children({leaf("interface-name", "eth1")});
    EXPECT_EQ(walk(node("lldp").children({node("nodes").children(
                  {node("node").children({node("interfaces").children({entry, entry})})})})),
              YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(count_of(hierarchy(fw), "push interface 2"), 1u);
    EXPECT_THAT(fw.adds, IsEmpty());
}

class OperInterfaceDelete : public OperInterface, public ::testing::WithParamInterface<uint32_t> {
protected:
    Node deleted() const { return node("interface").operation(GetParam()); }
};

INSTANTIATE_TEST_SUITE_P(DeleteAndRemove, OperInterfaceDelete, Values(YFW_OP_DELETE, YFW_OP_REMOVE));

TEST_P(OperInterfaceDelete, AddsTheEntryWithTheNativeOneAsItsSourceAndCopiesThePathList) {
    EXPECT_EQ(run(list_callback, deleted()), YMAP_OK);
    ASSERT_THAT(fw.adds, SizeIs(1));
    const Add &add = fw.adds[0];
    EXPECT_EQ(summary(add), oc_interface);
    EXPECT_EQ(add.ns, oc_ns);
    EXPECT_EQ(add.parent, &output);
    EXPECT_EQ(add.source, static_cast<tidl_yfw_datatree *>(*trees.back()));
    EXPECT_EQ(add.slot, &context.req.output_list.current_list_node);
    EXPECT_EQ(add.list_entry, 1u);
    EXPECT_EQ(add.flags, 0u);
    EXPECT_THAT(fw.mapping_calls(),
                ElementsAre(Field(&Call::operation, "yfw_map_get_node_info"), Field(&Call::operation, add_path),
                            Call{"yfw_map_copy_trim_path_list_ctx", oc_interface}));
}

TEST_P(OperInterfaceDelete, PassesTheStatusOfEitherOperationUp) {
    for (const std::string &operation : {add_path, std::string("yfw_map_copy_trim_path_list_ctx")}) {
        SCOPED_TRACE(operation);
        fw.fail(operation, 1, 0x1234);
        EXPECT_EQ(run(list_callback, deleted()), 0x1234u);
    }
}

TEST_P(OperInterfaceDelete, WithoutANameIsAFailedMappingToo) {
    answer(native_interface, "interface-name", std::nullopt);
    EXPECT_EQ(run(list_callback, deleted()), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_P(OperInterfaceDelete, NeitherSearchesNorFillsTheState) {
    run(list_callback, deleted());
    EXPECT_THAT(fw.searches, IsEmpty());
    EXPECT_THAT(fw.started(), Not(Contains(populate)));
}

// ---- the state ---------------------------------------------------------------------------------------

TEST_F(OperInterface, StateReadsElevenLeavesOfTheEntryInHand) {
    EXPECT_EQ(run_populate(), YMAP_OK);
    std::vector<std::string> read;
    for (const Call &call : fw.calls_of("yfw_map_get_node_info"))
        read.push_back(call.args);
    EXPECT_THAT(read, ElementsAre(native_interface + ", interface-name", native_interface + ", tx-enabled",
                                  native_interface + ", rx-enabled", stats_path + ", received-packets",
                                  stats_path + ", transmitted-packets", stats_path + ", bad-packets",
                                  stats_path + ", discarded-packets", stats_path + ", discarded-tl-vs",
                                  stats_path + ", unrecognized-tl-vs", stats_path + ", transmit-failures",
                                  stats_path + ", last-clear"));
}

TEST_F(OperInterface, StateIsAddedInOrderWithTheRawValues) {
    EXPECT_EQ(run_populate(), YMAP_OK);
    const std::string state = oc_interface + "/state/", counters = state + "counters/";
    EXPECT_THAT(summaries(fw), ElementsAre(state + "name = eth1", state + "enabled = true",
                                           counters + "frame-in = 100", counters + "frame-out = 101",
                                           counters + "frame-error-in = 102", counters + "frame-discard = 103",
                                           counters + "tlv-discard = 104", counters + "tlv-unknown = 105",
                                           counters + "frame-error-out = 106", counters + "last-clear = 107"));
}

TEST_F(OperInterface, StateIsAddedUnderTheEntryWithTheInterfaceStateFlag) {
    EXPECT_EQ(run_populate(), YMAP_OK);
    EXPECT_THAT(fw.adds,
                Each(AllOf(Field(&Add::ns, oc_ns), Field(&Add::parent, &output), Field(&Add::flags, 32u),
                           Field(&Add::list_entry, 0u), Field(&Add::source, nullptr))));
}

TEST_F(OperInterface, StateLeavesAbsentValuesOut) {
    fw.node_info.clear();
    EXPECT_EQ(run_populate(), YMAP_OK);
    const std::string state = oc_interface + "/state/", counters = state + "counters/";
    EXPECT_THAT(summaries(fw),
                ElementsAre(state + "name", state + "enabled = true", counters + "frame-in",
                            counters + "frame-out", counters + "frame-error-in", counters + "frame-discard",
                            counters + "tlv-discard", counters + "tlv-unknown", counters + "frame-error-out",
                            counters + "last-clear"));
}

TEST_F(OperInterface, StateIsAddedForAGetOnly) {
    for (const uint32_t kind : {0u, 1u, 8u, 9u, 11u, 15u}) {
        SCOPED_TRACE(kind);
        context.descriptor.req_type = kind;
        EXPECT_EQ(run_populate(), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
    }
}

TEST_F(OperInterface, StateTellsWhatItReadAndWhatItSet) {
    answer(native_interface, "tx-enabled", "0");
    answer(native_interface, "rx-enabled", "0");
    EXPECT_EQ(run_populate(), YMAP_OK);
    EXPECT_THAT(
        fw.debug_lines(),
        ElementsAre("TRC: Start",
                    "TRC: OCLLDP: get-oper int enabled reverse map:intf-name eth1 tx-enabled 0 rx-enabled 0",
                    "TRC: OCLLDP: lldp_enabled false lldp_en_fl false",
                    // The missing space and the misspelling are intentional.
                    "TRC: OCLLDP: rev map state/enebled set tointf_name eth1 enabled false", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperInterface, StateRejectsAMissingNodeOrEntryWithoutAnErrorPath) {
    Tree native(node("interface"), native_oper_ns);
    EXPECT_EQ(plugin->call(populate, context, nullptr, &output), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(plugin->call(populate, context, native, nullptr), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed", "NULL arguments passed"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

class OperInterfaceStateAdd : public OperInterface, public ::testing::WithParamInterface<unsigned> {};

INSTANTIATE_TEST_SUITE_P(EachFailingInTurn, OperInterfaceStateAdd, Range(1u, unsigned{state_adds} + 1));

TEST_P(OperInterfaceStateAdd, CountsForTheStatusOnlyWhenItIsTheLast) {
    fw.fail(add_path, GetParam(), 0x77);
    EXPECT_EQ(run_populate(), GetParam() == state_adds ? 0x77u : 0u);
    EXPECT_THAT(fw.adds, SizeIs(state_adds));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

struct EnabledCase {
    std::optional<std::string> tx;
    std::optional<std::string> rx;
    std::string enabled;
};

void PrintTo(const EnabledCase &enabled, std::ostream *stream) {
    *stream << "tx " << enabled.tx.value_or("absent") << ", rx " << enabled.rx.value_or("absent");
}

class OperInterfaceEnabled : public OperInterface, public ::testing::WithParamInterface<EnabledCase> {};

INSTANTIATE_TEST_SUITE_P(Every, OperInterfaceEnabled,
                         Values(EnabledCase{"0", "0", "false"}, EnabledCase{"0", "1", "true"},
                                EnabledCase{"1", "0", "true"}, EnabledCase{"1", "1", "true"},
                                EnabledCase{"0", std::nullopt, "true"}, EnabledCase{std::nullopt, "0", "true"},
                                EnabledCase{"1", std::nullopt, "true"}, EnabledCase{std::nullopt, "1", "true"},
                                EnabledCase{std::nullopt, std::nullopt, "true"}, EnabledCase{"00", "0", "true"},
                                EnabledCase{"0", "false", "true"}, EnabledCase{"", "0", "true"},
                                EnabledCase{"0", "0 ", "true"}));

TEST_P(OperInterfaceEnabled, IsFalseOnlyWhenBothDirectionsAreZero) {
    answer(native_interface, "tx-enabled", GetParam().tx);
    answer(native_interface, "rx-enabled", GetParam().rx);
    EXPECT_EQ(run_populate(), YMAP_OK);
    EXPECT_EQ(enabled_value(), GetParam().enabled);
}

// ---- the transmit callback ----------------------------------------------------------------------------

TEST_F(OperInterface, TransmitCallbackOnlyTraces) {
    Tree native(leaf("rx-enabled", "1"), native_oper_ns);
    EXPECT_EQ(call("ymap_qd_lldp_tx_operman_cb", context, native), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OperInterface, TransmitCallbackRejectsMissingArgumentsWithoutAnErrorPath) {
    Tree native(leaf("rx-enabled", "1"), native_oper_ns);
    EXPECT_EQ(plugin->call("ymap_qd_lldp_tx_operman_cb", context, nullptr, &output), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(plugin->call("ymap_qd_lldp_tx_operman_cb", context, native, nullptr), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed", "NULL arguments passed"));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// The walk writes the raw seconds first and the timestamp later, to the same leaf.
TEST_F(OperInterface, LastClearOfTheWalkEndsAsATimestamp) {
    fw.wall_clock = {1'700'000'000, 0};
    EXPECT_EQ(run("lvla_lldp_interfaces_interface",
                  node("interface").children({node("interface-stats").children({leaf("last-clear", "107")})})),
              YMAP_OK);
    std::vector<std::string> values;
    for (const Add &add : fw.adds) {
        if (add.path == oc_interface + "/state/counters/last-clear")
            values.push_back(add.value.value_or("(none)"));
    }
    EXPECT_THAT(values, ElementsAre("107", ::testing::MatchesRegex("2023-11-1[45]T.*")));
}

} // namespace
} // namespace oclldp_test
