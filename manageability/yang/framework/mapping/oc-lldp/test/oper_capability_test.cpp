// A neighbor's capabilities: the identities of the bits, what is added for each, and the request's filter.
#include <cstdlib>
#include <cstring>

#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Range;
using ::testing::SizeIs;
using ::testing::Values;

// By bit number.
const std::vector<std::string> names = {"OTHER",  "REPEATER",  "MAC_BRIDGE",           "WLAN_ACCESS_POINT",
                                        "ROUTER", "TELEPHONE", "DCOS_IS_CABLE_DEVICE", "STATION_ONLY"};
const std::string capability = oc_neighbor + "/capabilities/capability";
const std::string native_mib = native_neighbor + "/mib";

std::string word(uint32_t system, uint32_t enabled) {
    return std::to_string((uint64_t{system} << 16) | enabled);
}

class OperCapability : public OperTest {
protected:
    // The context owns what is left of the filter.
    ~OperCapability() override { fw.forget_string(filter); }
    terrno map(const std::string &combined) {
        answer(native_mib, "combined-capabilities", combined);
        return run_leaf("mib_combinedcapabilities", combined);
    }
    // Makes the request name one capability; the double notices when the text is freed.
    void request_capability(const char *name) {
        filter = static_cast<char *>(std::calloc(1, 255));
        std::strcpy(filter, name);
        context.req.common_data_ptr = filter;
        fw.strings[filter] = "requested capability";
    }
    bool filter_is_freed() const {
        return context.req.common_data_ptr == nullptr && !fw.is_live_string(filter);
    }
    static std::vector<std::string> expected(uint32_t system, uint32_t enabled) {
        std::vector<std::string> adds;
        for (std::size_t bit = 0; bit < names.size(); ++bit) {
            if ((system >> bit & 1) == 0)
                continue;
            adds.push_back(capability);
            adds.push_back(capability + "/name = " + names[bit]);
            adds.push_back(capability + "/state/name = " + names[bit]);
            adds.push_back(capability + "/state/enabled = " + ((enabled >> bit & 1) != 0 ? "true" : "false"));
        }
        return adds;
    }

    char *filter = nullptr;
};

// ---- what is added ---------------------------------------------------------------------------------------

class OperCapabilityBit : public OperCapability, public ::testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(Every, OperCapabilityBit, Range(0, 8));

TEST_P(OperCapabilityBit, BecomesOneCapabilityThatIsEnabledOrNot) {
    const uint32_t bit = 1u << GetParam();
    for (const uint32_t enabled : {0u, bit, 0xffffu, 0xffffu & ~bit}) {
        SCOPED_TRACE(enabled);
        fw.forget_calls();
        EXPECT_EQ(map(word(bit, enabled)), YMAP_OK);
        EXPECT_EQ(summaries(fw), expected(bit, enabled));
    }
}

TEST_P(OperCapabilityBit, TellsThePeersCapabilityAndWhetherItIsEnabled) {
    const uint32_t bit = 1u << GetParam();
    const std::string &name = names[static_cast<std::size_t>(GetParam())];
    EXPECT_EQ(map(word(bit, bit)), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: OCLLDP: Peer capability name " + name));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: OCLLDP cap enabled value true"));
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: OCLLDP cap_name " + name));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_F(OperCapability, EveryCombinationIsAddedInTheOrderOfTheBits) {
    for (uint32_t system = 0; system < 256; ++system) {
        const uint32_t enabled = (system * 7 + 3) & 0xff;
        SCOPED_TRACE(word(system, enabled));
        fw.reset();
        answer_for_the_device();
        EXPECT_EQ(map(word(system, enabled)), YMAP_OK);
        EXPECT_EQ(summaries(fw), expected(system, enabled));
    }
}

TEST_F(OperCapability, BridgeAndRouterBothEnabled) {
    EXPECT_EQ(map("1310740"), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x14, 0x14));
}

TEST_F(OperCapability, BridgeEnabledAndRouterNot) {
    EXPECT_EQ(map("1310724"), YMAP_OK);
    EXPECT_THAT(summaries(fw),
                ElementsAre(capability, capability + "/name = MAC_BRIDGE",
                            capability + "/state/name = MAC_BRIDGE", capability + "/state/enabled = true",
                            capability, capability + "/name = ROUTER", capability + "/state/name = ROUTER",
                            capability + "/state/enabled = false"));
}

