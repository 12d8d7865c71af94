// The generated callbacks of the OpenConfig nodes: one native path per leaf, and the nodes without one.
#include "oq_requests.h"

namespace oclldp_test::request_mapping {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string statistics = "/lldp/nodes/node/statistics/";
const std::string info = "/lldp/global-lldp/lldp-info/";
const std::string interface_stats = "/lldp/nodes/node/interfaces/interface/interface-stats/";
const std::string neighbor = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor/";
const std::string address = neighbor + "detail/network-addresses/lldp-addr-entry/address/";
const std::string tlv_list = neighbor + "mib/org-def-tlv-list";
const std::string tlv_entry = tlv_list + "/lldp-org-def-tlv-entry";

// ---- leaves that read ------------------------------------------------------------------------------

struct ReadLeaf {
    std::string callback; // after the common prefix
    std::string name;     // OpenConfig leaf
    std::vector<Written> paths;
};

void PrintTo(const ReadLeaf &row, std::ostream *stream) {
    *stream << row.callback;
}

const std::vector<ReadLeaf> read_leaves = {
    {"leaf_lvla_lldp_state_enabled", "enabled", {cfg("/lldp/enable")}},
    {"leaf_lvla_lldp_state_hellotimer", "hello-timer", {cfg("/lldp/timer")}},
    {"leaf_lvla_lldp_state_systemname", "system-name", {oper(info + "system-name")}},
    {"leaf_lvla_lldp_state_systemdescription", "system-description", {oper(info + "system-description")}},
    {"leaf_lvla_lldp_state_chassisid", "chassis-id", {oper(info + "chassis-id")}},
    {"leaf_lvla_lldp_state_chassisidtype", "chassis-id-type", {oper(info + "chassis-id-sub-type")}},
    {"leaf_lvla_lldp_counters_framein", "frame-in", {oper(statistics + "received-packets")}},
    {"leaf_lvla_lldp_counters_frameout", "frame-out", {oper(statistics + "transmitted-packets")}},
    {"leaf_lvla_lldp_counters_frameerrorin", "frame-error-in", {oper(statistics + "bad-packets")}},
    {"leaf_lvla_lldp_counters_framediscard", "frame-discard", {oper(statistics + "discarded-packets")}},
    {"leaf_lvla_lldp_counters_tlvdiscard", "tlv-discard", {oper(statistics + "discarded-tl-vs")}},
    {"leaf_lvla_lldp_counters_tlvunknown", "tlv-unknown", {oper(statistics + "unrecognized-tl-vs")}},
    {"leaf_lvla_lldp_counters_entriesagedout", "entries-aged-out", {oper(statistics + "aged-out-entries")}},
    {"leaf_lvla_lldp_counters_lastclear", "last-clear", {oper(statistics + "last-clear")}},
    {"leaf_lvla_lldp_counters_tlvaccepted", "tlv-accepted", {oper(statistics + "accepted-tl-vs")}},
    {"leaf_lvlb_lldp_counters_framein", "frame-in", {oper(interface_stats + "received-packets")}},
    {"leaf_lvlb_lldp_counters_frameout", "frame-out", {oper(interface_stats + "transmitted-packets")}},
    {"leaf_lvlb_lldp_counters_frameerrorin", "frame-error-in", {oper(interface_stats + "bad-packets")}},
    {"leaf_lvlb_lldp_counters_framediscard", "frame-discard", {oper(interface_stats + "discarded-packets")}},
    {"leaf_lvlb_lldp_counters_tlvdiscard", "tlv-discard", {oper(interface_stats + "discarded-tl-vs")}},
    {"leaf_lvlb_lldp_counters_tlvunknown", "tlv-unknown", {oper(interface_stats + "unrecognized-tl-vs")}},
    {"leaf_lvlb_lldp_counters_lastclear", "last-clear", {oper(interface_stats + "last-clear")}},
    {"leaf_lvla_lldp_counters_frameerrorout", "frame-error-out", {oper(interface_stats + "transmit-failures")}},
    {"leaf_lvlb_lldp_state_systemname", "system-name", {oper(neighbor + "detail/system-name")}},
    {"leaf_lvlb_lldp_state_systemdescription",
     "system-description",
     {oper(neighbor + "detail/system-description")}},
    {"leaf_lvlb_lldp_state_chassisid", "chassis-id", {oper(neighbor + "chassis-id")}},
    {"leaf_lvlb_lldp_state_chassisidtype", "chassis-id-type", {oper(neighbor + "mib/chassis-id-sub-type")}},
    {"leaf_lvla_lldp_state_id", "id", {oper(neighbor + "device-id")}},
    {"leaf_lvla_lldp_state_ttl", "ttl", {oper(neighbor + "hold-time")}},
    {"leaf_lvla_lldp_state_portid", "port-id", {oper(neighbor + "port-id-detail")}},
    {"leaf_lvla_lldp_state_portidtype", "port-id-type", {oper(neighbor + "mib/port-id-sub-type")}},
    {"leaf_lvla_lldp_state_portdescription", "port-description", {oper(neighbor + "detail/port-description")}},
    {"leaf_lvla_lldp_state_managementaddress",
     "management-address",
     {oper(address + "ipv4-address"), oper(address + "ipv6-address")}},
    {"leaf_lvla_lldp_state_managementaddresstype", "management-address-type", {oper(address + "address-type")}},
    {"leaf_lvla_lldp_state_age", "age", {oper(neighbor + "detail/age")}},
    {"leaf_lvla_lldp_state_lastupdate", "last-update", {oper(neighbor + "detail/last-update")}},
    {"leaf_lvla_lldp_tlv_oui", "oui", {oper(tlv_entry + "/oui")}},
    {"leaf_lvla_lldp_state_oui", "oui", {oper(tlv_entry + "/oui")}},
    {"leaf_lvla_lldp_tlv_ouisubtype", "oui-subtype", {oper(tlv_entry + "/tlv-subtype")}},
    {"leaf_lvla_lldp_state_ouisubtype", "oui-subtype", {oper(tlv_entry + "/tlv-subtype")}},
    {"leaf_lvla_lldp_state_value", "value", {oper(tlv_entry + "/tlv-value")}},
};

class GeneratedLeaf : public OqTest, public ::testing::WithParamInterface<ReadLeaf> {};

TEST_P(GeneratedLeaf, AsksForItsPathInBothKindsOfReadAndPassesAValueOnAsAFilter) {
    for (const uint32_t kind : read_kinds) {
        for (const std::optional<std::string> &value : {std::optional<std::string>(), {"17"}}) {
            SCOPED_TRACE("kind " + std::to_string(kind) + ", " + text_of(value));
            Context context(kind);
            Tree in(selection(GetParam().name, value));
            fw.forget_calls();
            EXPECT_EQ(call(oq + GetParam().callback, context, in), YMAP_OK);
            std::vector<Written> expected = GetParam().paths;
            for (Written &path : expected)
                path.value = value;
            EXPECT_EQ(written(in), expected);
            expect_lines();
            EXPECT_THAT(fw.error_paths, IsEmpty());
        }
    }
}

TEST_P(GeneratedLeaf, IgnoresEveryEdit) {
    for (const uint32_t kind : edit_kinds) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_DELETE, YFW_OP_REMOVE}) {
            SCOPED_TRACE("kind " + std::to_string(kind) + ", operation " + std::to_string(operation));
            Context context(kind);
            Tree in(leaf(GetParam().name, "17").operation(operation));
            fw.forget_calls();
            EXPECT_EQ(call(oq + GetParam().callback, context, in), YMAP_OK);
            EXPECT_THAT(fw.adds, IsEmpty());
            EXPECT_EQ(in->operation, operation);
            expect_lines();
        }
    }
}

