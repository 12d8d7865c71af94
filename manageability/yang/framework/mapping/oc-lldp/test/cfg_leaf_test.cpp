// The leaf callbacks of the native LLDP configuration: what each writes for which request, and how failures
// propagate.
#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::ValuesIn;

// A native leaf with a value, and what its callback writes under config and under state.
struct Member {
    std::string leaf;
    std::string tag;
    std::string value;
    std::vector<std::string> config;
    std::vector<std::string> state;
};

void PrintTo(const Member &member, std::ostream *stream) {
    *stream << member.leaf;
}

std::vector<Member> members() {
    return {
        {"enable", "enable", "true", {"/lldp/config/enabled = true"}, {"/lldp/state/enabled = true"}},
        {"enable", "enable", "false", {"/lldp/config/enabled = false"}, {"/lldp/state/enabled = false"}},
        {"timer",
         "timer",
         "45",
         {"/lldp/config/enabled = true", "/lldp/config/hello-timer = 45"},
         {"/lldp/state/enabled = true", "/lldp/state/hello-timer = 45"}},
        {"systemname", "system-name", "Edge-1 ü", {"/lldp/config/system-name = Edge-1 ü"}, {}},
        {"systemdescription",
         "system-description",
         "one\ntwo",
         {"/lldp/config/system-description = one\ntwo"},
         {}},
        {"chassisid", "chassis-id", "00:11:22:aa:bb:cc", {"/lldp/config/chassis-id = 00:11:22:aa:bb:cc"}, {}},
        {"chassisidtype",
         "chassis-id-type",
         "mac-address",
         {"/lldp/config/chassis-id-type = MAC_ADDRESS"},
         {}}};
}

class CfgLeaf : public OclldpTest, public ::testing::WithParamInterface<Member> {
protected:
    const std::string name = cfg + "leaf_lvla_lldp_" + GetParam().leaf;

    terrno map(Context &context) {
        tree = std::make_unique<Tree>(leaf(GetParam().tag, GetParam().value), native_cfg_ns);
        return call(name, context, *tree);
    }
    // What is written when both copies are wanted.
    static std::vector<std::string> everything() {
        std::vector<std::string> wanted = GetParam().config;
        wanted.insert(wanted.end(), GetParam().state.begin(), GetParam().state.end());
        return wanted;
    }
    static Selection all() { return {.kind = YMAP_REQ_GET, .selection_empty = 1, .content = 0}; }

    std::unique_ptr<Tree> tree;
};

INSTANTIATE_TEST_SUITE_P(Every, CfgLeaf, ValuesIn(members()));

TEST_P(CfgLeaf, WritesConfigAndStateAsTheRequestWantsThem) {
    for (const Selection &selection : every_selection()) {
        SCOPED_TRACE(::testing::PrintToString(selection));
        fw.forget_calls();
        Context context;
        selection.apply(context);
        std::vector<std::string> wanted;
        if (selection.wants_config())
            wanted = GetParam().config;
        if (selection.wants_state())
            wanted.insert(wanted.end(), GetParam().state.begin(), GetParam().state.end());
        EXPECT_EQ(map(context), YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAreArray(wanted));
        EXPECT_THAT(fw.adds, Each(IsPlainAddTo(&output)));
    }
}

TEST_P(CfgLeaf, NeedsNoSlotForWhatItAdds) {
    Context context;
    all().apply(context);
    map(context);
    EXPECT_THAT(fw.adds, AllOf(::testing::Not(IsEmpty()), Each(::testing::Field(&Add::slot_given, false))));
}

TEST_P(CfgLeaf, TracesTheSameStoryOnBothChannels) {
    Context context;
    map(context);
    EXPECT_EQ(messages_of(fw, name).front(), "Start");
    EXPECT_EQ(messages_of(fw, name).back(), "End");
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
}

TEST_P(CfgLeaf, RefusesNullNodesWithoutAnExitLine) {
    Context context;
    Tree in(leaf(GetParam().tag, "1"), native_cfg_ns);
    for (const bool without_input : {true, false}) {
        fw.forget_calls();
        EXPECT_EQ(plugin->call(name, context, without_input ? nullptr : in.operator->(),
                               without_input ? &output : nullptr),
                  YMAP_ERR_INVALID_ARGS);
        EXPECT_THAT(messages_of(fw, name), ElementsAre("Start", "Invalid arguments passed!"));
        EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
        EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!"));
        EXPECT_EQ(fw.error_paths.size(), 1u);
        EXPECT_TRUE(fw.adds.empty());
    }
}

