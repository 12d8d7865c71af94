// Whether the interface manager knows an interface, and reading an entry's name.
#include "response_expectations.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::ValuesIn;

const std::string exists_name = "yfw_oclldp_util_is_ifhandle_exist";

class IfmgrLookup : public OclldpTest {
protected:
    int exists(std::string name) {
        return plugin->symbol<decltype(yfw_oclldp_util_is_ifhandle_exist)>(exists_name)(name.data(), context);
    }

    Context context;
};

TEST_F(IfmgrLookup, AsksForOneInterfaceInTheInterfaceManagersSpelling) {
    fw.ifentry_names["GigabitEthernet0/0/0/1"] = "Gi0_0_0_1";
    EXPECT_EQ(exists("GigabitEthernet0/0/0/1"), 1);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(Call{"convert_ifname_ifentry", "GigabitEthernet0/0/0/1"},
                                                Call{"imc_interface_find", "1, Gi0_0_0_1, 0"}));
    EXPECT_THAT(fw.calls_of("yfw_strncpy_s"),
                ElementsAre(Call{"yfw_strncpy_s", exists_name + ", 64, Gi0_0_0_1, 64"}));
    ASSERT_EQ(fw.interface_finds.size(), 1u);
    EXPECT_EQ(fw.interface_finds.front().connection, yfw_ocifmgr_im_conn);
    EXPECT_EQ(fw.interface_finds.front().flags, 0u);
}

struct Outcome {
    std::string label;
    terrno call_status;
    terrno entry_status;
    int known;
};

void PrintTo(const Outcome &outcome, std::ostream *stream) {
    *stream << outcome.label;
}

class IfmgrLookupOutcome : public IfmgrLookup, public ::testing::WithParamInterface<Outcome> {};

INSTANTIATE_TEST_SUITE_P(Every, IfmgrLookupOutcome,
                         ValuesIn(std::vector<Outcome>{
                             {"found", 0, 0, 1},
                             {"definitely not there", 0, 0x409a0600, 0},
                             {"another entry status", 0, 0x409a0601, 1},
                             {"an entry status of one", 0, 1, 1},
                             {"a failing call", 7, 0, 1},
                             {"a call that fails with the entry's code", 0x409a0600, 0, 1},
                         }));