TEST_P(GeneratedLeaf, ReturnsTheStatusOfItsLastAddUnchanged) {
    Context context(YMAP_REQ_GET);
    Tree in(node(GetParam().name));
    fw.fail("yfw_map_datatree_add_path_flagged", static_cast<unsigned>(GetParam().paths.size()), 0x12345678);
    EXPECT_EQ(call(oq + GetParam().callback, context, in), 0x12345678u);
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Rows, GeneratedLeaf, ::testing::ValuesIn(read_leaves),
                         [](const auto &test) { return test.param.callback; });

using ManagementAddress = OqTest;

TEST_F(ManagementAddress, AsksForTheIpv6AddressThoughTheAddOfTheIpv4AddressFails) {
    Context context(YMAP_REQ_GET);
    Tree in(node("management-address"));
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 91);
    EXPECT_EQ(call(oq + "leaf_lvla_lldp_state_managementaddress", context, in), YMAP_OK);
    EXPECT_THAT(fw.add_paths(), ElementsAre(address + "ipv4-address", address + "ipv6-address"));
}

// ---- leaves that forward ---------------------------------------------------------------------------

struct Forward {
    std::string callback;
    std::string manual;
    Node input;
    uint32_t kind;
};

void PrintTo(const Forward &forward, std::ostream *stream) {
    *stream << forward.callback << " to " << forward.manual;
}

class ForwardingLeaf : public OqTest, public ::testing::WithParamInterface<Forward> {
protected:
    // Status and adds of one call with a fresh input node.
    std::pair<terrno, std::vector<Written>> run(const std::string &name) {
        Context context(GetParam().kind);
        Tree in(GetParam().input);
        fw.forget_calls();
        const terrno status = call(name, context, in);
        return {status, written(in)};
    }
};

