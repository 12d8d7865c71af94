// The five native TLV disables that become one OpenConfig leaf-list of suppressed TLVs.
#include <gmock/gmock.h>

#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::ValuesIn;

const std::string suppress = "ymap_qd_lldp_tlvselect_manual_cb";
const std::vector<std::pair<std::string, std::string>> tlvs = {{"system-name", "SYSTEM_NAME"},
                                                               {"port-description", "PORT_DESCRIPTION"},
                                                               {"system-description", "SYSTEM_DESCRIPTION"},
                                                               {"system-capabilities", "SYSTEM_CAPABILITIES"},
                                                               {"management-address", "MANAGEMENT_ADDRESS"}};

class CfgTlv : public OclldpTest {
protected:
    CfgTlv() { Selection{}.apply(context); }

    void disable(std::size_t row, const std::string &text = "true", terrno status = 0) {
        fw.node_info[{"/lldp/tlv-select/" + tlvs[row].first, "disable"}] = {.value = text, .status = status};
    }
    terrno map() { return call(suppress, context, in); }
    static std::vector<std::string> both(const std::string &identity) {
        return {"/lldp/config/enabled = true", "/lldp/config/suppress-tlv-advertisement = " + identity,
                "/lldp/state/enabled = true", "/lldp/state/suppress-tlv-advertisement = " + identity};
    }

    Context context;
    Tree in{leaf("disable", "true"), native_cfg_ns};
};

TEST_F(CfgTlv, ReadsAllFiveDisablesInTheTablesOrder) {
    EXPECT_EQ(map(), YMAP_OK);
    std::vector<Call> wanted;
    for (const auto &[tag, identity] : tlvs)
        wanted.push_back({"yfw_map_get_node_info", "/lldp/tlv-select/" + tag + ", disable"});
    EXPECT_THAT(fw.mapping_calls(), ElementsAreArray(wanted));
}

// Of the disabled TLVs, only the last in the table is reported.
TEST_F(CfgTlv, TellsOnlyTheLastDisabledTlvInEveryCombination) {
    for (unsigned mask = 1; mask < 32; ++mask) {
        SCOPED_TRACE(mask);
        fw.forget_calls();
        fw.node_info.clear();
        std::string last;
        for (std::size_t row = 0; row < tlvs.size(); ++row) {
            if ((mask >> row & 1) == 0)
                continue;
            disable(row);
            last = tlvs[row].second;
        }
        EXPECT_EQ(map(), YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAreArray(both(last)));
    }
}

TEST_F(CfgTlv, WritesNothingWhenNoTlvIsDisabled) {
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_EQ(fw.live_strings(), 0u);
}

class CfgTlvText : public CfgTlv, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(NotTrue, CfgTlvText,
                         ValuesIn(std::vector<std::string>{"false", "", "TRUE", "True", "true ", "1", "tru",
                                                           "truetrue"}));

TEST_P(CfgTlvText, OtherThanTrueDisablesNothing) {
    for (std::size_t row = 0; row < tlvs.size(); ++row)
        disable(row, GetParam());
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_P(CfgTlvText, OtherThanTrueDoesNotHideAnEarlierTlv) {
    disable(0);
    disable(4, GetParam());
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(both("SYSTEM_NAME")));
}

TEST_F(CfgTlv, WritesConfigAndStateAsTheRequestWantsThem) {
    disable(2);
    for (const Selection &selection : every_selection()) {
        SCOPED_TRACE(::testing::PrintToString(selection));
        fw.forget_calls();
        selection.apply(context);
        const std::vector<std::string> all = both("SYSTEM_DESCRIPTION");
        std::vector<std::string> wanted;
        if (selection.wants_config())
            wanted = {all[0], all[1]};
        if (selection.wants_state())
            wanted.insert(wanted.end(), all.begin() + 2, all.end());
        EXPECT_EQ(map(), YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAreArray(wanted));
        EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), SizeIs(5));
    }
}

TEST_F(CfgTlv, AddsToTheOutputTreeAndKeepsTheNodeOfTheLeafListOnly) {
    disable(0);
    map();
    ASSERT_EQ(fw.adds.size(), 4u);
    for (const Add &add : fw.adds) {
        SCOPED_TRACE(add.path);
        const bool leaf_list = add.path.ends_with("suppress-tlv-advertisement");
        EXPECT_EQ(add.parent, &output);
        EXPECT_EQ(add.ns, oc_ns);
        EXPECT_EQ(add.source, nullptr);
        EXPECT_EQ(add.flags, 0u);
        EXPECT_EQ(add.slot_given, leaf_list);
    }
}

TEST_F(CfgTlv, AddsTheIdentityAsAListEntry) {
    disable(0);
    map();
    std::vector<uint32_t> list_entry;
    for (const Add &add : fw.adds)
        list_entry.push_back(add.list_entry);
    EXPECT_THAT(list_entry, ElementsAre(0u, 1u, 0u, 1u));
}

