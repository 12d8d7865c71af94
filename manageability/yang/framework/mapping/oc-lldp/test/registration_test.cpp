// The three registration records.
#include <gmock/gmock.h>

#include <cstring>

#include "oclldp_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Le;

struct Registration {
    const char *function;
    const char *tree_name;
    const char *native_ns;
    const char *native_top;
    const char *native_root;
    uint32_t flag_b;
    bool disables_capability;
};

void PrintTo(const Registration &registration, std::ostream *stream) {
    *stream << registration.function;
}

terrno untouched(yfw_map_ctx, const tidl_yfw_datatree *, tidl_yfw_datatree *) {
    return 1;
}

class RegistrationRecord : public OclldpTest, public ::testing::WithParamInterface<Registration> {
protected:
    RegistrationRecord() {
        // Whatever the record held before: full texts, used slots.
        std::memset(&record, 'x', offsetof(yfw_map_registration, oc_to_native));
        record.framework_callbacks[0] = record.framework_callbacks[1] = untouched;
        record.flag_a = record.flag_b = 99;
        record.framework_slot = this;
        plugin->symbol<void(yfw_map_registration *)>(GetParam().function)(&record);
    }

    yfw_map_registration record{};
};

TEST_P(RegistrationRecord, NamesTheTreeTheModelsAndTheirTopNodes) {
    EXPECT_STREQ(record.tree_name, GetParam().tree_name);
    EXPECT_STREQ(record.native_ns, GetParam().native_ns);
    EXPECT_STREQ(record.oc_ns, "http://openconfig.net/yang/lldp");
    EXPECT_STREQ(record.native_top, GetParam().native_top);
    EXPECT_STREQ(record.oc_top, "lldp");
}

TEST_P(RegistrationRecord, HasTerminatedTextsOfAtMostEightyCharacters) {
    const std::vector<std::size_t> lengths = {strnlen(record.tree_name, 81), strnlen(record.native_ns, 81),
                                              strnlen(record.oc_ns, 81), strnlen(record.native_top, 81),
                                              strnlen(record.oc_top, 81)};
    EXPECT_THAT(lengths, Each(Le(80u)));
}

TEST_P(RegistrationRecord, HasTheRootWalkersOfBothDirections) {
    EXPECT_EQ(record.oc_to_native, plugin->callback("ymap_oq_oclldp_openconfiglldp_lvla_lldp"));
    EXPECT_EQ(record.native_to_oc, plugin->callback(GetParam().native_root));
}

TEST_P(RegistrationRecord, HasItsFlagsAndTheDisableCapabilityCallbackOfItsTree) {
    EXPECT_EQ(record.flag_a, 0u);
    EXPECT_EQ(record.flag_b, GetParam().flag_b);
    void *const callback = reinterpret_cast<void *>(record.disable_capability);
    EXPECT_EQ(callback,
              GetParam().disables_capability ? plugin->address("yfw_map_lldp_disable_cabability_cb") : nullptr);
}

TEST_P(RegistrationRecord, LeavesTheFrameworksSlotsAlone) {
    EXPECT_EQ(record.framework_callbacks[0], untouched);
    EXPECT_EQ(record.framework_callbacks[1], untouched);
    EXPECT_EQ(record.framework_slot, this);
}

TEST_P(RegistrationRecord, IsFilledInOrderByBoundedCopiesThatNameTheFunction) {
    const Registration &r = GetParam();
    const auto copy = [&](const std::string &text) {
        return Call{"yfw_strncpy_s", std::string(r.function) + ", 81, " + text + ", 80"};
    };
    EXPECT_THAT(fw.calls, ElementsAre(copy(r.native_ns), copy("http://openconfig.net/yang/lldp"),
                                      copy(r.tree_name), copy(r.native_top), copy("lldp")));
}

INSTANTIATE_TEST_SUITE_P(
    OfEachTree, RegistrationRecord,
    ::testing::Values(Registration{.function = "yfw_map_reg_oclldp_cfg",
                                   .tree_name = "OC lldp config tree",
                                   .native_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg",
                                   .native_top = "lldp",
                                   .native_root = "ymap_qo_oclldp_tarvoqdethernetlldpcfg_lvla_lldp",
                                   .flag_b = 0,
                                   .disables_capability = false},
                      Registration{.function = "yfw_map_reg_oclldp_oper",
                                   .tree_name = "OC lldp oper tree",
                                   .native_ns = "urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper",
                                   .native_top = "lldp",
                                   .native_root = "ymap_qo_oclldp_tarvoqdethernetlldpoper_lvla_lldp",
                                   .flag_b = 0,
                                   .disables_capability = false},
                      Registration{.function = "yfw_map_reg_oclldp_ifmgr",
                                   .tree_name = "OC lldp ifmgr tree",
                                   .native_ns = "urn:tarvo:yang:Tarvo-QD-ifmgr-cfg",
                                   .native_top = "interface-configurations",
                                   .native_root = "ymap_qo_oclldp_tarvoqdifmgrcfg_lvla_interfaceconfigurations",
                                   .flag_b = 1,
                                   .disables_capability = true}),
    [](const auto &test) { return std::string(test.param.function); });

class DisableCapability : public OclldpTest, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(DisableCapability, IsAlwaysOne) {
    auto *const ask =
        plugin->symbol<decltype(yfw_map_lldp_disable_cabability_cb)>("yfw_map_lldp_disable_cabability_cb");
    EXPECT_EQ(ask(), 1u);
    fw.sysdb_items["enable"] = {.value = GetParam()};
    fw.library_readable = GetParam() != 0;
    plugin->symbol<decltype(ymap_bind_lldp_gl_sysdb)>("ymap_bind_lldp_gl_sysdb")();
    plugin->deleting_interface() = 1;
    EXPECT_EQ(ask(), 1u);
}

INSTANTIATE_TEST_SUITE_P(WithLldpOffAndOn, DisableCapability, ::testing::Values(0, 1));

} // namespace
} // namespace oclldp_test