TEST_F(OperCapability, AddsCarryTheListEntryFlags) {
    EXPECT_EQ(map(word(0x04, 0)), YMAP_OK);
    ASSERT_THAT(fw.adds, SizeIs(4));
    EXPECT_THAT(fw.adds, Each(Field(&Add::ns, oc_ns)));
    EXPECT_THAT(fw.adds, Each(Field(&Add::parent, &output)));
    EXPECT_THAT(fw.adds, Each(Field(&Add::source, nullptr)));
    std::vector<std::pair<uint32_t, uint32_t>> flags;
    for (const Add &add : fw.adds)
        flags.emplace_back(add.list_entry, add.flags);
    EXPECT_THAT(flags, ElementsAre(std::pair{1u, 1u}, std::pair{1u, 1u}, std::pair{1u, 0u}, std::pair{0u, 0u}));
}

TEST_F(OperCapability, NamesAreIdentitiesOfTheTypesModule) {
    EXPECT_EQ(map(word(0x11, 0x10)), YMAP_OK);
    for (const Add &add : fw.adds) {
        SCOPED_TRACE(summary(add));
        if (!add.path.ends_with("/name"))
            continue;
        ASSERT_NE(add.node, nullptr);
        EXPECT_STREQ(add.node->value_ns, oc_types_ns);
        EXPECT_TRUE(fw.is_live_string(add.node->value_ns));
        EXPECT_NE(add.node->framework_flags & YFW_FW_HAS_VALUE_NS, 0u);
    }
}

TEST_F(OperCapability, NamesWithoutMemoryForTheirModuleAreNotMarkedAsIdentities) {
    fw.fail("yfw_strdup", 0, 1);
    EXPECT_EQ(map(word(0x11, 0x10)), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x11, 0x10));
    for (const Add &add : fw.adds) {
        if (add.node == nullptr)
            continue;
        EXPECT_EQ(add.node->framework_flags, 0u);
    }
}

// The second neighbor's capability may be the same node as the first one's.
TEST_F(OperCapability, NamesThatAreAddedAgainHoldOneCopyOfTheirModule) {
    tidl_yfw_datatree name{};
    fw.on_add([&name](const Add &add) {
        if (add.slot_given)
            *add.slot = &name;
    });
    EXPECT_EQ(map(word(0x04, 0x04)), YMAP_OK);
    EXPECT_EQ(map(word(0x04, 0x04)), YMAP_OK);
    EXPECT_THAT(fw.calls_of("yfw_strdup"), SizeIs(4));
    EXPECT_EQ(fw.live_strings(), 1u);
    EXPECT_TRUE(fw.is_live_string(name.value_ns));
}

TEST_F(OperCapability, OnlyTheLeavesWithANameGetTheTypesModule) {
    EXPECT_EQ(map(word(0xff, 0xff)), YMAP_OK);
    EXPECT_EQ(fw.live_strings(), 16u);
}

TEST_F(OperCapability, GoesOnWhenAnAddGivesNoNode) {
    fw.add_without_node = true;
    EXPECT_EQ(map("1310724"), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x14, 0x04));
    EXPECT_EQ(fw.live_strings(), 0u);
}

class OperCapabilityAdd : public OperCapability, public ::testing::WithParamInterface<unsigned> {};

INSTANTIATE_TEST_SUITE_P(EachFailingInTurn, OperCapabilityAdd, Range(1u, 9u));

