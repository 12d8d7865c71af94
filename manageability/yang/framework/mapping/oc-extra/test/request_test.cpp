// Which native paths a request asks for.
#include <gmock/gmock.h>

#include "ocextra_fixture.h"

namespace ocextra_test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;

using Paths = std::vector<std::string>;

const std::string enabled_callback = "ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_enabled";
const std::string suppressed_callback =
    "ymap_oq_ocextra_openconfiglldp_leaf_lvla_lldp_state_suppresstlvadvertisement";

const Paths for_suppressed = {
    "/lldp/tlv-select/system-name/disable",        "/lldp/tlv-select/port-description/disable",
    "/lldp/tlv-select/system-description/disable", "/lldp/tlv-select/system-capabilities/disable",
    "/lldp/tlv-select/management-address/disable",
};

Paths both_of(Paths first, const Paths &second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

const Paths for_enabled = both_of({"/lldp/enable", "/lldp/timer"}, for_suppressed);
const Paths for_both = both_of(for_enabled, for_suppressed);
const Paths for_ttl = {"/lldp/holdtime"};
const Paths for_state = both_of(both_of(for_enabled, for_ttl), for_suppressed);

const std::string announcement = "/lldp/nodes/node/neighbors/details/detail/lldp-neighbor";
const std::string address_entry = announcement + "/detail/network-addresses/lldp-addr-entry";

const Paths for_entry = {announcement + "/port-id-detail"};
const Paths for_address = {address_entry + "/address/address-type", address_entry + "/address/ipv4-address",
                           address_entry + "/address/ipv6-address"};
const Paths for_number = both_of(for_address, {address_entry + "/if-num"});
const Paths for_address_state = both_of(for_address, for_number);
const Paths for_addresses = both_of(for_address, for_address_state);
const Paths for_capabilities = {announcement + "/mib/combined-capabilities"};
const Paths for_neighbors = both_of(for_entry, both_of(for_addresses, for_capabilities));
const Paths for_everything = both_of(for_state, for_neighbors);

Node lldp(std::vector<Node> children) {
    return node("lldp").children(std::move(children));
}

Node state(std::vector<Node> children) {
    return node("state").children(std::move(children));
}

Node neighbor(std::vector<Node> children) {
    return node("interfaces")
        .children(
            {node("interface")
                 .children({match("name", "eth1"),
                            node("neighbors").children({node("neighbor").children(std::move(children))})})});
}

Node address(std::vector<Node> children) {
    return neighbor({node("mgmt-addresses").children({node("mgmt-address").children(std::move(children))})});
}

struct Request {
    const char *name;
    Node root;
    Paths paths;
};

void PrintTo(const Request &request, std::ostream *stream) {
    *stream << request.name;
}

class ARead : public OcextraTest, public ::testing::WithParamInterface<Request> {};

TEST_P(ARead, AsksForWhatItNeedsAndForNothingElse) {
    Context context(YMAP_REQ_GET);
    Tree request(GetParam().root);
    EXPECT_EQ(call(request_root, context, request), YMAP_OK);
    EXPECT_EQ(fw.add_paths(), GetParam().paths);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ARead,
    ::testing::Values(
        Request{"Everything", node("lldp"), for_everything},
        Request{"TheWholeState", lldp({node("state")}), for_state},
        Request{"Enabled", lldp({state({node("enabled")})}), for_enabled},
        Request{"TheTimeToLive", lldp({state({node("ttl")})}), for_ttl},
        Request{"SuppressedTlvs", lldp({state({node("suppress-tlv-advertisement")})}), for_suppressed},
        Request{"BothLeaves", lldp({state({node("suppress-tlv-advertisement"), node("enabled")})}), for_both},
        Request{"OtherLeavesOfTheState", lldp({state({node("hello-timer"), node("counters")})}), {}},
        Request{"AllStateWhereAnotherLeafMatches", lldp({state({match("system-name", "r1")})}), for_state},
        Request{"AnotherLeafWhereEnabledMatches",
                lldp({state({match("enabled", "false"), node("hello-timer")})}), for_enabled},
        Request{"AllStateWhereEnabledMatches", lldp({state({match("enabled", "false")})}), for_state},
        Request{"Configuration", lldp({node("config")}), {}},
        Request{"InterfacesOnly", lldp({node("interfaces").children({node("interface")})}), for_neighbors},
        Request{"AnInterfacesState",
                lldp({node("interfaces").children({node("interface").children({node("state")})})}),
                {}},
        Request{"StateBesideInterfaces", lldp({node("interfaces"), state({node("enabled")})}),
                both_of(for_enabled, for_neighbors)},
        Request{"ANeighbor", lldp({neighbor({match("id", "r2#p")})}), for_neighbors},
        Request{"ANeighborsState", lldp({neighbor({match("id", "r2#p"), node("state")})}), {}},
        Request{"ANeighborsAddresses", lldp({neighbor({match("id", "r2#p"), node("mgmt-addresses")})}),
                both_of(for_entry, for_addresses)},
        Request{"TheKeyOfAnAddress", lldp({address({node("address")})}), both_of(for_entry, for_address)},
        Request{"AnAddressByItsKey", lldp({address({match("address", "192.0.2.1")})}),
                both_of(for_entry, for_addresses)},
        Request{"TheInterfaceNumberOfAnAddress",
                lldp({address({node("state").children({node("interface-number")})})}),
                both_of(for_entry, for_number)},
        Request{"AnAddressOfItsState", lldp({address({node("state").children({node("address")})})}),
                both_of(for_entry, for_address)},
        Request{"ANeighborsCapabilities", lldp({neighbor({node("capabilities")})}),
                both_of(for_entry, for_capabilities)},
        Request{"TheStateOfAnotherModel", lldp({node("state").in(foreign_ns)}), {}},
        Request{"EnabledOfAnotherModel", lldp({state({node("enabled").in(foreign_ns)})}), {}}),
    [](const auto &test) { return std::string(test.param.name); });

class ARequest : public OcextraTest {};

TEST_F(ARequest, AddsItsPathsInTheNativeModelWithoutValueAndSource) {
    Context context(YMAP_REQ_GET);
    Tree request(node("lldp"));
    call(request_root, context, request);
    for (const Add &add : fw.adds)
        EXPECT_EQ(add.ns, add.path.starts_with("/lldp/nodes") ? native_oper_ns : native_cfg_ns) << add.path;
    EXPECT_THAT(fw.adds, Each(Field(&Add::value, std::nullopt)));
    EXPECT_THAT(fw.adds, Each(Field(&Add::source, nullptr)));
    EXPECT_THAT(fw.adds, Each(Field(&Add::parent, &output)));
    EXPECT_THAT(fw.adds, Each(Field(&Add::flags, 0u)));
}

TEST_F(ARequest, AsksForTheSameWhenOnlyStateIsWanted) {
    Context context(YMAP_REQ_GET);
    context.descriptor.req_content = YFW_CONTENT_OPERATIONAL;
    Tree request(node("lldp"));
    EXPECT_EQ(call(request_root, context, request), YMAP_OK);
    EXPECT_EQ(fw.add_paths(), for_everything);
}

TEST_F(ARequest, AsksForNothingWhenOnlyConfigurationIsWanted) {
    Context get_config(YMAP_REQ_GET_CONFIG);
    Context get(YMAP_REQ_GET);
    get.descriptor.req_content = YFW_CONTENT_CONFIG;
    for (Context *context : {&get_config, &get}) {
        Tree request(node("lldp"));
        EXPECT_EQ(call(request_root, *context, request), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
    }
}

TEST_F(ARequest, MapsNoEdit) {
    for (const uint32_t kind : {1u, 8u, 15u}) {
        Context context(kind);
        Tree request(
            lldp({node("config").children({leaf("enabled", "false")}), state({leaf("enabled", "true")})}));
        EXPECT_EQ(call(request_root, context, request), YMAP_OK);
        EXPECT_THAT(fw.adds, IsEmpty());
    }
}

TEST_F(ARequest, WithoutADescriptorAsksForNothing) {
    Context context(YMAP_REQ_GET);
    context.req.request = nullptr;
    Tree request(node("lldp"));
    EXPECT_EQ(call(request_root, context, request), YMAP_OK);
    EXPECT_THAT(fw.adds, IsEmpty());
}

// However far it got.
TEST_F(ARequest, EndsWithTheStatusOfThePathThatCannotBeAdded) {
    for (unsigned nth = 1; nth <= for_everything.size(); nth++) {
        fw.reset();
        fw.fail("yfw_map_datatree_add_path_flagged", nth, 77);
        Context context(YMAP_REQ_GET);
        Tree request(node("lldp"));
        EXPECT_EQ(call(request_root, context, request), 77u);
        EXPECT_EQ(fw.calls_of("yfw_map_datatree_add_path_flagged").size(), nth);
    }
}

TEST_F(ARequest, WithABrokenArrayOfChildrenFails) {
    for (const Node &root : {node("lldp").broken_children(2), lldp({node("state").broken_children(2)}),
                             lldp({node("interfaces").broken_children(1)})}) {
        fw.reset();
        Context context(YMAP_REQ_GET);
        Tree request(root);
        EXPECT_EQ(call(request_root, context, request), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
        EXPECT_THAT(fw.adds, IsEmpty());
    }
}

TEST_F(ARequest, TracesTheWalkersAndCallbacksOfTheNodesThatItVisits) {
    Context context(YMAP_REQ_GET);
    Tree request(lldp({state({node("enabled")})}));
    call(request_root, context, request);
    EXPECT_THAT(fw.started(), ElementsAre(request_root, request_root + "_state",
                                          request_root + "_state_enabled", enabled_callback));
    EXPECT_THAT(fw.numbered_lines(), ElementsAre("TRC: Start", "TRC: Start", "TRC: Start", "TRC: Start",
                                                 "TRC: End", "TRC: End", "TRC: End", "TRC: End"));
}

// ---- every callback -------------------------------------------------------------------------------------

class ACallback : public OcextraTest, public ::testing::WithParamInterface<std::string> {};

TEST_P(ACallback, RefusesMissingNodes) {
    Context context(YMAP_REQ_GET);
    Tree in(node("lldp"));
    EXPECT_EQ(plugin.call(GetParam(), context, nullptr, &output), YMAP_ERR_INVALID_ARGS);
    EXPECT_EQ(plugin.call(GetParam(), context, in, nullptr), YMAP_ERR_INVALID_ARGS);
    EXPECT_THAT(fw.errors(), ElementsAre("Invalid arguments passed!", "Invalid arguments passed!"));
    EXPECT_EQ(fw.error_paths.size(), 2u);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_P(ACallback, AbortsWithoutAContext) {
    Tree in(node("lldp"));
    EXPECT_DEATH(plugin.call(GetParam(), nullptr, in, &output), "NULL != ctx");
}

INSTANTIATE_TEST_SUITE_P(
    Of, ACallback,
    ::testing::Values(request_root, request_root + "_state", request_root + "_state_enabled",
                      request_root + "_state_suppresstlvadvertisement", enabled_callback, suppressed_callback,
                      response_root, request_root + "_state_ttl", request_root + "_interfaces",
                      request_root + "_interfaces_interface", request_root + "_interface_neighbors",
                      request_root + "_neighbors_neighbor", request_root + "_neighbor_mgmtaddresses",
                      request_root + "_mgmtaddresses_mgmtaddress", request_root + "_mgmtaddress_address",
                      request_root + "_mgmtaddress_state", request_root + "_state_address",
                      request_root + "_state_interfacenumber", request_root + "_neighbor_capabilities",
                      oper_response_root, neighbor_callback, address_callback, capabilities_callback,
                      holdtime_callback),
    [](const auto &test) { return test.param; });

} // namespace
} // namespace ocextra_test
