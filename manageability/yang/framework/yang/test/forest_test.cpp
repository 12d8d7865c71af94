// Joining, merging, removing and selecting the trees of a forest.
#include "yang/forest.h"

#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/error.h"
#include "data_texts.h"
#include "test_schemas.h"
#include "yang/tree_text.h"

namespace yfw::yang::test {
namespace {

using testing::ElementsAre;
using testing::UnorderedElementsAre;

DataTree data(const std::string &xml) {
    return parse_data(schemas().context(), xml, LYD_XML, LYD_PARSE_ONLY | LYD_PARSE_STRICT);
}

std::string openconfig(const std::string &config) {
    return "<lldp xmlns=\"http://openconfig.net/yang/lldp\"><config>" + config + "</config></lldp>";
}

const std::string name = openconfig("<system-name>r1</system-name>");
const std::string native = "<lldp xmlns=\"urn:tarvo:yang:Tarvo-QD-ethernet-lldp-cfg\"><timer>20</timer></lldp>";
const std::string interfaces =
    "<interface-configurations xmlns=\"urn:tarvo:yang:Tarvo-QD-ifmgr-cfg\"><interface-configuration>"
    "<active>act</active><interface-name>eth1</interface-name><description>to r2</description>"
    "</interface-configuration></interface-configurations>";

const std::string name_line = "/lldp/config/system-name=r1";
const std::string native_line = "/lldp/timer=20";
const std::string interface_line =
    "/interface-configurations/"
    "interface-configuration[active='act'][interface-name='eth1']/description=to r2";

TEST(AForest, HasTheTreesOfAnotherOnceTheyHaveJoined) {
    DataTree forest = data(name);
    join(forest, data(native + interfaces));
    EXPECT_THAT(leaves(lyd_first_sibling(forest.get())),
                UnorderedElementsAre(name_line, native_line, interface_line));
    EXPECT_EQ(forest.get(), lyd_first_sibling(forest.get()));
}

TEST(AForest, OfNothingBecomesWhatJoinsIt) {
    DataTree forest;
    join(forest, data(name + native));
    EXPECT_THAT(leaves(forest.get()), UnorderedElementsAre(name_line, native_line));
}

TEST(AForest, StaysAsItIsWhenNothingJoinsIt) {
    DataTree forest = data(name);
    join(forest, nullptr);
    EXPECT_THAT(leaves(forest.get()), ElementsAre(name_line));
}

TEST(AForest, KeepsTheAddressOfATreeThatJoinsIt) {
    DataTree forest = data(name), more = data(native);
    const lyd_node *tree = more.get();
    join(forest, std::move(more));
    EXPECT_THAT(nodes_at(forest.get(), "/Tarvo-QD-ethernet-lldp-cfg:lldp"), ElementsAre(tree));
}

TEST(AForest, TakesTheValuesOfWhatIsMergedIntoIt) {
    DataTree forest = data(openconfig("<enabled>true</enabled><system-name>r1</system-name>"));
    EXPECT_EQ(merge(forest, data(openconfig("<system-name>r2</system-name>") + native)), LY_SUCCESS);
    EXPECT_THAT(leaves(lyd_first_sibling(forest.get())),
                UnorderedElementsAre("/lldp/config/enabled=true", "/lldp/config/system-name=r2", native_line));
}

TEST(AForest, OfNothingBecomesWhatIsMergedIntoIt) {
    DataTree forest;
    EXPECT_EQ(merge(forest, data(name)), LY_SUCCESS);
    EXPECT_EQ(merge(forest, nullptr), LY_SUCCESS);
    EXPECT_THAT(leaves(forest.get()), ElementsAre(name_line));
}

struct Removal {
    const char *name;
    std::string forest;
    const char *removed;
    Lines left;
};

class ARemoval : public testing::TestWithParam<Removal> {};

TEST_P(ARemoval, LeavesTheRestOfTheForest) {
    DataTree forest = data(GetParam().forest);
    for (lyd_node *node : nodes_at(forest.get(), GetParam().removed))
        remove(forest, node);
    EXPECT_EQ(leaves(forest != nullptr ? lyd_first_sibling(forest.get()) : nullptr), GetParam().left);
}

INSTANTIATE_TEST_SUITE_P(
    Nodes, ARemoval,
    testing::Values(
        Removal{"OfTheOnlyTree", name, "/openconfig-lldp:lldp", {}},
        Removal{"OfTheFirstTree", native + interfaces, "/Tarvo-QD-ethernet-lldp-cfg:lldp", {interface_line}},
        Removal{"OfTheLastTree",
                native + interfaces,
                "/Tarvo-QD-ifmgr-cfg:interface-configurations",
                {native_line}},
        Removal{"OfAllTrees", native + interfaces, "/*", {}},
        Removal{"OfANodeBelow",
                openconfig("<enabled>true</enabled><system-name>r1</system-name>"),
                "/openconfig-lldp:lldp/config/enabled",
                {name_line}}),
    [](const auto &test) { return test.param.name; });

// The owner of a forest may point to a tree other than its first.
TEST(AForestHeldByItsLastTree, IsHeldByAnotherWhenThatGoes) {
    DataTree forest = data(native + interfaces);
    change_first(forest, [](lyd_node *&held) { held = held->next; });
    remove(forest, forest.get());
    EXPECT_THAT(leaves(forest.get()), ElementsAre(native_line));
}

TEST(AChangeOfTheFirstTree, GivesBackWhatItReturns) {
    DataTree forest = data(name);
    EXPECT_EQ(change_first(forest, [](lyd_node *&) { return 5; }), 5);
    EXPECT_THAT(leaves(forest.get()), ElementsAre(name_line));
}

TEST(AChangeOfTheFirstTree, ThatThrowsLosesNothing) {
    DataTree forest = data(name);
    EXPECT_THROW(change_first(forest, [](lyd_node *&) { throw 5; }), int);
    EXPECT_THAT(leaves(forest.get()), ElementsAre(name_line));
}

TEST(AnExpression, SelectsNodesOfTheForestInItsOrder) {
    const DataTree forest = data(openconfig("<enabled>true</enabled><system-name>r1</system-name>"));
    std::vector<std::string> paths;
    for (const lyd_node *node : nodes_at(forest.get(), "/openconfig-lldp:lldp/config/*"))
        paths.push_back(path_of(node));
    EXPECT_THAT(
        paths, ElementsAre("/openconfig-lldp:lldp/config/enabled", "/openconfig-lldp:lldp/config/system-name"));
}

TEST(AnExpression, SelectsNothingOfNoData) {
    EXPECT_TRUE(nodes_at(nullptr, "/openconfig-lldp:lldp").empty());
}

TEST(AnExpression, ThatIsNoneIsNamed) {
    const DataTree forest = data(name);
    try {
        nodes_at(forest.get(), "/openconfig-lldp:lldp[");
        FAIL() << "the expression was evaluated";
    } catch (const Error &error) {
        EXPECT_EQ(error.path(), "/openconfig-lldp:lldp[");
        EXPECT_STRNE(error.what(), "");
    }
}

} // namespace
} // namespace yfw::yang::test