TEST_P(ForwardingLeaf, DoesWhatTheHandWrittenCallbackDoes) {
    const auto expected = run(GetParam().manual);
    EXPECT_EQ(run(oq + GetParam().callback), expected);
    EXPECT_THAT(fw.started(), ElementsAre(oq + GetParam().callback, GetParam().manual));
    EXPECT_EQ(fw.debug_lines().front(), "TRC: Start");
    EXPECT_EQ(fw.debug_lines().back(), "TRC: End");
}

TEST_P(ForwardingLeaf, ReturnsTheHandWrittenCallbacksFailureUnchanged) {
    fw.fail("yfw_map_datatree_add_path_flagged", 0, 0x4711);
    const auto expected = run(GetParam().manual);
    EXPECT_NE(expected.first, YMAP_OK);
    EXPECT_EQ(run(oq + GetParam().callback), expected);
}

const Forward refused_type{"leaf_lvla_lldp_tlv_type", "ymap_qd_custom_tlv_typekey_man_cb", match("type", "1"),
                           YMAP_REQ_GET};

INSTANTIATE_TEST_SUITE_P(
    Rows, ForwardingLeaf,
    ::testing::Values(
        Forward{"leaf_lvla_lldp_config_suppresstlvadvertisement", "ymap_oc_lldp_suppresstlvadv_manual_cb",
                node("suppress-tlv-advertisement"), YMAP_REQ_GET},
        Forward{"leaf_lvla_lldp_config_suppresstlvadvertisement", "ymap_oc_lldp_suppresstlvadv_manual_cb",
                leaf("suppress-tlv-advertisement", "SYSTEM_NAME"), YMAP_REQ_EDIT_ONE_KEY},
        Forward{"leaf_lvla_lldp_state_suppresstlvadvertisement", "ymap_oc_lldp_suppresstlvadv_manual_cb",
                node("suppress-tlv-advertisement"), YMAP_REQ_GET},
        Forward{"leaf_lvlb_lldp_config_enabled", "ymap_oc_interface_enabled_man_cb", node("enabled"),
                YMAP_REQ_GET},
        Forward{"leaf_lvlb_lldp_config_enabled", "ymap_oc_interface_enabled_man_cb", leaf("enabled", "true"),
                YMAP_REQ_EDIT_ONE_KEY},
        refused_type,
        Forward{"leaf_lvla_lldp_capability_name", "ymap_qd_lldp_neighbor_capabilities_man_cb", node("name"),
                YMAP_REQ_GET}));

// ---- custom TLVs -----------------------------------------------------------------------------------

class CustomTlvs : public OqTest, public ::testing::WithParamInterface<uint32_t> {
protected:
    Context context{GetParam()};
    const std::string container = oq + "cont_lvla_lldp_neighbor_customtlvs";
    const std::string list = oq + "list_lvla_lldp_customtlvs_tlv";
};

TEST_P(CustomTlvs, AsAWholeAskForTheNativeList) {
    Tree in(leaf("custom-tlvs", "unused"));
    EXPECT_EQ(plugin->call_container(container, context, in, 0, &output), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(oper(tlv_list)));
    expect_lines({"TRC: No subtrees"});
}

TEST_P(CustomTlvs, AsAWholeReturnTheStatusOfTheAdd) {
    Tree in(node("custom-tlvs"));
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 92);
    EXPECT_EQ(plugin->call_container(container, context, in, 0, &output), 92u);
}

TEST_P(CustomTlvs, WithNamedChildrenAreLeftToThem) {
    for (const uint32_t count : {1u, 7u}) {
        Tree in(node("custom-tlvs").children({node("tlv")}));
        fw.forget_calls();
        EXPECT_EQ(plugin->call_container(container, context, in, count, &output), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
        expect_lines({"TRC: No mapping done for this node"});
    }
}

TEST_P(CustomTlvs, EntryIsAskedForWithoutASource) {
    Tree in(leaf("tlv", "unused"));
    EXPECT_EQ(call(list, context, in), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(oper(tlv_entry).as_entry()));
    expect_lines();
}

TEST_P(CustomTlvs, EntryThatIsDeletedHandsItsOperationOver) {
    for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
        Tree in(node("tlv").operation(operation));
        fw.forget_calls();
        EXPECT_EQ(call(list, context, in), YMAP_OK);
        EXPECT_THAT(written(in), ElementsAre(oper(tlv_entry).from_input(operation).as_entry()));
    }
}

TEST_P(CustomTlvs, EntryLeavesItToTheFrameworkToSayWhatADeleteIs) {
    Tree in(node("tlv").operation(YFW_OP_REPLACE));
    fw.fail("yfw_map_is_request_delete", 0, 1);
    EXPECT_EQ(call(list, context, in), YMAP_OK);
    EXPECT_THAT(written(in), ElementsAre(oper(tlv_entry).from_input(YFW_OP_REPLACE).as_entry()));
}

