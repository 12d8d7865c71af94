// The leaf and container callbacks of the native operational data that copy a value or add nothing.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using ::testing::Values;
using ::testing::ValuesIn;

enum class Needs { nothing, stitched_neighbor };

struct CopyRow {
    std::string suffix;
    std::string path;
    Needs needs;
};

void PrintTo(const CopyRow &row, std::ostream *stream) {
    *stream << row.suffix;
}

std::vector<CopyRow> copy_rows() {
    const std::string state = oc_neighbor + "/state/", counters = oc_interface + "/state/counters/";
    return {{"lldpinfo_chassisid", "/lldp/state/chassis-id", Needs::nothing},
            {"lldpinfo_systemname", "/lldp/state/system-name", Needs::nothing},
            {"lldpinfo_systemdescription", "/lldp/state/system-description", Needs::nothing},
            {"address_addresstype", state + "management-address-type", Needs::stitched_neighbor},
            {"address_ipv4address", state + "management-address", Needs::stitched_neighbor},
            {"address_ipv6address", state + "management-address", Needs::stitched_neighbor},
            {"detail_portdescription", state + "port-description", Needs::stitched_neighbor},
            {"detail_systemname", state + "system-name", Needs::stitched_neighbor},
            {"detail_systemdescription", state + "system-description", Needs::stitched_neighbor},
            {"detail_lastupdate", state + "last-update", Needs::stitched_neighbor},
            {"detail_age", state + "age", Needs::stitched_neighbor},
            {"lldpneighbor_chassisid", state + "chassis-id", Needs::stitched_neighbor},
            {"lldpneighbor_portiddetail", state + "port-id", Needs::stitched_neighbor},
            {"lldpneighbor_holdtime", state + "ttl", Needs::stitched_neighbor},
            {"interface_interfacename", oc_interface + "/name", Needs::nothing},
            {"interfacestats_receivedpackets", counters + "frame-in", Needs::nothing},
            {"interfacestats_transmittedpackets", counters + "frame-out", Needs::nothing},
            {"interfacestats_badpackets", counters + "frame-error-in", Needs::nothing},
            {"interfacestats_discardedpackets", counters + "frame-discard", Needs::nothing},
            {"interfacestats_discardedtlvs", counters + "tlv-discard", Needs::nothing},
            {"interfacestats_unrecognizedtlvs", counters + "tlv-unknown", Needs::nothing},
            {"interfacestats_transmitfailures", counters + "frame-error-out", Needs::nothing}};
}

class OperCopies : public OperTest, public ::testing::WithParamInterface<CopyRow> {};

std::string copy_label(const ::testing::TestParamInfo<CopyRow> &info) {
    return info.param.suffix;
}

INSTANTIATE_TEST_SUITE_P(EveryCopiedLeaf, OperCopies, ValuesIn(copy_rows()), copy_label);

TEST_P(OperCopies, AddTheNativeValueUnchanged) {
    for (const std::string value : {"abc", "0", "", " 1 \n", "18446744073709551616", "%s%n", "Zürich"}) {
        SCOPED_TRACE(value);
        fw.forget_calls();
        EXPECT_EQ(run_leaf(GetParam().suffix, value), YMAP_OK);
        ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
        EXPECT_EQ(summary(fw.adds[0]), GetParam().path + " = " + value);
        EXPECT_FALSE(fw.adds[0].slot_given);
    }
}

TEST_P(OperCopies, AddALeafWithoutAValueAsItIs) {
    EXPECT_EQ(run_leaf(GetParam().suffix, std::nullopt), YMAP_OK);
    ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
    EXPECT_EQ(summary(fw.adds[0]), GetParam().path);
}