TEST_F(CfgTlv, QualifiesTheIdentityWithTheTypesNamespace) {
    disable(3);
    map();
    ASSERT_EQ(fw.adds.size(), 4u);
    for (const std::size_t leaf_list : {1u, 3u}) {
        const tidl_yfw_datatree *added = fw.adds[leaf_list].node;
        ASSERT_NE(added, nullptr);
        EXPECT_STREQ(added->value_ns, oc_types_ns);
        EXPECT_EQ(added->framework_flags & YFW_FW_HAS_VALUE_NS, static_cast<uint32_t>(YFW_FW_HAS_VALUE_NS));
        EXPECT_TRUE(fw.is_live_string(added->value_ns));
    }
    EXPECT_NE(fw.adds[1].node->value_ns, fw.adds[3].node->value_ns);
    EXPECT_EQ(fw.live_strings("YFW OCLLDP NS"), 2u);
    EXPECT_EQ(fw.live_strings(), 2u);
}

TEST_F(CfgTlv, KeepsTheOtherFlagsOfTheNodeThatItQualifies) {
    disable(3);
    fw.on_add([](const Add &add) {
        if (add.node != nullptr)
            add.node->framework_flags = YFW_FW_HAS_MARKER;
    });
    map();
    ASSERT_EQ(fw.adds.size(), 4u);
    EXPECT_EQ(fw.adds[1].node->framework_flags,
              static_cast<uint32_t>(YFW_FW_HAS_MARKER) | static_cast<uint32_t>(YFW_FW_HAS_VALUE_NS));
}

// The framework may merge the entries: the second add then gives back the node of the first.
TEST_F(CfgTlv, FreesTheNamespaceOfANodeThatItQualifiesAgain) {
    disable(3);
    tidl_yfw_datatree entry{};
    fw.on_add([&entry](const Add &add) {
        if (add.slot_given)
            *add.slot = &entry;
    });
    map();
    EXPECT_THAT(fw.calls_of("yfw_strdup"), SizeIs(2));
    EXPECT_THAT(fw.calls_of("qdos_named_free"), ElementsAre(Call{"qdos_named_free", oc_types_ns}));
    EXPECT_EQ(fw.live_strings(), 1u);
    EXPECT_TRUE(fw.is_live_string(entry.value_ns));
    EXPECT_STREQ(entry.value_ns, oc_types_ns);
    EXPECT_EQ(entry.framework_flags, static_cast<uint32_t>(YFW_FW_HAS_VALUE_NS));
}

TEST_F(CfgTlv, LeavesANamespaceAloneThatTheNodeDoesNotHave) {
    disable(3);
    char elsewhere[] = "not the node's";
    fw.on_add([&elsewhere](const Add &add) {
        if (add.node != nullptr)
            add.node->value_ns = elsewhere; // without the flag
    });
    map();
    EXPECT_THAT(fw.calls_of("qdos_named_free"), IsEmpty());
    EXPECT_EQ(fw.live_strings(), 2u);
}

TEST_F(CfgTlv, MarksNoNamespaceWhenThereIsNoMemoryForIt) {
    disable(3);
    fw.fail("yfw_strdup", 0, 1);
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(both("SYSTEM_CAPABILITIES")));
    for (const Add &add : fw.adds) {
        if (add.node == nullptr)
            continue;
        EXPECT_EQ(add.node->value_ns, nullptr);
        EXPECT_EQ(add.node->framework_flags, 0u);
    }
}

TEST_F(CfgTlv, KeepsAnEarlierNamespaceWhenThereIsNoMemoryForAnother) {
    disable(3);
    tidl_yfw_datatree entry{};
    fw.on_add([&entry](const Add &add) {
        if (add.slot_given)
            *add.slot = &entry;
    });
    fw.fail("yfw_strdup", 2, 1);
    map();
    EXPECT_THAT(fw.calls_of("qdos_named_free"), IsEmpty());
    EXPECT_TRUE(fw.is_live_string(entry.value_ns));
    EXPECT_EQ(entry.framework_flags, static_cast<uint32_t>(YFW_FW_HAS_VALUE_NS));
}

TEST_F(CfgTlv, QualifiesNothingWhenNoNodeComesBack) {
    disable(3);
    fw.add_without_node = true;
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(both("SYSTEM_CAPABILITIES")));
    EXPECT_THAT(fw.calls_of("yfw_strdup"), IsEmpty());
}

TEST_F(CfgTlv, ReturnsTheStatusOfTheLastLeafListAddWhicheverFails) {
    disable(1);
    for (unsigned failing = 1; failing <= 4; ++failing) {
        SCOPED_TRACE(failing);
        fw.forget_calls();
        fw.fail("yfw_map_datatree_add_path_flagged", failing, 0x5500 + failing);
        EXPECT_EQ(map(), failing == 4 ? 0x5504u : YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAreArray(both("PORT_DESCRIPTION")));
        EXPECT_THAT(fw.error_paths, IsEmpty());
        // A failed leaf-list add returned no node to qualify.
        EXPECT_THAT(fw.calls_of("yfw_strdup"), SizeIs(failing == 2 || failing == 4 ? 1 : 2));
    }
}

