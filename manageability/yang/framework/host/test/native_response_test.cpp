#include "host/native_response.h"

#include <cstring>
#include <memory>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

constexpr const char *interfaces = "/lldp/nodes/node/interfaces";
constexpr const char *details = "/lldp/nodes/node/neighbors/details";

constexpr const char *two_neighbors = R"(
<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper">
  <nodes>
    <node>
      <node-name>n1</node-name>
      <neighbors><details>
        <detail>
          <interface-name>eth1</interface-name><device-id>r2</device-id>
          <lldp-neighbor><chassis-id>c2</chassis-id><hold-time>8</hold-time></lldp-neighbor>
        </detail>
        <detail>
          <interface-name>eth2</interface-name><device-id>r2</device-id>
          <lldp-neighbor><chassis-id>c2</chassis-id></lldp-neighbor>
          <lldp-neighbor><chassis-id>c3</chassis-id></lldp-neighbor>
        </detail>
        <detail>
          <interface-name>eth2</interface-name><device-id>r3</device-id>
        </detail>
      </details></neighbors>
      <statistics><received-packets>7</received-packets><last-clear>0</last-clear></statistics>
    </node>
  </nodes>
</lldp>)";

class FetchedData : public testing::Test {
protected:
    void take(const std::string &native_text, Order order = Order::kept) {
        data = yang::instance_forest(native_data(native_text, order).get());
    }

    void select(std::string_view ns, const std::string &path_text, std::optional<std::string> value = {}) {
        NativePath wanted{};
        wanted.path = path_text;
        wanted.ns = ns;
        wanted.value = std::move(value);
        selected.add(wanted);
    }

    // The response of the data's first top node.
    const tidl_yfw_datatree &response() {
        const SelectedNode *tree = selected.tree(data->first()->schema());
        made = std::make_unique<NativeResponse>(data->first(), *tree, index);
        return *made->root();
    }

    NativeSelection selected{schemas()};
    yang::SharedForest data;
    EntryIndex index;
    std::unique_ptr<NativeResponse> made;
};

TEST_F(FetchedData, HoldsWhatWasSelectedAndTheKeysOnTheWay) {
    take(two_neighbors);
    select(oper_ns, "/lldp/nodes/node/statistics/received-packets");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' statistics{received-packets='7'}}}}");
}

TEST_F(FetchedData, HoldsAWholeSubtreeBelowASelectedContainer) {
    take(two_neighbors);
    select(oper_ns, details);
    EXPECT_EQ(text(response()),
              "lldp{nodes{node{@node-name='n1' neighbors{details{"
              "detail{@interface-name='eth1' @device-id='r2' lldp-neighbor{chassis-id='c2' hold-time='8'}} "
              "detail{@interface-name='eth2' @device-id='r2' lldp-neighbor{chassis-id='c2'} "
              "lldp-neighbor{chassis-id='c3'}} "
              "detail{@interface-name='eth2' @device-id='r3'}}}}}}");
}

TEST_F(FetchedData, LeavesOutTheEntriesWithAnotherKey) {
    take(two_neighbors);
    select(oper_ns, std::string(details) + "/detail/lldp-neighbor/chassis-id");
    select(oper_ns, std::string(details) + "/detail/device-id", "r2");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' neighbors{details{"
                                "detail{@interface-name='eth1' @device-id='r2' lldp-neighbor{chassis-id='c2'}} "
                                "detail{@interface-name='eth2' @device-id='r2' lldp-neighbor{chassis-id='c2'} "
                                "lldp-neighbor{chassis-id='c3'}}}}}}}");
}

TEST_F(FetchedData, IsNarrowedByEveryKeyThatHasAValue) {
    take(two_neighbors);
    select(oper_ns, std::string(details) + "/detail/device-id", "r2");
    select(oper_ns, std::string(details) + "/detail/interface-name", "eth1");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' neighbors{details{"
                                "detail{@interface-name='eth1' @device-id='r2'}}}}}}");
}

TEST_F(FetchedData, IsNarrowedAlsoInsideAWholeSubtree) {
    take(two_neighbors);
    select(oper_ns, "/lldp/nodes");
    select(oper_ns, std::string(details) + "/detail/device-id", "r3");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' neighbors{details{"
                                "detail{@interface-name='eth2' @device-id='r3'}}} "
                                "statistics{received-packets='7' last-clear='0'}}}}");
}

TEST_F(FetchedData, HasNoEntryWhenNoneHasTheKey) {
    take(two_neighbors);
    select(oper_ns, std::string(details) + "/detail/device-id", "r9");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' neighbors{details}}}}");
}

TEST_F(FetchedData, ShowsAnEmptyContainerAsOneWithoutChildren) {
    take(R"(<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper"><nodes><node>
              <node-name>n1</node-name><interfaces/></node></nodes></lldp>)");
    select(oper_ns, interfaces);
    const tidl_yfw_datatree &node = response().children[0].children[0];
    ASSERT_EQ(text(node), "node{@node-name='n1' interfaces}");
    EXPECT_NE(node.children[1].node_flags & YFW_NODE_CHILDREN_VALID, 0);
    EXPECT_EQ(node.children[1].child_count, 0u);
    EXPECT_EQ(node.children[1].value, nullptr);
}