TEST_P(IfmgrLookupOutcome, DropsAnInterfaceOnlyOnTheDefiniteStatus) {
    if (GetParam().call_status != 0)
        fw.fail("imc_interface_find", 1, GetParam().call_status);
    fw.imc_entry_status["Gi1"] = GetParam().entry_status;
    EXPECT_EQ(exists("Gi1"), GetParam().known);
    EXPECT_THAT(fw.debug_lines(),
                Contains(GetParam().known == 1 ? "TRC: imc_interface_find succeded for int : Gi1\n"
                                               : "TRC: imc_interface_find failed for int : Gi1\n"));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(IfmgrLookup, DropsAnInterfaceHoweverManyEntriesAreSaidToBeAnswered) {
    fw.imc_entry_status["Gi1"] = IMC_STATUS_NO_SUCH_INTERFACE;
    fw.imc_answered = 0;
    EXPECT_EQ(exists("Gi1"), 0);
}

TEST_F(IfmgrLookup, DoesNotTakeTheStatusOfTheLookUpBefore) {
    fw.imc_entry_status["Gi1"] = IMC_STATUS_NO_SUCH_INTERFACE;
    EXPECT_EQ(exists("Gi1"), 0);
    EXPECT_EQ(exists("Gi2"), 1);
    EXPECT_EQ(exists("Gi1"), 0);
}

TEST_F(IfmgrLookup, KnowsNoInterfaceWithoutAName) {
    EXPECT_EQ(plugin->symbol<decltype(yfw_oclldp_util_is_ifhandle_exist)>(exists_name)(nullptr, context), 0);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: NULL ifname passed"));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_F(IfmgrLookup, TakesANameOf63Characters) {
    const std::string name(63, 'x');
    EXPECT_EQ(exists(name), 1);
    ASSERT_THAT(fw.interface_finds, SizeIs(1));
    EXPECT_THAT(fw.interface_finds.front().names, ElementsAre(name));
}

TEST_F(IfmgrLookup, CannotAskForANameThatDoesNotFit) {
    fw.status_texts[34] = "no room";
    EXPECT_EQ(exists(std::string(64, 'x')), 0);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: yfw_strncpy_s failed with error : no room\n"));
    EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    EXPECT_THAT(fw.interface_finds, IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(IfmgrLookup, TellsTheTextOfWhateverStatusTheCopyGives) {
    fw.status_texts[0xaaf20000] = "copy refused";
    fw.fail("yfw_strncpy_s", 1, 0xaaf20000);
    EXPECT_EQ(exists("Gi1"), 0);
    EXPECT_THAT(fw.debug_lines(), Contains("TRC: yfw_strncpy_s failed with error : copy refused\n"));
}

TEST_F(IfmgrLookup, AnswersTheSameWithBothChannelsClosed) {
    context.ctx.trace_enabled = 0;
    fw.log_traces = fw.log_errors = false;
    fw.imc_entry_status["Gi1"] = IMC_STATUS_NO_SUCH_INTERFACE;
    EXPECT_EQ(exists("Gi1"), 0);
    EXPECT_EQ(exists("Gi2"), 1);
    EXPECT_TRUE(fw.lines.empty());
}

// ---- the name of an entry

const std::string list_path = "/interface-configurations/interface-configuration";
const std::string name_reader = "ymap_qo_oclldp_intconfig_intname_man";
const std::string name_leaf = ifmgr + "leaf_lvla_interfaceconfigurations_interfaceconfiguration_interfacename";

class IfmgrNameReader : public OclldpTest {
protected:
    Context context;
    Tree in{leaf("interface-name", "Gi1"), native_ifmgr_ns};
};

class IfmgrName : public IfmgrNameReader, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Both, IfmgrName, ValuesIn(std::vector<std::string>{name_reader, name_leaf}));

TEST_P(IfmgrName, IsReadAndNothingIsWritten) {
    fw.node_info[{list_path, "interface-name"}] = {.value = "Gi1", .status = 0};
    EXPECT_EQ(call(GetParam(), context, in), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(Call{"yfw_map_get_node_info", list_path + ", interface-name"}));
    EXPECT_EQ(messages_of(fw, GetParam()).front(), "Start");
    EXPECT_EQ(messages_of(fw, GetParam()).back(), "End");
}

TEST_P(IfmgrName, GivesTheStatusOfItsLookUp) {
    fw.node_info[{list_path, "interface-name"}] = {.value = "Gi1", .status = 0x71};
    EXPECT_EQ(call(GetParam(), context, in), 0x71u);
}

TEST_P(IfmgrName, IsMissedWhenAbsent) {
    EXPECT_EQ(call(GetParam(), context, in), YMAP_ERR_UNSUPPORTED_TAG);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_P(IfmgrName, IsMissedWhenItsLookUpFailsWithoutAName) {
    fw.fail("yfw_map_get_node_info", 1, 0x72);
    EXPECT_EQ(call(GetParam(), context, in), YMAP_ERR_UNSUPPORTED_TAG);
}

TEST_F(IfmgrNameReader, SaysNullArgumentsWithoutAnErrorPath) {
    for (const bool without_input : {true, false}) {
        fw.forget_calls();
        EXPECT_EQ(plugin->call(name_reader, context, without_input ? nullptr : in.operator->(),
                               without_input ? &output : nullptr),
                  YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed"));
        EXPECT_THAT(fw.error_paths, IsEmpty());
        EXPECT_EQ(fw.debug_lines(), fw.numbered_lines());
    }
}

} // namespace
} // namespace oclldp_test
