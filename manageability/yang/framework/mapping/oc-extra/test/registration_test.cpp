// The registration record.
#include <cstring>

#include "ocextra_fixture.h"

namespace ocextra_test {
namespace {

terrno untouched(yfw_map_ctx, const tidl_yfw_datatree *, tidl_yfw_datatree *) {
    return 1;
}

class TheRegistrationRecord : public OcextraTest {
protected:
    TheRegistrationRecord() {
        // Whatever the record held before.
        std::memset(&record, 'x', offsetof(yfw_map_registration, oc_to_native));
        record.framework_callbacks[0] = record.framework_callbacks[1] = untouched;
        record.flag_a = record.flag_b = 99;
        record.framework_slot = this;
        fill("yfw_map_reg_ocextra_cfg");
    }

    void fill(const char *function) { plugin.symbol<void(yfw_map_registration *)>(function)(&record); }

    yfw_map_registration record{};
};

TEST_F(TheRegistrationRecord, NamesTheTreeTheModelsAndTheirTopNodes) {
    EXPECT_STREQ(record.tree_name, "OC lldp extra config tree");
    EXPECT_STREQ(record.native_ns, native_cfg_ns);
    EXPECT_STREQ(record.native_top, "lldp");
    EXPECT_STREQ(record.oc_ns, oc_ns);
    EXPECT_STREQ(record.oc_top, "lldp");
}

TEST_F(TheRegistrationRecord, HasTheRootsOfBothDirections) {
    EXPECT_EQ(record.oc_to_native, plugin.callback(request_root));
    EXPECT_EQ(record.native_to_oc, plugin.callback(response_root));
}

TEST_F(TheRegistrationRecord, OfOperationalDataHasARootOfItsOwnForResponses) {
    fill("yfw_map_reg_ocextra_oper");
    EXPECT_STREQ(record.tree_name, "OC lldp extra oper tree");
    EXPECT_STREQ(record.native_ns, native_oper_ns);
    EXPECT_STREQ(record.native_top, "lldp");
    EXPECT_STREQ(record.oc_ns, oc_ns);
    EXPECT_STREQ(record.oc_top, "lldp");
    EXPECT_EQ(record.oc_to_native, plugin.callback(request_root));
    EXPECT_EQ(record.native_to_oc, plugin.callback(oper_response_root));
}

TEST_F(TheRegistrationRecord, HasNoFlagsAndNoDisableCapabilityCallback) {
    EXPECT_EQ(record.flag_a, 0u);
    EXPECT_EQ(record.flag_b, 0u);
    EXPECT_EQ(record.disable_capability, nullptr);
}

TEST_F(TheRegistrationRecord, LeavesTheFrameworksSlotsAlone) {
    EXPECT_EQ(record.framework_callbacks[0], untouched);
    EXPECT_EQ(record.framework_callbacks[1], untouched);
    EXPECT_EQ(record.framework_slot, this);
}

} // namespace
} // namespace ocextra_test
