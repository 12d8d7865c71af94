// What a native response says of neighbors.
#include <gmock/gmock.h>

#include "ocextra_fixture.h"

namespace ocextra_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

using Lines = std::vector<std::string>;

const std::string native_detail = "/lldp/nodes/node/neighbors/details/detail";
const std::string native_neighbor = native_detail + "/lldp-neighbor";
const std::string neighbor_entry = "/lldp/interfaces/interface/neighbors/neighbor";
const std::string address_list = neighbor_entry + "/mgmt-addresses/mgmt-address";
const std::string capability_list = neighbor_entry + "/capabilities/capability";

// A node above has one child.
Node above(const char *name, Node child) {
    return node(name).children({std::move(child)});
}

Node announced(std::vector<Node> children) {
    return above(
        "lldp",
        above(
            "nodes",
            above("node", above("neighbors",
                                above("details",
                                      above("detail", node("lldp-neighbor").children(std::move(children))))))));
}

Node address(const char *type, std::vector<Node> addresses, std::vector<Node> others = {}) {
    if (type != nullptr)
        addresses.insert(addresses.begin(), leaf("address-type", type));
    others.insert(others.begin(), node("address").children(std::move(addresses)));
    return node("lldp-addr-entry").children(std::move(others));
}

Node addresses(std::vector<Node> entries) {
    return announced({above("detail", node("network-addresses").children(std::move(entries)))});
}

Node capabilities(const char *combined) {
    return announced({above("mib", leaf("combined-capabilities", combined))});
}

class ANeighbor : public OcextraTest {
protected:
    ANeighbor() {
        is(native_detail, "interface-name", "eth1");
        is(native_detail, "device-id", "r2");
        is(native_neighbor, "port-id-detail", "p1");
    }

    void is(const std::string &path, const std::string &name, std::optional<std::string> value) {
        fw.node_info[{path, name}] = {.value = std::move(value), .status = 0};
    }

    // What the response is answered with, as "PATH=VALUE".
    Lines answer(const Node &root, Context &context) {
        Tree response(root, native_oper_ns);
        EXPECT_EQ(call(oper_response_root, context, response), YMAP_OK);
        Lines lines;
        for (const Add &add : fw.adds)
            lines.push_back(add.path + "=" + add.value.value_or("nothing"));
        return lines;
    }

    Lines answer(const Node &root) {
        Context context(YMAP_REQ_GET);
        return answer(root, context);
    }

    Lines entries() const {
        Lines paths;
        for (const yfw_map_stitch &record : fw.stitches)
            paths.emplace_back(record.keyed_path);
        return paths;
    }
};

std::string entry(const std::string &interface, const std::string &id) {
    return "/lldp/interfaces/interface[name=" + interface + "]/neighbors/neighbor[id=" + id + "]/";
}

// ---- its entry ------------------------------------------------------------------------------------------

TEST_F(ANeighbor, HasTheEntryOfItsInterfaceDeviceAndPort) {
    EXPECT_EQ(answer(announced({leaf("port-id-detail", "p1")})), Lines{});
    EXPECT_EQ(entries(), Lines{entry("eth1", "r2#p1")});
    ASSERT_EQ(fw.stitches.size(), 1u);
    EXPECT_EQ(fw.stitches[0].parent, &output);
    EXPECT_EQ(fw.stitches[0].list_path, neighbor_entry);
    EXPECT_STREQ(fw.stitches[0].ns, oc_ns);
}

TEST_F(ANeighbor, IsNamedAfterItsDeviceAloneWithoutAPort) {
    is(native_neighbor, "port-id-detail", std::nullopt);
    answer(announced({}));
    EXPECT_EQ(entries(), Lines{entry("eth1", "r2")});
}

TEST_F(ANeighbor, WithoutANameIsNamedWithoutBrackets) {
    is(native_detail, "device-id", "[DISABLED]");
    answer(announced({}));
    EXPECT_EQ(entries(), Lines{entry("eth1", "DISABLED#p1")});
}

TEST_F(ANeighbor, WithoutAnIdOrAnInterfaceIsPassedOver) {
    const Node root = addresses({address("ipv4", {leaf("ipv4-address", "192.0.2.1")})});
    is(native_detail, "interface-name", "");
    EXPECT_EQ(answer(root), Lines{});
    is(native_detail, "interface-name", std::nullopt);
    EXPECT_EQ(answer(root), Lines{});
    is(native_detail, "interface-name", "eth1");
    is(native_detail, "device-id", std::nullopt);
    EXPECT_EQ(answer(root), Lines{});
    is(native_detail, "device-id", "");
    is(native_neighbor, "port-id-detail", std::nullopt);
    EXPECT_EQ(answer(root), Lines{});
    EXPECT_THAT(fw.stitches, IsEmpty());
}

TEST_F(ANeighbor, IsNotAnsweredWhenOnlyConfigurationIsWanted) {
    Context context(YMAP_REQ_GET_CONFIG);
    EXPECT_EQ(answer(addresses({address("ipv4", {leaf("ipv4-address", "192.0.2.1")})}), context), Lines{});
    EXPECT_THAT(fw.stitches, IsEmpty());
}

// ---- its addresses --------------------------------------------------------------------------------------