TEST_P(OperCopies, DoNothingElseAndTraceTheirStartAndEnd) {
    run_leaf(GetParam().suffix, "1");
    EXPECT_THAT(fw.mapping_calls(), ElementsAre(Field(&Call::operation, add_path)));
    EXPECT_EQ(fw.debug_lines().front(), "TRC: Start");
    EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_P(OperCopies, ReturnTheStatusOfTheAddWithoutAnErrorPath) {
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run_leaf(GetParam().suffix, "1"), 0x1234u);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperCopies, AskForAStitchedNeighborWhereTheyBelongToOne) {
    const bool anyway = GetParam().needs == Needs::nothing;
    for (const int mapped : {0, 2, -1}) {
        SCOPED_TRACE(mapped);
        fw.forget_calls();
        plugin->neighbor_list_mapped() = mapped;
        EXPECT_EQ(run_leaf(GetParam().suffix, "1"), YMAP_OK);
        EXPECT_THAT(fw.adds, SizeIs(anyway ? 1 : 0));
        EXPECT_THAT(fw.errors(), IsEmpty());
        EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
    }
}

TEST_P(OperCopies, RejectAMissingNodeOrOutput) {
    Tree native(leaf("native-leaf", "1"), native_oper_ns);
    const std::string name = oper + "leaf_lvla_lldp_" + GetParam().suffix;
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(name, context, native, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_THAT(fw.error_paths, SizeIs(2));
    EXPECT_THAT(fw.adds, IsEmpty());
}

// ---- leaves of a neighbor that say that they are skipped -------------------------------------------------

class OperSkips : public OperTest, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, OperSkips,
                         Values("leaf_lvla_lldp_lldpneighbor_holdtime", "leaf_lvla_lldp_mib_chassisidsubtype",
                                "leaf_lvla_lldp_mib_portidsubtype",
                                "list_lvla_lldp_orgdeftlvlist_lldporgdeftlventry"));