TEST_F(CfgTlv, ReturnsTheConfigLeafListAddsStatusWhenNoStateIsWanted) {
    disable(1);
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 1, .content = 0}.apply(context);
    fw.fail("yfw_map_datatree_add_path_flagged", 2, 0x55);
    EXPECT_EQ(map(), 0x55u);
    EXPECT_THAT(fw.adds, SizeIs(2));
}

TEST_F(CfgTlv, TakesALookUpThatFailsForATlvThatIsNotDisabled) {
    disable(0);
    for (unsigned failing = 2; failing <= 5; ++failing) {
        fw.forget_calls();
        fw.fail("yfw_map_get_node_info", failing, 0x66);
    }
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(summaries(fw), ElementsAreArray(both("SYSTEM_NAME")));
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(CfgTlv, ReturnsTheStatusOfTheLastLookUpWhenNothingIsAdded) {
    for (unsigned failing = 1; failing <= 5; ++failing) {
        SCOPED_TRACE(failing);
        fw.fail("yfw_map_get_node_info", failing, 0x6600 + failing);
        EXPECT_EQ(map(), failing == 5 ? 0x6605u : YMAP_OK);
    }
}

TEST_F(CfgTlv, ReturnsTheStatusOfTheLastLookUpWhenTheRequestWantsNoCopy) {
    disable(0);
    disable(4, "true", 0x67);
    Selection{.kind = YMAP_REQ_GET_CONFIG, .selection_empty = 0, .content = 2}.apply(context);
    EXPECT_EQ(map(), 0x67u);
    EXPECT_THAT(fw.adds, IsEmpty());
    EXPECT_THAT(fw.calls_of("yfw_map_get_node_info"), SizeIs(5));
}

TEST_F(CfgTlv, StartsEachCallWithAnEmptyBuffer) {
    disable(4);
    map();
    fw.node_info.clear();
    fw.forget_calls();
    EXPECT_EQ(map(), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(CfgTlv, SaysNullArgumentsWithoutAnErrorPath) {
    for (const bool without_input : {true, false}) {
        fw.forget_calls();
        EXPECT_EQ(plugin->call(suppress, context, without_input ? nullptr : in.operator->(),
                               without_input ? &output : nullptr),
                  YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed"));
        EXPECT_THAT(fw.error_paths, IsEmpty());
        EXPECT_THAT(fw.mapping_calls(), IsEmpty());
        EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    }
}

TEST_F(CfgTlv, RefusesANullContextByAnAssertion) {
    EXPECT_DEATH(plugin->call(suppress, nullptr, in, &output), "NULL != ctx");
}

TEST_F(CfgTlv, TracesItsStartAndEndOnBothChannels) {
    disable(0);
    map();
    EXPECT_THAT(messages_of(fw, suppress), AllOf(SizeIs(2), ElementsAre("Start", "End")));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
}

class CfgTlvDisableLeaf : public CfgTlv, public ::testing::WithParamInterface<std::string> {
protected:
    const std::string name = cfg + "leaf_lvla_lldp_" + GetParam() + "_disable";
};

INSTANTIATE_TEST_SUITE_P(Every, CfgTlvDisableLeaf,
                         ValuesIn(std::vector<std::string>{"systemname", "portdescription", "systemdescription",
                                                           "systemcapabilities", "managementaddress"}));

TEST_P(CfgTlvDisableLeaf, ReadsTheWholeSelectionWhicheverDisableItIs) {
    disable(0);
    disable(2);
    EXPECT_EQ(call(name, context, in), YMAP_OK);
    EXPECT_THAT(fw.started(), ElementsAre(name, suppress));
    EXPECT_THAT(summaries(fw), ElementsAreArray(both("SYSTEM_DESCRIPTION")));
}

TEST_P(CfgTlvDisableLeaf, ReturnsTheResultOfTheSharedCallback) {
    disable(2);
    fw.fail("yfw_map_datatree_add_path_flagged", 4, 0x7a);
    EXPECT_EQ(call(name, context, in), 0x7au);
}

TEST_P(CfgTlvDisableLeaf, RefusesNullNodesItself) {
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(name, context, in, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), Each(std::string("Invalid arguments passed!")));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
    EXPECT_THAT(fw.mapping_calls(), Each(::testing::Field(&Call::operation, "yfw_oc_error_path")));
}

TEST_F(CfgTlv, MakesTheSameAddsOncePerDisableLeafOfAResponse) {
    std::vector<Node> containers;
    for (std::size_t row = 0; row < tlvs.size(); ++row) {
        disable(row);
        containers.push_back(node(tlvs[row].first).children({leaf("disable", "true")}));
    }
    Tree response(node("lldp").children({node("tlv-select").children(std::move(containers))}), native_cfg_ns);
    EXPECT_EQ(call(cfg + "lvla_lldp", context, response), YMAP_OK);
    std::vector<std::string> wanted;
    for (std::size_t leaf_count = 0; leaf_count < tlvs.size(); ++leaf_count) {
        const std::vector<std::string> once = both("MANAGEMENT_ADDRESS");
        wanted.insert(wanted.end(), once.begin(), once.end());
    }
    EXPECT_THAT(summaries(fw), ElementsAreArray(wanted));
}

} // namespace
} // namespace oclldp_test
