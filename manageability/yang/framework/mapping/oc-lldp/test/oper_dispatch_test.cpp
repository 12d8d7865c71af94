// Every leaf of the native operational data: which callback its tag reaches, which ones accept an error node,
// and how each one's failure propagates.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::ValuesIn;

const std::string error_node_line = "got xpath error node ";

enum class Adds { something, nothing };
enum class ErrorNode { marked, ignored };

struct DispatchRow {
    std::string level;
    std::string tag;
    std::string handler; // without "leaf_lvla_lldp_"
    Adds adds = Adds::something;
    ErrorNode error_node = ErrorNode::ignored;

    std::string callback() const { return oper + "leaf_lvla_lldp_" + handler; }
};

void PrintTo(const DispatchRow &row, std::ostream *stream) {
    *stream << row.level << "/" << row.tag;
}

std::string without_dashes(std::string tag) {
    std::erase(tag, '-');
    return tag;
}

std::vector<DispatchRow> dispatch_rows() {
    std::vector<DispatchRow> rows = {
        {"lldp_info", "chassis-id", "lldpinfo_chassisid"},
        {"lldp_info", "chassis-id-sub-type", "lldpinfo_chassisidsubtype"},
        {"lldp_info", "system-name", "lldpinfo_systemname"},
        {"lldp_info", "system-description", "lldpinfo_systemdescription"},
        {"detail", "interface-name", "detail_interfacename", Adds::nothing},
        {"detail", "device-id", "detail_deviceid", Adds::nothing},
        {"address", "address-type", "address_addresstype"},
        {"address", "ipv4-address", "address_ipv4address"},
        {"address", "ipv6-address", "address_ipv6address"},
        {"neighbor_detail", "port-description", "detail_portdescription"},
        {"neighbor_detail", "system-name", "detail_systemname"},
        {"neighbor_detail", "system-description", "detail_systemdescription"},
        {"neighbor_detail", "enabled-capabilities", "detail_enabledcapabilities", Adds::nothing},
        {"neighbor_detail", "last-update", "detail_lastupdate", Adds::something, ErrorNode::marked},
        {"neighbor_detail", "age", "detail_age", Adds::something, ErrorNode::marked},
        {"mib", "combined-capabilities", "mib_combinedcapabilities", Adds::something, ErrorNode::marked},
        {"lldp_org_def_tlv_entry", "oui", "lldporgdeftlventry_oui"},
        {"lldp_org_def_tlv_entry", "tlv-subtype", "lldporgdeftlventry_tlvsubtype"},
        {"lldp_org_def_tlv_entry", "tlv-value", "lldporgdeftlventry_tlvvalue"},
        {"mib", "chassis-id-sub-type", "mib_chassisidsubtype"},
        {"mib", "port-id-sub-type", "mib_portidsubtype"},
        {"lldp_neighbor", "device-id", "lldpneighbor_deviceid"},
        {"lldp_neighbor", "chassis-id", "lldpneighbor_chassisid"},
        {"lldp_neighbor", "port-id-detail", "lldpneighbor_portiddetail"},
        {"lldp_neighbor", "hold-time", "lldpneighbor_holdtime", Adds::something, ErrorNode::marked},
        {"interface", "interface-name", "interface_interfacename"},
        {"interface", "interface-name-qd", "interface_interfacenameqd", Adds::nothing},
        {"interface", "tx-enabled", "interface_txenabled", Adds::nothing},
        {"interface", "rx-enabled", "interface_rxenabled", Adds::nothing}};
    for (const std::string &tag : oper_level("interface_stats").tags)
        rows.push_back({"interface_stats", tag, "interfacestats_" + without_dashes(tag), Adds::something,
                        ErrorNode::marked});
    for (const std::string &tag : oper_level("statistics").tags) {
        const bool marked = tag == "accepted-tl-vs" || tag == "last-clear";
        rows.push_back({"statistics", tag, "statistics_" + without_dashes(tag), Adds::something,
                        marked ? ErrorNode::marked : ErrorNode::ignored});
    }
    return rows;
}

class OperDispatch : public OperTest, public ::testing::WithParamInterface<DispatchRow> {
protected:
    const OperLevel &level() const { return oper_level(GetParam().level); }
    Node row_leaf() const { return leaf(GetParam().tag, "7"); }
    // Walks the row's level with the given children, from the root.
    terrno walk_level(std::vector<Node> children) {
        return walk(nest(level().path, 0, node(level().tag()).children(std::move(children))));
    }
    std::size_t runs() const { return count_of(fw.started(), GetParam().callback()); }
    std::size_t marks() const { return count_of(fw.debug_lines(), "TRC: " + error_node_line); }
};

std::string row_label(const ::testing::TestParamInfo<DispatchRow> &info) {
    return info.param.level + "_" + info.param.handler;
}

INSTANTIATE_TEST_SUITE_P(EveryLeaf, OperDispatch, ValuesIn(dispatch_rows()), row_label);

TEST_P(OperDispatch, CallsTheCallbackOfTheTag) {
    EXPECT_EQ(walk_level({row_leaf()}), YMAP_OK);
    EXPECT_EQ(runs(), 1u);
    EXPECT_EQ(fw.started().back().find("_parse_augments"), std::string::npos);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.debug_lines(), Not(Contains("TRC: Unsupported tag. Ignoring.")));
}