TEST_F(FetchedData, LeavesOutWhatTheDeviceDoesNotHave) {
    take(two_neighbors);
    select(oper_ns, interfaces);
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1'}}}");
}

constexpr const char *keys_last = R"({"Tarvo-QD-ethernet-lldp-oper:lldp": {"nodes": {"node": [{
  "interfaces": {"interface": [
    {"interface-stats": {"received-packets": 1}, "tx-enabled": 1, "interface-name": "eth1"},
    {"interface-stats": {"received-packets": 2}, "tx-enabled": 0, "interface-name": "eth2"}]},
  "node-name": "n1"}]}}})";

TEST_F(FetchedData, MarksKeysAlsoWhenTheFileHasThemLast) {
    take(keys_last, Order::any);
    select(oper_ns, std::string(interfaces) + "/interface/tx-enabled");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' interfaces{"
                                "interface{@interface-name='eth1' tx-enabled='1'} "
                                "interface{@interface-name='eth2' tx-enabled='0'}}}}}");
}

TEST_F(FetchedData, IsNarrowedByKeysThatTheFileHasLast) {
    take(keys_last, Order::any);
    select(oper_ns, std::string(interfaces) + "/interface/tx-enabled");
    select(oper_ns, std::string(interfaces) + "/interface/interface-name", "eth2");
    EXPECT_EQ(text(response()), "lldp{nodes{node{@node-name='n1' interfaces{"
                                "interface{@interface-name='eth2' tx-enabled='0'}}}}}");
}

TEST_F(FetchedData, SetsBothMarksOnKeysAndNeitherOnOtherLeaves) {
    take(two_neighbors);
    select(oper_ns, details);
    const tidl_yfw_datatree *at = &response();
    while (std::strcmp(at->name, "detail") != 0)
        at = &at->children[at->child_count - 1];
    at -= 2; // the first of the three
    EXPECT_EQ(at->children[0].key_byte, 1);
    EXPECT_EQ(at->children[1].key_byte, 1);
    const tidl_yfw_datatree &announcement = at->children[2];
    EXPECT_EQ(announcement.children[0].key_byte, 0);
    EXPECT_EQ(announcement.children[0].node_flags & YFW_NODE_IS_KEY, 0);
}

TEST_F(FetchedData, GivesEachNodeTheNamespaceOfItsOwnModule) {
    take(R"(<interface-configurations xmlns="urn:tarvo:yang:Tarvo-QD-ifmgr-cfg"><interface-configuration>
              <active>act</active><interface-name>eth1</interface-name>
              <lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg"><enable>true</enable></lldp>
            </interface-configuration></interface-configurations>)");
    select(ifmgr_ns, "/interface-configurations");
    const tidl_yfw_datatree &entry = response().children[0];
    ASSERT_EQ(text(entry), "interface-configuration{@active='act' @interface-name='eth1' lldp{enable='true'}}");
    EXPECT_EQ(entry.ns, ifmgr_ns);
    EXPECT_EQ(entry.children[1].ns, ifmgr_ns);
    EXPECT_EQ(entry.children[2].ns, cfg_ns);
    EXPECT_EQ(entry.children[2].children[0].ns, cfg_ns);
}

TEST_F(FetchedData, TellsAnEmptyLeafFromOneThatIsAbsent) {
    take(R"(<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper"><global-lldp><lldp-info>
              <system-name/></lldp-info></global-lldp></lldp>)");
    select(oper_ns, "/lldp/global-lldp");
    EXPECT_EQ(text(response()), "lldp{global-lldp{lldp-info{system-name=''}}}");
}

TEST_F(FetchedData, KeepsTheOrderOfTheDevice) {
    take(R"(<lldp xmlns="urn:tarvo:yang:Tarvo-QD-ethernet-lldp-oper"><global-lldp><lldp-info>
              <system-name>n</system-name><chassis-id>c</chassis-id>
              </lldp-info></global-lldp></lldp>)");
    select(oper_ns, "/lldp/global-lldp/lldp-info/chassis-id");
    select(oper_ns, "/lldp/global-lldp/lldp-info/system-name");
    EXPECT_EQ(text(response()), "lldp{global-lldp{lldp-info{system-name='n' chassis-id='c'}}}");
}

TEST(TheResponseOfADeviceWithoutATopNode, IsAnEmptyContainer) {
    const NativeResponse made(schemas().native_root(oper_ns, "lldp"));
    EXPECT_EQ(text(*made.root()), "lldp");
    EXPECT_STREQ(made.root()->ns, oper_ns.data());
    EXPECT_NE(made.root()->node_flags & YFW_NODE_CHILDREN_VALID, 0);
}

} // namespace
} // namespace yfw::host::test
