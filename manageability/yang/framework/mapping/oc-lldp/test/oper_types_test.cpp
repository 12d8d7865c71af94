// The identities of chassis id and port id subtypes.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::Values;

const std::vector<std::string> chassis_names = {
    "CHASSIS_COMPONENT", "INTERFACE_ALIAS", "PORT_COMPONENT", "MAC_ADDRESS",
    "NETWORK_ADDRESS",   "INTERFACE_NAME",  "LOCAL"};
const std::vector<std::string> port_names = {
    "INTERFACE_ALIAS", "PORT_COMPONENT",   "MAC_ADDRESS", "NETWORK_ADDRESS",
    "INTERFACE_NAME",  "AGENT_CIRCUIT_ID", "LOCAL"};

// Numbers that name no subtype, and texts that are not numbers.
const std::vector<std::string> out_of_range = {"0",  "8",   "9",           "-1",
                                               "-7", "255", "4294967295",  "2147483648",
                                               "",   "x4",  "mac-address", "99999999999999999999"};

// One leaf that holds a subtype.
struct Subtype {
    std::string suffix;
    std::string path;
    std::vector<std::string> names;
    std::string trace; // before the identity's name
    bool of_a_neighbor;

    bool is_chassis() const { return names.front() == "CHASSIS_COMPONENT"; }
};

void PrintTo(const Subtype &subtype, std::ostream *stream) {
    *stream << subtype.suffix;
}

class OperSubtypes : public OperTest, public ::testing::WithParamInterface<Subtype> {};

INSTANTIATE_TEST_SUITE_P(Every, OperSubtypes,
                         Values(Subtype{"lldpinfo_chassisidsubtype", "/lldp/state/chassis-id-type",
                                        chassis_names, "OCLLDP: chassis_type_name ", false},
                                Subtype{"mib_chassisidsubtype", oc_neighbor + "/state/chassis-id-type",
                                        chassis_names, "OCLLDP: chassis_type_name ", true},
                                Subtype{"mib_portidsubtype", oc_neighbor + "/state/port-id-type", port_names,
                                        "OCLLDP: Port_type_name ", true}),
                         [](const auto &test) { return test.param.suffix; });

TEST_P(OperSubtypes, BecomeTheIdentityOfTheirRow) {
    for (std::size_t row = 0; row < GetParam().names.size(); ++row) {
        SCOPED_TRACE(row + 1);
        fw.forget_calls();
        EXPECT_EQ(run_leaf(GetParam().suffix, std::to_string(row + 1)), YMAP_OK);
        ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
        EXPECT_EQ(summary(fw.adds[0]), GetParam().path + " = " + GetParam().names[row]);
        EXPECT_THAT(fw.debug_lines(), Contains("TRC: " + GetParam().trace + GetParam().names[row]));
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
        EXPECT_THAT(fw.errors(), IsEmpty());
    }
}

TEST_P(OperSubtypes, AreReadAsDecimalNumbers) {
    for (const std::string text : {" 6", "+6", "06", "6.9", "6 of 7"}) {
        SCOPED_TRACE(text);
        fw.forget_calls();
        EXPECT_EQ(run_leaf(GetParam().suffix, text), YMAP_OK);
        EXPECT_THAT(summaries(fw), ElementsAre(GetParam().path + " = " + GetParam().names[5]));
    }
}

TEST_P(OperSubtypes, OutOfRangeAreAFailedMapping) {
    for (const std::string &text : out_of_range) {
        SCOPED_TRACE(text);
        fw.forget_calls();
        EXPECT_EQ(run_leaf(GetParam().suffix, text), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.mapping_calls(), IsEmpty());
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
        if (GetParam().is_chassis()) {
            EXPECT_THAT(fw.debug_lines(), Contains("TRC: Invalid chassis id subtype"));
            EXPECT_THAT(fw.errors(), ElementsAre("Invalid Chassis id type"));
        } else {
            EXPECT_THAT(fw.debug_lines(), Contains("TRC: Invalid port id subtype"));
            EXPECT_THAT(fw.errors(), IsEmpty());
        }
    }
}

TEST_P(OperSubtypes, ReturnTheStatusOfTheAdd) {
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run_leaf(GetParam().suffix, "4"), 0x1234u);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperSubtypes, AreLeftOutOfANeighborThatIsNotStitched) {
    plugin->neighbor_list_mapped() = 0;
    EXPECT_EQ(run_leaf(GetParam().suffix, "4"), YMAP_OK);
    EXPECT_THAT(fw.adds, SizeIs(GetParam().of_a_neighbor ? 0 : 1));
    EXPECT_EQ(run_leaf(GetParam().suffix, "8"), GetParam().of_a_neighbor ? YMAP_OK : YMAP_ERR_MAP_FAILED);
}

TEST_P(OperSubtypes, RejectAMissingNodeOrOutput) {
    Tree native(leaf("native-leaf", "4"), native_oper_ns);
    const std::string name = oper + "leaf_lvla_lldp_" + GetParam().suffix;
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(name, context, native, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
}

// ---- the utility -------------------------------------------------------------------------------------

class ChassisUtility : public OperTest {
protected:
    terrno run_util(const Node &native, char *to) {
        trees.emplace_back(std::make_unique<Tree>(native, native_oper_ns));
        return util()(context, *trees.back(), to);
    }
    decltype(&ymap_chassis_id_subtype_mapping_util) util() {
        return plugin->symbol<decltype(ymap_chassis_id_subtype_mapping_util)>(
            "ymap_chassis_id_subtype_mapping_util");
    }
    char name[OCLLDP_CHASSIS_TEXT_SIZE] = "unchanged";
};

TEST_F(ChassisUtility, WritesTheNameOfEachRow) {
    for (std::size_t row = 0; row < chassis_names.size(); ++row) {
        EXPECT_EQ(run_util(leaf("chassis-id-sub-type", std::to_string(row + 1)), name), YMAP_OK);
        EXPECT_EQ(name, chassis_names[row]);
    }
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

TEST_F(ChassisUtility, RejectsEveryOtherNumber) {
    for (const std::string &text : out_of_range) {
        SCOPED_TRACE(text);
        fw.forget_calls();
        EXPECT_EQ(run_util(leaf("chassis-id-sub-type", text), name), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.debug_lines(), Contains("TRC: Invalid chassis id subtype"));
        EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
        EXPECT_THAT(fw.errors(), IsEmpty());
    }
}

TEST_F(ChassisUtility, RejectsAMissingLeafOrOutputWithoutAnErrorPath) {
    Tree native(leaf("chassis-id-sub-type", "4"), native_oper_ns);
    EXPECT_EQ(util()(context, nullptr, name), YMAP_ERR_MAP_FAILED);
    EXPECT_EQ(util()(context, native, nullptr), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("NULL arguments passed", "NULL arguments passed"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_STREQ(name, "unchanged");
}

} // namespace
} // namespace oclldp_test
