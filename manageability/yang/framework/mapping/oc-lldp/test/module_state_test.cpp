// The module's global state, and the system database look-up behind "is LLDP on?".
#include <gmock/gmock.h>

#include "oclldp_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const Call library_check{"access", "/pkg/lib/libsysdb.so, 4"};
const Call bind_global{"_sysdb_bind", "/cfg/gl/lldp/, 0"};
const Call look_for_enabled{"yfw_map_get_node_info", "/lldp/config, enabled"};

Call read_enable(uint64_t connection) {
    return {"sysdb_item_get", std::to_string(connection) + ", enable, 1"};
}
Call unbind(uint64_t connection) {
    return {"_sysdb_unbind", std::to_string(connection)};
}

class ModuleState : public OclldpTest {
protected:
    terrno bind() { return plugin->symbol<decltype(ymap_bind_lldp_gl_sysdb)>("ymap_bind_lldp_gl_sysdb")(); }
    void free_bind() {
        plugin->symbol<decltype(ymap_free_lldp_gl_sysdb_bind)>("ymap_free_lldp_gl_sysdb_bind")();
    }
    terrno status() {
        return plugin->symbol<decltype(ymap_check_global_lldp_status)>("ymap_check_global_lldp_status")();
    }
    uint32_t enabled() {
        return plugin->symbol<decltype(ymap_get_ocllp_lldp_enable)>("ymap_get_ocllp_lldp_enable")(context);
    }
    void global_lldp(uint32_t value) { fw.sysdb_items["enable"] = {.value = value}; }

    Context context{YMAP_REQ_EDIT_ONE_KEY};
    static constexpr uint64_t first_connection = 0x5d01;
};

template <typename T> std::vector<T> copy_of(const T *values, std::size_t count) {
    return {values, values + count};
}

TEST_F(ModuleState, StartsAtZero) {
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(copy_of(plugin->interface_name(), 128), Each('\0'));
    EXPECT_EQ(plugin->get_with_interface_key(), 0);
    EXPECT_EQ(plugin->get_with_neighbor_key(), 0);
    EXPECT_EQ(plugin->neighbor_id(), nullptr);
    EXPECT_EQ(plugin->deleting_interface(), 0);
    EXPECT_EQ(plugin->neighbor_list_mapped(), 0);
    EXPECT_THAT(copy_of(plugin->stats(), 8), Each(0u));
    EXPECT_THAT(copy_of(plugin->stat_counts(), 8), Each(0u));
    EXPECT_EQ(plugin->subtree_count(), 0);
    EXPECT_THAT(copy_of(plugin->ring(), 16384), Each('\0'));
    EXPECT_EQ(plugin->ring_index(), 0);
}

TEST_F(ModuleState, KnowsTheEightCapabilityLetters) {
    EXPECT_EQ(plugin->capability_count(), 8);
    std::vector<std::string> letters(plugin->capability_codes(), plugin->capability_codes() + 8);
    EXPECT_THAT(letters, ElementsAre("O", "P", "B", "W", "R", "T", "C", "S"));
}

TEST_F(ModuleState, LoadingTouchesNoOperation) {
    EXPECT_THAT(fw.calls, IsEmpty());
}

// ---- binding ---------------------------------------------------------------------------------------

TEST_F(ModuleState, BindChecksForTheLibraryAndBindsToTheGlobalPath) {
    EXPECT_EQ(bind(), YMAP_OK);
    EXPECT_EQ(plugin->sysdb_conn(), first_connection);
    EXPECT_THAT(fw.calls, ElementsAre(library_check, bind_global));
}

TEST_F(ModuleState, BindReturnsTheStatusOfThePlatform) {
    fw.fail("_sysdb_bind", 1, 0x1234);
    EXPECT_EQ(bind(), 0x1234u);
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
}

TEST_F(ModuleState, BindWithoutTheLibraryFailsAndBindsNothing) {
    fw.library_readable = false;
    EXPECT_EQ(bind(), 0x8081c200u);
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(fw.calls, ElementsAre(library_check));
}

TEST_F(ModuleState, ALibraryFoundOnceIsNotLookedForAgain) {
    EXPECT_EQ(bind(), YMAP_OK);
    free_bind();
    fw.library_readable = false;
    fw.forget_calls();
    EXPECT_EQ(bind(), YMAP_OK);
    EXPECT_THAT(fw.calls, ElementsAre(bind_global));
}

TEST_F(ModuleState, AMissingLibraryIsLookedForAgain) {
    fw.library_readable = false;
    EXPECT_EQ(bind(), YMAP_ERR_SYSDB_UNAVAILABLE);
    fw.library_readable = true;
    EXPECT_EQ(bind(), YMAP_OK);
}

TEST_F(ModuleState, FreeUnbindsAndClears) {
    EXPECT_EQ(bind(), YMAP_OK);
    fw.forget_calls();
    free_bind();
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(fw.calls, ElementsAre(unbind(first_connection)));
    EXPECT_THAT(fw.bound_connections(), IsEmpty());
}

TEST_F(ModuleState, FreeWithoutAConnectionDoesNothing) {
    free_bind();
    EXPECT_THAT(fw.calls, IsEmpty());
}

TEST_F(ModuleState, FreeWithoutTheLibraryClearsButDoesNotUnbind) {
    plugin->sysdb_conn() = 77;
    fw.library_readable = false;
    free_bind();
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(fw.calls, ElementsAre(library_check));
}

// ---- the global status -----------------------------------------------------------------------------