TEST_P(OperSkips, TellThatTheNeighborIsNotMapped) {
    plugin->neighbor_list_mapped() = 0;
    EXPECT_EQ(run(GetParam(), leaf("native-node", "4")), YMAP_OK);
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "TRC: Neighbor list not mapped, skip", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

// Every other leaf of a neighbor is omitted as well.
class OperNeighborLeaves : public OperTest, public ::testing::WithParamInterface<std::string> {};

INSTANTIATE_TEST_SUITE_P(Every, OperNeighborLeaves,
                         Values("mib_combinedcapabilities", "mib_chassisidsubtype", "mib_portidsubtype",
                                "lldporgdeftlventry_oui", "lldporgdeftlventry_tlvsubtype",
                                "lldporgdeftlventry_tlvvalue", "lldpneighbor_deviceid"));

TEST_P(OperNeighborLeaves, AddNothingUntilTheirNeighborIsStitched) {
    for (const int mapped : {0, 2, -1}) {
        SCOPED_TRACE(mapped);
        plugin->neighbor_list_mapped() = mapped;
        EXPECT_EQ(run_leaf(GetParam(), "4"), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        EXPECT_THAT(fw.errors(), IsEmpty());
    }
}

TEST_P(OperNeighborLeaves, AddSomethingOnceItIs) {
    EXPECT_EQ(run_leaf(GetParam(), "4"), YMAP_OK);
    EXPECT_THAT(fw.adds, Not(IsEmpty()));
}

// ---- leaves that add nothing -------------------------------------------------------------------------

struct SilentRow {
    std::string suffix;
    std::string calls; // another callback that it calls, or empty
};

void PrintTo(const SilentRow &row, std::ostream *stream) {
    *stream << row.suffix;
}

class OperSilentLeaves : public OperTest, public ::testing::WithParamInterface<SilentRow> {};

INSTANTIATE_TEST_SUITE_P(Every, OperSilentLeaves,
                         Values(SilentRow{"detail_interfacename", ""}, SilentRow{"detail_deviceid", ""},
                                SilentRow{"detail_enabledcapabilities", "ymap_oc_enabled_capabilities_man_cb"},
                                SilentRow{"interface_interfacenameqd", ""},
                                SilentRow{"interface_txenabled", "ymap_qd_lldp_tx_operman_cb"},
                                // The receive leaf also runs the transmit callback.
                                SilentRow{"interface_rxenabled", "ymap_qd_lldp_tx_operman_cb"}),
                         [](const auto &test) { return test.param.suffix; });

TEST_P(OperSilentLeaves, AddNothingAndSucceed) {
    EXPECT_EQ(run_leaf(GetParam().suffix, "1"), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_P(OperSilentLeaves, RunTheCallbackBehindThem) {
    run_leaf(GetParam().suffix, "1");
    std::vector<std::string> expected = {oper + "leaf_lvla_lldp_" + GetParam().suffix};
    if (!GetParam().calls.empty())
        expected.push_back(GetParam().calls);
    EXPECT_EQ(fw.started(), expected);
}

TEST_P(OperSilentLeaves, RejectAMissingNodeOrOutput) {
    Tree native(leaf("native-leaf", "1"), native_oper_ns);
    const std::string name = oper + "leaf_lvla_lldp_" + GetParam().suffix;
    EXPECT_EQ(plugin->call(name, context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call(name, context, native, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.error_paths, SizeIs(2));
}

// ---- containers --------------------------------------------------------------------------------------

class OperContainers : public OperTest {
protected:
    terrno run_container(const std::string &name, uint32_t count) {
        Tree native(node("native-container"), native_oper_ns);
        return plugin->call_container(oper + name, context, native, count, &output);
    }
};

TEST_F(OperContainers, WithNothingToMapOnlyTrace) {
    for (const uint32_t count : {0u, 3u}) {
        EXPECT_EQ(run_container("cont_lvla_lldp", count), YMAP_OK);
        EXPECT_EQ(run_container("cont_lvla_lldp_interface_interfacestats", count), YMAP_OK);
    }
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OperContainers, TheListAndLeafDucksOnlyTrace) {
    for (const std::string name : {"duck_map_list", "duck_map_leaf", "list_lvla_lldp_details_detail"})
        EXPECT_EQ(run(name, leaf("native-node", "1")), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.errors(), IsEmpty());
}

struct RealContainer {
    std::string name;
    std::string path;
};

void PrintTo(const RealContainer &container, std::ostream *stream) {
    *stream << container.path;
}

class OperRealContainers : public OperContainers, public ::testing::WithParamInterface<RealContainer> {};

INSTANTIATE_TEST_SUITE_P(Both, OperRealContainers,
                         Values(RealContainer{"cont_lvla_lldp_node_interfaces", "/lldp/interfaces"},
                                RealContainer{"cont_lvla_lldp_mib_orgdeftlvlist",
                                              oc_neighbor + "/custom-tlvs"}));

TEST_P(OperRealContainers, AddAnEmptyContainerForOneWithoutChildren) {
    EXPECT_EQ(run_container(GetParam().name, 0), YMAP_OK);
    ASSERT_THAT(fw.adds, ElementsAre(IsPlainAddTo(&output)));
    EXPECT_EQ(summary(fw.adds[0]), GetParam().path);
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "TRC: No subtrees", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_P(OperRealContainers, AddNothingForOneWithChildren) {
    EXPECT_EQ(run_container(GetParam().name, 2), YMAP_OK);
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "TRC: No mapping done for this node", "TRC: End"));
    EXPECT_EQ(fw.numbered_lines(), fw.debug_lines());
}

TEST_P(OperRealContainers, ReturnTheStatusOfTheAdd) {
    fw.fail(add_path, 1, 0x1234);
    EXPECT_EQ(run_container(GetParam().name, 0), 0x1234u);
}

TEST_P(OperRealContainers, RejectAMissingNodeOrOutput) {
    Tree native(node("native-container"), native_oper_ns);
    EXPECT_EQ(plugin->call_container(oper + GetParam().name, context, nullptr, 0, &output),
              YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin->call_container(oper + GetParam().name, context, native, 0, nullptr),
              YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.error_paths, SizeIs(2));
}

// The custom TLV container belongs to a neighbor and is omitted along with it.
TEST_F(OperContainers, TheCustomTlvContainerNeedsAStitchedNeighbor) {
    plugin->neighbor_list_mapped() = 0;
    EXPECT_EQ(run_container("cont_lvla_lldp_mib_orgdeftlvlist", 0), YMAP_OK);
    EXPECT_THAT(fw.add_paths(), IsEmpty());
}

} // namespace
} // namespace oclldp_test