TEST_P(OperDispatch, GoesByTheTagWhateverTheModule) {
    EXPECT_EQ(walk_level({row_leaf().in(foreign_ns)}), YMAP_OK);
    EXPECT_EQ(runs(), 1u);
    EXPECT_THAT(fw.started(), Not(Contains(oper + level().hook)));
}

TEST_P(OperDispatch, CallsTheCallbackForEachSiblingOfTheTag) {
    EXPECT_EQ(walk_level({row_leaf(), leaf("unheard-of", "1"), row_leaf()}), YMAP_OK);
    EXPECT_EQ(runs(), 2u);
}

TEST_P(OperDispatch, TakesNoTagThatOnlyBeginsOrEndsLikeIt) {
    EXPECT_EQ(walk_level({leaf(GetParam().tag + "-x", "7"), leaf("x-" + GetParam().tag, "7")}), YMAP_OK);
    EXPECT_EQ(runs(), 0u);
}

TEST_P(OperDispatch, MarksAnErrorNodeOfTheFourteenLeavesBeforeItsCallback) {
    const bool marked = GetParam().error_node == ErrorNode::marked;
    std::vector<uint32_t> flags_at_start;
    fw.on_call("_lstrace", [&](const Call &line) {
        if (line.args.find(" " + GetParam().callback() + ":") != std::string::npos)
            flags_at_start.push_back(context.req.request_flags);
    });
    EXPECT_EQ(walk_level({row_leaf().framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(YFW_NODE_TYPE_ERROR)}),
              YMAP_OK);
    EXPECT_EQ(context.req.request_flags, marked ? 0x100u : 0u);
    EXPECT_THAT(flags_at_start, AllOf(Not(IsEmpty()), Each(marked ? 0x100u : 0u)));
    EXPECT_EQ(marks(), marked ? 1u : 0u);
    EXPECT_EQ(count_of(messages_of(fw, oper + level().walker), error_node_line), marked ? 1u : 0u);
    EXPECT_EQ(runs(), 1u);
}

TEST_P(OperDispatch, MarksNothingWithoutBothTheBitAndTheNodeType) {
    EXPECT_EQ(walk_level({row_leaf().node_type(5), row_leaf().framework_flags(0xf7).node_type(5),
                          row_leaf().framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(4),
                          row_leaf().framework_flags(YFW_FW_HAS_NODE_TYPE).node_type(0)}),
              YMAP_OK);
    EXPECT_EQ(context.req.request_flags, 0u);
    EXPECT_EQ(marks(), 0u);
}

TEST_P(OperDispatch, KeepsTheOtherRequestFlags) {
    context.req.request_flags = YFW_REQ_REPLACE_MERGE_PASS;
    EXPECT_EQ(walk_level({row_leaf().framework_flags(0x1c).node_type(5)}), YMAP_OK);
    const bool marked = GetParam().error_node == ErrorNode::marked;
    EXPECT_EQ(context.req.request_flags, marked ? 0x180u : 0x80u);
}

TEST_P(OperDispatch, StopsAtTheFirstFailureAndPassesItUpThroughAllLevels) {
    fail_adds_of(GetParam().callback(), 0x77);
    const bool fails = GetParam().adds == Adds::something;
    EXPECT_EQ(walk_level({row_leaf(), leaf("unheard-of", "1")}), fails ? 0x77u : 0u);
    EXPECT_EQ(count_of(fw.debug_lines(), "TRC: Unsupported tag. Ignoring."), fails ? 0u : 1u);
    EXPECT_THAT(hierarchy(fw), ElementsAreArray(in_and_out(level().path, 0, level().path.size())));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST(OperDispatchTable, MarksFourteenLeaves) {
    const std::vector<DispatchRow> rows = dispatch_rows();
    EXPECT_EQ(std::ranges::count(rows, ErrorNode::marked, &DispatchRow::error_node), 14);
    EXPECT_EQ(rows.size(), 46u);
}

using OperOrder = OperTest;

TEST_F(OperOrder, FollowsTheNativeChildrenNotTheTable) {
    EXPECT_EQ(
        walk(node("lldp").children(
            {node("global-lldp")
                 .children({node("lldp-info")
                                .children({leaf("system-description", "d"), leaf("system-name", "n"),
                                           leaf("chassis-id-sub-type", "4"), leaf("chassis-id", "c")})})})),
        YMAP_OK);
    EXPECT_THAT(summaries(fw), ::testing::ElementsAre(
                                   "/lldp/state/system-description = d", "/lldp/state/system-name = n",
                                   "/lldp/state/chassis-id-type = MAC_ADDRESS", "/lldp/state/chassis-id = c"));
}

TEST_F(OperOrder, LetsTheLastOfBothAddressesStand) {
    const auto addresses = [this](std::vector<Node> leaves) {
        fw.forget_calls();
        EXPECT_EQ(run("lvla_lldp_lldpneighbor_detail",
                      node("detail").children(
                          {node("network-addresses")
                               .children({node("lldp-addr-entry")
                                              .children({node("address").children(std::move(leaves))})})})),
                  YMAP_OK);
        return summary(fw.adds.back());
    };
    EXPECT_EQ(addresses({leaf("ipv4-address", "10.0.0.1"), leaf("ipv6-address", "fe80::1")}),
              oc_neighbor + "/state/management-address = fe80::1");
    EXPECT_EQ(addresses({leaf("ipv6-address", "fe80::1"), leaf("ipv4-address", "10.0.0.1")}),
              oc_neighbor + "/state/management-address = 10.0.0.1");
}

} // namespace
} // namespace oclldp_test