TEST_P(OperCapabilityAdd, CountsForTheStatusOnlyWhenItIsTheLast) {
    fw.fail(add_path, GetParam(), 0x77);
    EXPECT_EQ(map("1310740"), GetParam() == 8 ? 0x77u : 0u);
    EXPECT_EQ(summaries(fw), expected(0x14, 0x14));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

// The adds and the lines of the hand-written mapping, in order.
TEST_F(OperCapability, IsFirstNamedThenComparedWithTheEnabledOnesThenTold) {
    EXPECT_EQ(map(word(0x04, 0x04)), YMAP_OK);
    std::vector<std::string> told;
    for (const std::string &step : steps(fw)) {
        if (step.starts_with("add ") || step.starts_with("ymap_oc_enabled_capabilities_man: OCLLDP") ||
            step.ends_with("cap_name MAC_BRIDGE"))
            told.push_back(step);
    }
    EXPECT_THAT(told, ElementsAre("oclldp_get_ne_cap_name: OCLLDP cap_name MAC_BRIDGE",
                                  "ymap_oc_enabled_capabilities_man: OCLLDP: Peer capability name MAC_BRIDGE",
                                  "add " + capability, "add " + capability + "/name",
                                  "add " + capability + "/state/name",
                                  "oclldp_get_ne_cap_name: OCLLDP cap_name MAC_BRIDGE",
                                  "ymap_oc_enabled_capabilities_man: OCLLDP cap enabled value true",
                                  "add " + capability + "/state/enabled"));
}

TEST_F(OperCapability, TellsOfAFailedComparisonAfterTheNames) {
    fw.fail("yfw_strcmp_s", 0, 22);
    EXPECT_EQ(map(word(0x02, 0x02)), YMAP_OK);
    const std::vector<std::string> told = steps(fw);
    const auto failed = std::find(told.begin(), told.end(),
                                  "ymap_oc_enabled_capabilities_man: OCLLDP yfw_strcmp_s failed "
                                  "foren_cap_name REPEATER cap_name REPEATER");
    ASSERT_NE(failed, told.end());
    EXPECT_EQ(std::count_if(told.begin(), failed, [](const auto &step) { return step.starts_with("add "); }),
              3);
}

// ---- what is read ---------------------------------------------------------------------------------------

TEST_F(OperCapability, IsReadFromTheEntryInHandNotFromTheLeaf) {
    answer(native_mib, "combined-capabilities", word(1, 0));
    EXPECT_EQ(run_leaf("mib_combinedcapabilities", word(2, 0)), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(1, 0));
    EXPECT_EQ(fw.mapping_calls().front(),
              (Call{"yfw_map_get_node_info", native_mib + ", combined-capabilities"}));
}

TEST_F(OperCapability, WithoutSystemBitsAddsNothing) {
    for (const std::string text : {"0", "20", "65535", "", "B,R", "16777216"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(map(text), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        EXPECT_THAT(fw.errors(), IsEmpty());
    }
}

TEST_F(OperCapability, OfAllBitsAddsTheEightOfTheTable) {
    for (const std::string text : {"4294967295", "-1"}) {
        SCOPED_TRACE(text);
        fw.forget_calls();
        EXPECT_EQ(map(text), YMAP_OK);
        EXPECT_EQ(summaries(fw), expected(0xff, 0xff));
    }
}

class OperMissingCapability : public OperCapability, public ::testing::WithParamInterface<terrno> {};

INSTANTIATE_TEST_SUITE_P(AbsentAndUnreadable, OperMissingCapability, Values(0u, 0x1234u));

TEST_P(OperMissingCapability, ReturnsTheStatusOfTheRead) {
    fw.node_info[{native_mib, "combined-capabilities"}] = {.value = std::nullopt, .status = GetParam()};
    EXPECT_EQ(run_leaf("mib_combinedcapabilities", "1310740"), GetParam());
    EXPECT_THAT(fw.errors(), ElementsAre("OCLLDP: NULL combined capability from peer"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(OperCapability, RunsTheHandWrittenMapping) {
    Tree native(leaf("combined-capabilities", "1310740"), native_oper_ns);
    EXPECT_EQ(call("ymap_oc_enabled_capabilities_man", context, native), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x14, 0x14));
    fw.forget_calls();
    EXPECT_EQ(map("1310740"), YMAP_OK);
    const std::vector<std::string> started = fw.started();
    ASSERT_GE(started.size(), 2u);
    EXPECT_EQ(started[0], oper + "leaf_lvla_lldp_mib_combinedcapabilities");
    EXPECT_EQ(started[1], "ymap_oc_enabled_capabilities_man");
}

TEST_F(OperCapability, OfTheEnabledLeafAddsNothing) {
    Tree native(leaf("enabled-capabilities", "B,R"), native_oper_ns);
    EXPECT_EQ(call("ymap_oc_enabled_capabilities_man_cb", context, native), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

// A failed comparison keeps the previous capability's text.
TEST_F(OperCapability, KeepsTheEnabledValueOfTheOneBeforeWhenTheNamesCannotBeCompared) {
    fw.fail("yfw_strcmp_s", 0, 22);
    EXPECT_EQ(map(word(0x03, 0x02)), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(expected(0x03, 0x00)));
    EXPECT_THAT(fw.debug_lines(),
                Contains("TRC: OCLLDP yfw_strcmp_s failed foren_cap_name REPEATER cap_name REPEATER"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

// ---- the filter -----------------------------------------------------------------------------------------

class OperCapabilityFilter : public OperCapability, public ::testing::WithParamInterface<int> {};

INSTANTIATE_TEST_SUITE_P(EveryName, OperCapabilityFilter, Range(0, 8));

TEST_P(OperCapabilityFilter, LetsOnlyTheRequestedCapabilityThrough) {
    const std::string &name = names[static_cast<std::size_t>(GetParam())];
    request_capability(name.c_str());
    EXPECT_EQ(map(word(0xff, 0x0f)), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(1u << GetParam(), 0x0f));
    EXPECT_EQ(count_of(fw.debug_lines(), "TRC: OCLLDP Match found Cap_name " + name), 1u);
    EXPECT_TRUE(filter_is_freed());
}

TEST_P(OperCapabilityFilter, LetsNothingThroughOfANeighborWithoutIt) {
    request_capability(names[static_cast<std::size_t>(GetParam())].c_str());
    EXPECT_EQ(map(word(0xff & ~(1u << GetParam()), 0xff)), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_TRUE(filter_is_freed());
}

TEST_P(OperCapabilityFilter, ReturnsTheStatusOfTheReadWhenNothingMatches) {
    request_capability(names[static_cast<std::size_t>(GetParam())].c_str());
    const std::string combined = word(0xff & ~(1u << GetParam()), 0xff);
    fw.node_info[{native_mib, "combined-capabilities"}] = {.value = combined, .status = 0x1234};
    EXPECT_EQ(run_leaf("mib_combinedcapabilities", combined), 0x1234u);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_TRUE(filter_is_freed());
}

TEST_F(OperCapability, FilterComparesWholeNames) {
    for (const std::string name : {"ROUTE", "ROUTER2", "router"}) {
        SCOPED_TRACE(name);
        request_capability(name.c_str());
        EXPECT_EQ(map(word(0xff, 0xff)), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
    }
}

TEST_F(OperCapability, FilterIsFreedAlsoWhenThereAreNoSystemBits) {
    request_capability("ROUTER");
    EXPECT_EQ(map("20"), YMAP_OK);
    EXPECT_TRUE(filter_is_freed());
}

TEST_F(OperCapability, FilterIsFreedAlsoWhenAnAddFails) {
    request_capability("ROUTER");
    fw.fail(add_path, 0, 0x1234);
    EXPECT_EQ(map("1310740"), 0x1234u);
    EXPECT_TRUE(filter_is_freed());
}

TEST_F(OperCapability, FilterHoldsForTheFirstNeighborOnly) {
    request_capability("ROUTER");
    EXPECT_EQ(map("1310740"), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x10, 0x10));
    fw.forget_calls();
    EXPECT_EQ(map("1310740"), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x14, 0x14));
}

TEST_F(OperCapability, FilterIsKeptWhileNoNeighborIsStitched) {
    request_capability("ROUTER");
    plugin->neighbor_list_mapped() = 0;
    EXPECT_EQ(map("1310740"), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_EQ(context.req.common_data_ptr, filter);
}

TEST_F(OperCapability, WithoutAMatchSaysSoForNoCapability) {
    EXPECT_EQ(map(word(0xff, 0xff)), YMAP_OK);
    for (const std::string &line : fw.debug_lines())
        EXPECT_EQ(line.find("Match found"), std::string::npos) << line;
}

// ---- the table of letters -----------------------------------------------------------------------------

class CapabilityNames : public OperTest {
protected:
    terrno append(uint32_t capabilities, char *to, int32_t index) {
        using Function = decltype(oclldp_get_ne_cap_name);
        return plugin->symbol<Function>("oclldp_get_ne_cap_name")(context, capabilities, to, index);
    }
    char text[OCLLDP_CAPABILITY_TEXT_SIZE] = "";
};

TEST_F(CapabilityNames, AreAppendedForABitThatIsSet) {
    for (int bit = 0; bit < 8; ++bit) {
        SCOPED_TRACE(bit);
        std::strcpy(text, "before ");
        EXPECT_EQ(append(1u << bit, text, bit), YMAP_OK);
        EXPECT_EQ(text, "before " + names[static_cast<std::size_t>(bit)]);
        EXPECT_THAT(fw.errors(), IsEmpty());
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    }
}

TEST_F(CapabilityNames, AreNotAppendedForABitThatIsClear) {
    for (int bit = 0; bit <= 8; ++bit) {
        SCOPED_TRACE(bit);
        EXPECT_EQ(append(~(1u << bit), text, bit), YMAP_OK);
        EXPECT_STREQ(text, "");
    }
    EXPECT_THAT(fw.errors(), IsEmpty());
}

// The bound is inclusive: the index after the last letter is accepted but names nothing.
TEST_F(CapabilityNames, OfTheIndexBehindTheTableAreNothing) {
    EXPECT_EQ(append(1u << 8, text, 8), YMAP_OK);
    EXPECT_STREQ(text, "");
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(CapabilityNames, BeyondTheTableAreAFailedMapping) {
    for (const int index : {9, 31, 32, 1000}) {
        SCOPED_TRACE(index);
        fw.forget_calls();
        EXPECT_EQ(append(0xffffffffu, text, index), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.errors(), ElementsAre("Value of i exceeds max lldp caps count"));
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
        EXPECT_STREQ(text, "");
    }
}

TEST_F(CapabilityNames, WithoutRoomForThemAreAFailedMapping) {
    EXPECT_EQ(append(1, nullptr, 0), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(CapabilityNames, StayWithinTheirText) {
    char room[OCLLDP_CAPABILITY_TEXT_SIZE + 8];
    std::memset(room, 'x', sizeof room);
    room[97] = '\0';
    EXPECT_EQ(append(0x40, room, 6), YMAP_OK);
    EXPECT_LT(strnlen(room, sizeof room), std::size_t{OCLLDP_CAPABILITY_TEXT_SIZE});
    EXPECT_EQ(std::string(room + OCLLDP_CAPABILITY_TEXT_SIZE, 8), "xxxxxxxx");
}

TEST_F(CapabilityNames, GoByTheFirstLetterOfTheCode) {
    plugin->capability_codes()[3] = "Sxx";
    EXPECT_EQ(append(0x08, text, 3), YMAP_OK);
    EXPECT_STREQ(text, "STATION_ONLY");
}

TEST_F(CapabilityNames, OfAnUnknownLetterAreNothing) {
    plugin->capability_codes()[3] = "X";
    EXPECT_EQ(append(0x08, text, 3), YMAP_OK);
    EXPECT_STREQ(text, "");
}

TEST_F(OperCapability, WithoutANameIsPassedOver) {
    plugin->capability_codes()[3] = "X";
    EXPECT_EQ(map(word(0x1c, 0xff)), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x14, 0xff));
}

TEST_F(OperCapability, BeyondTheNumberOfCapabilitiesIsNotMapped) {
    plugin->capability_count() = 3;
    EXPECT_EQ(map(word(0xff, 0xff)), YMAP_OK);
    EXPECT_EQ(summaries(fw), expected(0x07, 0xff));
}

TEST_F(CapabilityNames, TableHoldsTheEightLettersInTheirOrder) {
    EXPECT_EQ(plugin->capability_count(), 8);
    std::string letters;
    for (int bit = 0; bit < OCLLDP_CAPABILITIES; ++bit)
        letters += plugin->capability_codes()[bit];
    EXPECT_EQ(letters, "OPBWRTCS");
}

} // namespace
} // namespace oclldp_test