TEST_P(CustomTlvs, EntryReturnsTheStatusOfTheAdd) {
    Tree in(node("tlv"));
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 93);
    EXPECT_EQ(call(list, context, in), 93u);
}

INSTANTIATE_TEST_SUITE_P(InEveryKindOfRequest, CustomTlvs,
                         ::testing::Values(YMAP_REQ_GET_CONFIG, YMAP_REQ_GET, YMAP_REQ_EDIT_ONE_KEY));

// ---- nodes without a mapping of their own ----------------------------------------------------------

const std::vector<std::string> containers = {"duck_map_container",
                                             "cont_lvla_lldp",
                                             "cont_lvla_lldp_config",
                                             "cont_lvla_lldp_state",
                                             "cont_lvla_lldp_state_counters",
                                             "cont_lvla_lldp_interface_config",
                                             "cont_lvla_lldp_interface_state",
                                             "cont_lvlb_lldp_state_counters",
                                             "cont_lvla_lldp_interface_neighbors",
                                             "cont_lvla_lldp_neighbor_config",
                                             "cont_lvla_lldp_neighbor_state",
                                             "cont_lvla_lldp_neighbor_capabilities",
                                             "cont_lvla_lldp_tlv_config",
                                             "cont_lvla_lldp_tlv_state",
                                             "cont_lvla_lldp_capability_config",
                                             "cont_lvla_lldp_capability_state"};

class Unmapped : public OqTest {
protected:
    // The functions that wrote the numbered lines.
    std::vector<std::string> writers() const {
        std::vector<std::string> names;
        for (const LogLine &line : fw.lines) {
            if (line.channel == LogLine::Channel::numbered)
                names.push_back(line.function);
        }
        return names;
    }
};

TEST_F(Unmapped, ContainersAreOneFunctionThatSucceedsAndAddsNothing) {
    const std::string duck = oq + "duck_map_container";
    for (const std::string &name : containers) {
        for (const uint32_t kind : {0u, 10u, 1u}) {
            for (const uint32_t count : {0u, 3u}) {
                SCOPED_TRACE(name + " of kind " + std::to_string(kind));
                Context context(kind);
                Tree in(node("config").operation(YFW_OP_DELETE));
                fw.forget_calls();
                EXPECT_EQ(plugin->address(oq + name), plugin->address(duck));
                EXPECT_EQ(plugin->call_container(oq + name, context, in, count, &output), YMAP_OK);
                EXPECT_THAT(fw.adds, IsEmpty());
                expect_lines();
                EXPECT_THAT(writers(), ElementsAre(duck, duck));
            }
        }
    }
}

TEST_F(Unmapped, ListsAreOneFunctionThatSucceedsEvenWithoutNodes) {
    const std::string duck = oq + "duck_map_list";
    Tree in(node("capability"));
    for (const std::string name : {"duck_map_list", "list_lvla_lldp_capabilities_capability"}) {
        for (tidl_yfw_datatree *const input : {static_cast<tidl_yfw_datatree *>(in), {}}) {
            for (tidl_yfw_datatree *const out : {&output, {}}) {
                Context context(YMAP_REQ_GET);
                fw.forget_calls();
                EXPECT_EQ(plugin->address(oq + name), plugin->address(duck));
                EXPECT_EQ(plugin->call(oq + name, context, input, out), YMAP_OK);
                EXPECT_THAT(fw.adds, IsEmpty());
                EXPECT_THAT(fw.error_paths, IsEmpty());
                EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: End"));
                EXPECT_THAT(writers(), ElementsAre(duck));
            }
        }
    }
}

// 55 is not one of the mapping's own statuses; kept on purpose.
TEST_F(Unmapped, LeavesAreOneFunctionThatReturns55AndAddsNothing) {
    const std::string duck = oq + "duck_map_leaf";
    for (const std::string name : {"duck_map_leaf", "leaf_lvla_lldp_state_type"}) {
        for (const uint32_t kind : {0u, 10u, 1u}) {
            Context context(kind);
            Tree in(leaf("type", "127"));
            fw.forget_calls();
            EXPECT_EQ(plugin->address(oq + name), plugin->address(duck));
            EXPECT_EQ(call(oq + name, context, in), 55u);
            EXPECT_THAT(fw.adds, IsEmpty());
            EXPECT_THAT(fw.error_paths, IsEmpty());
            expect_lines();
            EXPECT_THAT(writers(), ElementsAre(duck, duck));
        }
    }
}

} // namespace
} // namespace oclldp_test::request_mapping