// Only the status of the last add counts; an earlier failure neither stops the callback nor is reported.
TEST_P(CfgLeaf, ReturnsTheStatusOfItsLastAddWhicheverFails) {
    const std::vector<std::string> wanted = everything();
    for (unsigned failing = 1; failing <= wanted.size(); ++failing) {
        SCOPED_TRACE("add " + std::to_string(failing));
        fw.forget_calls();
        fw.fail("yfw_map_datatree_add_path_flagged", failing, 0x4400 + failing);
        Context context;
        all().apply(context);
        EXPECT_EQ(map(context), failing == wanted.size() ? 0x4400 + failing : YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAreArray(wanted));
        EXPECT_TRUE(fw.error_paths.empty());
    }
}

TEST_P(CfgLeaf, KeepsTheConfigAddsStatusWhenNoStateIsWanted) {
    Context context;
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 1, .content = 0}.apply(context);
    fw.fail("yfw_map_datatree_add_path_flagged", static_cast<unsigned>(GetParam().config.size()), 0x99);
    EXPECT_EQ(map(context), 0x99u);
}

TEST_P(CfgLeaf, SucceedsWithNothingToWrite) {
    Context context;
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 0, .content = 2}.apply(context);
    fw.fail("yfw_map_datatree_add_path_flagged", 0, 0x99);
    EXPECT_EQ(map(context), YMAP_OK);
    EXPECT_TRUE(fw.adds.empty());
}

TEST_P(CfgLeaf, LeavesNoFrameworkStringBehind) {
    Context context;
    map(context);
    EXPECT_EQ(fw.live_strings(), 0u);
    EXPECT_EQ(context.err_node_name(), std::nullopt);
}

TEST_P(CfgLeaf, AddsALeafWithoutAValueAsItIs) {
    Context context;
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 1, .content = 0}.apply(context);
    Tree in(node(GetParam().tag), native_cfg_ns);
    EXPECT_EQ(call(name, context, in), YMAP_OK);
    ASSERT_FALSE(fw.adds.empty());
    EXPECT_EQ(fw.adds.back().value, std::nullopt);
}

struct Spelling {
    std::string native;
    std::string identity;
};

class CfgChassisIdType : public OclldpTest, public ::testing::WithParamInterface<Spelling> {};

INSTANTIATE_TEST_SUITE_P(Every, CfgChassisIdType,
                         ValuesIn(std::vector<Spelling>{{"chassis-component", "CHASSIS_COMPONENT"},
                                                        {"interface-alias", "INTERFACE_ALIAS"},
                                                        {"port-component", "PORT_COMPONENT"},
                                                        {"mac-address", "MAC_ADDRESS"},
                                                        {"network-address", "NETWORK_ADDRESS"},
                                                        {"interface-name", "INTERFACE_NAME"},
                                                        {"local", "LOCAL"},
                                                        {"a1_b.C", "A1_B.C"},
                                                        {"", ""}}));

TEST_P(CfgChassisIdType, IsSpeltAsAnIdentity) {
    Context context;
    Tree in(leaf("chassis-id-type", GetParam().native), native_cfg_ns);
    EXPECT_EQ(call(cfg + "leaf_lvla_lldp_chassisidtype", context, in), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/config/chassis-id-type = " + GetParam().identity));
}

TEST_P(CfgChassisIdType, TakesOneSlotOfTheRing) {
    Context context;
    Tree in(leaf("chassis-id-type", GetParam().native), native_cfg_ns);
    call(cfg + "leaf_lvla_lldp_chassisidtype", context, in);
    EXPECT_EQ(plugin->ring_index(), 1);
}

TEST_F(OclldpTest, AChassisIdTypeWithoutAValueIsAddedWithoutOneAfterTheConversionComplained) {
    Context context;
    Tree in(node("chassis-id-type"), native_cfg_ns);
    EXPECT_EQ(call(cfg + "leaf_lvla_lldp_chassisidtype", context, in), YMAP_OK);
    EXPECT_THAT(fw.errors(), ElementsAre("OCLLDP: QD2OC data null"));
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/config/chassis-id-type"));
}

TEST_F(OclldpTest, AChassisIdTypeIsNotConvertedOnceTheRingIsCorrupted) {
    Context context;
    plugin->ring_index() = 64;
    Tree in(leaf("chassis-id-type", "local"), native_cfg_ns);
    EXPECT_EQ(call(cfg + "leaf_lvla_lldp_chassisidtype", context, in), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAre("/lldp/config/chassis-id-type"));
    EXPECT_EQ(plugin->ring_index(), 0);
}

// The request's content selector only counts if the request has selection parameters.
TEST_F(OclldpTest, AContentSelectorWithoutSelectionParametersHidesNothing) {
    Context context(YMAP_REQ_GET_CONFIG);
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 7, .content = 2}.apply(context);
    Tree in(leaf("system-name", "r1"), native_cfg_ns);
    EXPECT_EQ(call(cfg + "leaf_lvla_lldp_systemname", context, in), YMAP_OK);
    EXPECT_THAT(summaries(fw), Contains("/lldp/config/system-name = r1"));
}

} // namespace
} // namespace oclldp_test