TEST_F(ModuleState, AnExistingConnectionCountsAsEnabledUnread) {
    plugin->sysdb_conn() = 77;
    global_lldp(0);
    EXPECT_EQ(status(), 0u);
    EXPECT_EQ(plugin->sysdb_conn(), 77u);
    EXPECT_THAT(fw.calls, IsEmpty());
}

struct Item {
    const char *name;
    std::optional<ItemAnswer> answer; // none: the item is absent
    terrno status;
};

void PrintTo(const Item &item, std::ostream *stream) {
    *stream << item.name;
}

class GlobalStatus : public ModuleState, public ::testing::WithParamInterface<Item> {
protected:
    GlobalStatus() {
        if (GetParam().answer)
            fw.sysdb_items["enable"] = *GetParam().answer;
    }
};

TEST_P(GlobalStatus, FollowsTheItemEnableAndLeavesTheConnectionBound) {
    EXPECT_EQ(status(), GetParam().status);
    EXPECT_THAT(fw.calls, ElementsAre(library_check, bind_global, read_enable(first_connection)));
    EXPECT_EQ(plugin->sysdb_conn(), first_connection);
    EXPECT_THAT(fw.bound_connections(), ElementsAre(first_connection));
}

TEST_P(GlobalStatus, DecidesWhetherLldpCountsAsEnabled) {
    const bool on = GetParam().status == 0;
    EXPECT_EQ(enabled(), on ? 1u : 0u);
    EXPECT_EQ(plugin->sysdb_conn(), on ? first_connection : 0u);
    EXPECT_EQ(fw.bound_connections().size(), on ? 1u : 0u);
}

INSTANTIATE_TEST_SUITE_P(OfTheSystemDatabase, GlobalStatus,
                         ::testing::Values(Item{"On", ItemAnswer{.value = 1}, 0},
                                           Item{"Off", ItemAnswer{.value = 0}, 1},
                                           Item{"Two", ItemAnswer{.value = 2}, 1},
                                           Item{"AllBits", ItemAnswer{.value = 0xffffffffu}, 1},
                                           Item{"NoData", ItemAnswer{}, 0}, Item{"Absent", std::nullopt, 2},
                                           Item{"Failing", ItemAnswer{.status = 0x40404040}, 0x40404040}),
                         [](const auto &test) { return std::string(test.param.name); });

TEST_F(ModuleState, TheGlobalStatusWithoutTheLibraryIsItsStatus) {
    fw.library_readable = false;
    EXPECT_EQ(status(), YMAP_ERR_SYSDB_UNAVAILABLE);
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
}

TEST_F(ModuleState, TheGlobalStatusIsThatOfAFailingBind) {
    fw.fail("_sysdb_bind", 1, 0x1234);
    EXPECT_EQ(status(), 0x1234u);
    EXPECT_THAT(fw.calls_of("sysdb_item_get"), IsEmpty());
}

// ---- is LLDP on, or being turned on? ---------------------------------------------------------------

TEST_F(ModuleState, ARequestThatTurnsLldpOnNeedsNoSystemDatabase) {
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = "true"};
    EXPECT_EQ(enabled(), 1u);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(look_for_enabled));
}

TEST_F(ModuleState, ARequestThatTurnsLldpOnLeavesAnExistingConnectionAlone) {
    plugin->sysdb_conn() = 77;
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = "true"};
    EXPECT_EQ(enabled(), 1u);
    EXPECT_EQ(plugin->sysdb_conn(), 77u);
}

class OtherValues : public ModuleState, public ::testing::WithParamInterface<const char *> {};

TEST_P(OtherValues, OfEnabledInTheRequestLeaveTheAnswerToTheSystemDatabase) {
    fw.node_info[{"/lldp/config", "enabled"}] = {.value = GetParam()};
    global_lldp(0);
    EXPECT_EQ(enabled(), 0u);
    global_lldp(1);
    EXPECT_EQ(enabled(), 1u);
}

INSTANTIATE_TEST_SUITE_P(ThanTrue, OtherValues, ::testing::Values("false", "", "TRUE", "true ", "tru", "1"));

TEST_F(ModuleState, AFormerConnectionIsReplacedByAFreshOne) {
    EXPECT_EQ(bind(), YMAP_OK);
    fw.forget_calls();
    global_lldp(1);
    EXPECT_EQ(enabled(), 1u);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(look_for_enabled, unbind(first_connection), bind_global,
                                                read_enable(first_connection + 1)));
    EXPECT_THAT(fw.bound_connections(), ElementsAre(first_connection + 1));
}

TEST_F(ModuleState, AConnectionThatFindsLldpOffIsReleased) {
    global_lldp(0);
    EXPECT_EQ(enabled(), 0u);
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(look_for_enabled, library_check, bind_global,
                                                read_enable(first_connection), unbind(first_connection)));
}

TEST_F(ModuleState, WithoutTheLibraryLldpIsNotEnabledAndNothingStaysBound) {
    fw.library_readable = false;
    EXPECT_EQ(enabled(), 0u);
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(fw.calls_of("_sysdb_bind"), IsEmpty());
}

TEST_F(ModuleState, WithoutTheLibraryAFormerConnectionIsClearedButNotUnbound) {
    plugin->sysdb_conn() = 77;
    fw.library_readable = false;
    EXPECT_EQ(enabled(), 0u);
    EXPECT_EQ(plugin->sysdb_conn(), 0u);
    EXPECT_THAT(fw.calls_of("_sysdb_unbind"), IsEmpty());
}

} // namespace
} // namespace oclldp_test
