#include "host/request_tree.h"

#include <cstring>

#include <gtest/gtest.h>

#include "data_texts.h"
#include "test_device.h"

namespace yfw::host::test {
namespace {

// A child of a request node, accessed as the plug-in does it.
tidl_yfw_datatree &child_at(const tidl_yfw_datatree &node, uint32_t index) {
    return node.children[index];
}

// Adds a key the way a read's list walker does.
terrno add_key(RequestTree &tree, tidl_yfw_datatree &list, const char *key, tidl_yfw_datatree **slot) {
    return tree.add(list, {key, lldp_ns.data(), nullptr, nullptr, slot, 0, 0});
}

TEST(RequestTreeNodes, StandInTheOrderOfTheSelection) {
    const RequestTree tree(selection({"/lldp/state", "/lldp/interfaces/interface[name='eth1']/config/name"}));
    EXPECT_EQ(text(*tree.root()), "lldp{state interfaces{interface{name='eth1' config{name}}}}");
}

TEST(RequestTreeNodes, CarryTheNamespaceOfTheirModule) {
    const RequestTree tree(selection({"/lldp/config/enabled"}));
    const tidl_yfw_datatree &config = child_at(*tree.root(), 0);
    EXPECT_STREQ(tree.root()->ns, "http://openconfig.net/yang/lldp");
    EXPECT_STREQ(child_at(config, 0).ns, "http://openconfig.net/yang/lldp");
}

TEST(RequestTreeNodes, HaveChildrenFlaggedValidOnlyWhenThereAreSome) {
    const RequestTree tree(selection({"/lldp/config", "/lldp/state/enabled"}));
    const tidl_yfw_datatree &config = child_at(*tree.root(), 0);
    const tidl_yfw_datatree &state = child_at(*tree.root(), 1);
    EXPECT_EQ(config.node_flags & YFW_NODE_CHILDREN_VALID, 0);
    EXPECT_EQ(config.children, nullptr);
    EXPECT_EQ(config.child_count, 0u);
    EXPECT_NE(state.node_flags & YFW_NODE_CHILDREN_VALID, 0);
    EXPECT_EQ(state.child_count, 1u);
}

TEST(RequestTreeNodes, WithAValueAreContentMatchNodes) {
    const RequestTree tree(selection({"/lldp/interfaces/interface[name='']/state/enabled"}));
    const tidl_yfw_datatree &entry = child_at(child_at(*tree.root(), 0), 0);
    const tidl_yfw_datatree &key = child_at(entry, 0);
    EXPECT_STREQ(key.value, "");
    EXPECT_NE(key.node_flags & YFW_NODE_HAS_VALUE, 0);
    const tidl_yfw_datatree &enabled = child_at(child_at(entry, 1), 0);
    EXPECT_EQ(enabled.value, nullptr);
    EXPECT_EQ(enabled.node_flags & YFW_NODE_HAS_VALUE, 0);
}

TEST(RequestTreeNodes, OfAReadCarryNoOperation) {
    const RequestTree tree(selection({"/lldp/config/enabled"}));
    EXPECT_EQ(tree.root()->operation, static_cast<uint32_t>(YFW_OP_NONE));
    EXPECT_EQ(child_at(*tree.root(), 0).operation, static_cast<uint32_t>(YFW_OP_NONE));
}

TEST(RequestTreeNodes, GiveIdentitiesWithoutTheirModule) {
    const char *capability = "/lldp/interfaces/interface/neighbors/neighbor/capabilities/capability";
    const RequestTree tree(selection({std::string(capability) + "[name='openconfig-lldp-types:ROUTER']"}));
    EXPECT_EQ(text(*tree.root()),
              "lldp{interfaces{interface{neighbors{neighbor{capabilities{capability{name='ROUTER'}}}}}}}");
}

TEST(RequestTreeNodes, KeepColonsInValuesThatAreNoIdentities) {
    const RequestTree tree(selection({"/lldp/interfaces/interface[name='slot:1']"}));
    EXPECT_EQ(text(*tree.root()), "lldp{interfaces{interface{name='slot:1'}}}");
}

TEST(KeyCompletion, AddsTheKeyBehindTheChildrenThatAreThere) {
    RequestTree tree(selection({"/lldp/interfaces/interface/config/enabled"}));
    tidl_yfw_datatree &entry = child_at(child_at(*tree.root(), 0), 0);
    tidl_yfw_datatree *key = nullptr;
    ASSERT_EQ(add_key(tree, entry, "name", &key), YMAP_OK);
    EXPECT_EQ(text(*tree.root()), "lldp{interfaces{interface{config{enabled} name}}}");
    EXPECT_EQ(key, entry.children + 1);
    EXPECT_EQ(key->value, nullptr);
    EXPECT_STREQ(key->ns, "http://openconfig.net/yang/lldp");
}

TEST(KeyCompletion, LeavesTheMarksOfThePluginOnTheNodeThatIsWalkedNext) {
    RequestTree tree(selection({"/lldp/interfaces/interface/config/enabled"}));
    tidl_yfw_datatree &entry = child_at(child_at(*tree.root(), 0), 0);
    tidl_yfw_datatree *key = nullptr;
    ASSERT_EQ(add_key(tree, entry, "name", &key), YMAP_OK);
    key->key_byte = 1;
    key->node_flags = static_cast<uint16_t>(key->node_flags | YFW_NODE_IS_KEY);
    EXPECT_EQ(text(*tree.root()), "lldp{interfaces{interface{config{enabled} @name}}}");
}

TEST(KeyCompletion, KeepsChildrenContiguousOverSeveralAdds) {
    RequestTree tree(selection({"/lldp/interfaces/interface/neighbors/neighbor/custom-tlvs/tlv/state/value"}));
    tidl_yfw_datatree *list = &child_at(*tree.root(), 0);
    while (std::strcmp(list->name, "tlv") != 0)
        list = &child_at(*list, 0);
    for (const char *key : {"type", "oui", "oui-subtype"}) {
        tidl_yfw_datatree *added = nullptr;
        ASSERT_EQ(add_key(tree, *list, key, &added), YMAP_OK);
        EXPECT_EQ(added, list->children + list->child_count - 1);
    }
    EXPECT_EQ(text(*list), "tlv{state{value} type oui oui-subtype}");
}

TEST(KeyCompletion, LeavesTheOldChildrenReadableForAWalkUnderWay) {
    RequestTree tree(selection({"/lldp/interfaces/interface/config/enabled"}));
    tidl_yfw_datatree &entry = child_at(child_at(*tree.root(), 0), 0);
    const tidl_yfw_datatree *before = entry.children;
    ASSERT_EQ(add_key(tree, entry, "name", nullptr), YMAP_OK);
    EXPECT_EQ(text(before[0]), "config{enabled}");
}

TEST(KeyCompletion, WorksOnAnEntryWithoutChildren) {
    RequestTree tree(selection({"/lldp/interfaces/interface"}));
    tidl_yfw_datatree &entry = child_at(child_at(*tree.root(), 0), 0);
    ASSERT_EQ(add_key(tree, entry, "name", nullptr), YMAP_OK);
    EXPECT_EQ(text(entry), "interface{name}");
}

TEST(KeyCompletion, HasNoOutputListsToSearch) {
    RequestTree tree(selection({"/lldp/interfaces/interface"}));
    tidl_yfw_datatree &entry = child_at(child_at(*tree.root(), 0), 0);
    EXPECT_EQ(tree.find_or_add_entry(entry, "/lldp/interfaces/interface", "name", "eth1"), nullptr);
    EXPECT_EQ(text(entry), "interface");
}

} // namespace
} // namespace yfw::host::test