TEST_F(ANeighbor, HasAllItsAddressesWithTheirInterfaceNumbers) {
    EXPECT_EQ(answer(addresses({address("ipv4", {leaf("ipv4-address", "192.0.2.1")}, {leaf("if-num", "7")}),
                                address("ipv6", {leaf("ipv6-address", "2001:db8::1")}, {leaf("if-num", "8")}),
                                address("ipv4", {leaf("ipv4-address", "192.0.2.2")})})),
              (Lines{address_list + "=nothing", address_list + "/address=192.0.2.1",
                     address_list + "/state/address=192.0.2.1", address_list + "/state/interface-number=7",
                     address_list + "=nothing", address_list + "/address=2001:db8::1",
                     address_list + "/state/address=2001:db8::1", address_list + "/state/interface-number=8",
                     address_list + "=nothing", address_list + "/address=192.0.2.2",
                     address_list + "/state/address=192.0.2.2"}));
    for (const Add &add : fw.adds) {
        EXPECT_EQ(add.ns, oc_ns);
        EXPECT_EQ(add.list_entry, add.path == address_list ? 1u : 0u);
    }
}

struct Family {
    const char *name;
    Node entry;
    const char *address;
};

void PrintTo(const Family &family, std::ostream *stream) {
    *stream << family.name;
}

class AnAddress : public ANeighbor, public ::testing::WithParamInterface<Family> {};

TEST_P(AnAddress, IsTheOneOfItsFamily) {
    const Lines lines = answer(addresses({GetParam().entry}));
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[1], address_list + "/address=" + GetParam().address);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AnAddress,
    ::testing::Values(
        Family{"Ipv4", address("ipv4", {leaf("ipv4-address", "a"), leaf("ipv6-address", "b")}), "a"},
        Family{"Ipv6", address("ipv6", {leaf("ipv4-address", "a"), leaf("ipv6-address", "b")}), "b"},
        Family{"NoFamily", address(nullptr, {leaf("ipv4-address", "a")}), "a"},
        Family{"NoFamilyButIpv6", address(nullptr, {leaf("ipv6-address", "b")}), "b"},
        Family{"AnotherFamilyThanItsAddress", address("ipv6", {leaf("ipv4-address", "a")}), "a"}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(ANeighbor, HasNoAddressWhereNoneIsAnnounced) {
    EXPECT_EQ(answer(addresses({address("ipv4", {}), address("ipv4", {node("ipv4-address")}),
                                node("lldp-addr-entry").children({leaf("if-num", "7")})})),
              Lines{});
}

// ---- the cable device -----------------------------------------------------------------------------------

TEST_F(ANeighbor, ThatIsACableDeviceHasThatCapabilityUnderItsPublishedName) {
    EXPECT_EQ(
        answer(capabilities("4194304")),
        (Lines{capability_list + "=nothing", capability_list + "/name=DOCSIS_CABLE_DEVICE",
               capability_list + "/state/name=DOCSIS_CABLE_DEVICE", capability_list + "/state/enabled=false"}));
    EXPECT_EQ(fw.adds[1].node->value_ns, std::string(oc_types_ns));
    EXPECT_EQ(fw.adds[2].node->value_ns, std::string(oc_types_ns));
}

TEST_F(ANeighbor, ThatIsACableDeviceTellsWhetherItIsInUse) {
    EXPECT_EQ(answer(capabilities("4194368")).back(), capability_list + "/state/enabled=true");
}

TEST_F(ANeighbor, ThatIsNoCableDeviceHasNoCapabilityFromHere) {
    for (const char *combined : {"1048592", "64", "0", "", "many"})
        EXPECT_EQ(answer(capabilities(combined)), Lines{}) << combined;
}

// ---- failures -------------------------------------------------------------------------------------------

TEST_F(ANeighbor, EndsWithTheStatusOfTheNodeThatCannotBeAdded) {
    const Node whole = announced(
        {above("detail", above("network-addresses",
                               address("ipv4", {leaf("ipv4-address", "192.0.2.1")}, {leaf("if-num", "7")}))),
         above("mib", leaf("combined-capabilities", "4194304"))});
    for (unsigned nth = 1; nth <= 8; nth++) {
        fw.fail("yfw_map_datatree_add_path_flagged", nth, 77);
        Context context(YMAP_REQ_GET);
        Tree response(whole, native_oper_ns);
        EXPECT_EQ(call(oper_response_root, context, response), 77u) << nth;
        EXPECT_EQ(fw.calls_of("yfw_map_datatree_add_path_flagged").size(), nth);
        fw.reset();
        is(native_detail, "interface-name", "eth1");
        is(native_detail, "device-id", "r2");
    }
}

TEST_F(ANeighbor, EndsWithTheStatusOfAnEntryThatCannotBeMade) {
    fw.fail("yfw_map_stitch_list_to_list", 1, 77);
    Context context(YMAP_REQ_GET);
    Tree response(addresses({address("ipv4", {leaf("ipv4-address", "192.0.2.1")})}), native_oper_ns);
    EXPECT_EQ(call(oper_response_root, context, response), 77u);
    EXPECT_THAT(fw.adds, IsEmpty());
}

TEST_F(ANeighbor, WithABrokenArrayOfChildrenFails) {
    Context context(YMAP_REQ_GET);
    Tree response(above("lldp", node("nodes").broken_children(1)), native_oper_ns);
    EXPECT_EQ(call(oper_response_root, context, response), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
}

} // namespace
} // namespace ocextra_test
