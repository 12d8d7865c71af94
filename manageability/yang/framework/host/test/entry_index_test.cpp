// Entries are found by key in the same order as without an index, also in long lists.
#include "host/entry_index.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "test_device.h"

namespace yfw::host::test {
namespace {

const lysc_node *oper_node(const std::string &path) {
    return schemas().find("Tarvo-QD-ethernet-lldp-oper", path);
}

const std::string node_path = "/lldp/nodes/node";

// A node with this many interfaces, "eth0" to "eth6" again and again, and statistics after each tenth.
yang::SharedForest node_with(size_t interfaces) {
    yang::InstanceForestBuilder builder;
    builder.open(oper_node(node_path));
    builder.add_leaf(oper_node(node_path + "/node-name"), "n1");
    for (size_t i = 0; i < interfaces; i++) {
        builder.open(oper_node(node_path + "/interfaces/interface"));
        builder.add_leaf(oper_node(node_path + "/interfaces/interface/interface-name"),
                         "eth" + std::to_string(i % 7));
        builder.close();
        if (i % 10 == 0) {
            builder.open(oper_node(node_path + "/statistics"));
            builder.close();
        }
    }
    builder.close();
    return builder.take();
}

using Nodes = std::vector<const yang::InstanceNode *>;

Nodes found(EntryIndex &index, const yang::InstanceNode &parent, const std::string &name) {
    Nodes nodes;
    index.for_each_child(parent, oper_node(node_path + "/interfaces/interface/interface-name"), name,
                         [&](const yang::InstanceNode &child) { nodes.push_back(&child); });
    return nodes;
}

// All children but the interfaces of other names.
Nodes expected(const yang::InstanceNode &parent, const std::string &name) {
    Nodes nodes;
    for (const yang::InstanceNode *child = parent.child(); child != nullptr; child = child->next())
        if (child->schema()->nodetype != LYS_LIST || child->child()->value() == name)
            nodes.push_back(child);
    return nodes;
}

class AList : public testing::TestWithParam<size_t> {};

TEST_P(AList, IsFoundByKeyInItsOrder) {
    const yang::SharedForest forest = node_with(GetParam());
    EntryIndex index;
    for (const char *name : {"eth0", "eth3", "eth6", "eth9", "eth0", ""})
        EXPECT_EQ(found(index, *forest->first(), name), expected(*forest->first(), name)) << name;
}

INSTANTIATE_TEST_SUITE_P(Of, AList, testing::Values(0, 1, 7, 8, 15, 16, 17, 40, 1000));

TEST(AnEntryWithoutTheKey, IsFoundByEveryKey) {
    yang::InstanceForestBuilder builder;
    builder.open(oper_node(node_path));
    for (int i = 0; i < 40; i++) {
        builder.open(oper_node(node_path + "/interfaces/interface"));
        builder.close();
    }
    builder.close();
    const yang::SharedForest forest = builder.take();
    EntryIndex index;
    EXPECT_EQ(found(index, *forest->first(), "eth1").size(), 40U);
}

} // namespace
} // namespace yfw::host::test
