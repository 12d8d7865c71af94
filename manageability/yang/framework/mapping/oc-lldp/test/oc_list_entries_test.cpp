// Which entries of an OpenConfig list are walked, how an entry is mapped whole, and how a missing key is
// added to a read.
#include <gmock/gmock.h>

#include <algorithm>
#include <utility>

#include "oc_walker_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

const std::string list_callback = oq("list_lvla_lldp_interfaces_interface");
const std::string name_walker = oq("lvla_lldp_interface_name");
const std::string entry_config = oq("lvla_lldp_interface_config");
const std::string entry_state = oq("lvla_lldp_interface_state");
const std::string entry_neighbors = oq("lvla_lldp_interface_neighbors");

// ---- the list-entry stack --------------------------------------------------------------------------

struct EntryCall {
    const tidl_yfw_datatree *entry;
    const tidl_yfw_datatree *out;

    bool operator==(const EntryCall &) const = default;
};

std::vector<EntryCall> entry_calls;
terrno entry_status = 0;

terrno note_entry(yfw_map_ctx, const tidl_yfw_datatree *entry, tidl_yfw_datatree *out) {
    entry_calls.push_back({entry, out});
    return entry_status;
}

// The list callback pushes two entries, which are walked instead of the list node.
class PushedEntries : public OcWalkerTest {
protected:
    PushedEntries() {
        entry_calls.clear();
        entry_status = 0;
    }

    void push_from_the_list_callback(Context &context) {
        when(list_callback, "End", [this, &context] {
            yfw_map_util_itree_stack_push(context, entries->children, entries->child_count, note_entry);
        });
    }
    static Node entry(const char *tag, const char *name) {
        return node(tag).children({match("name", name), node("config").children({node("enabled")})});
    }
    std::vector<std::string> names_recorded() const {
        std::vector<std::string> names;
        for (const Add &add : fw.adds) {
            if (add.path == "/interface-configurations/interface-configuration/interface-name")
                names.push_back(add.value.value_or("none"));
        }
        return names;
    }

    Tree entries{node("holder").children({entry("first", "eth1"), entry("second", "eth2")})};
    Node list_node{
        node("interface").children({match("name", "eth0"), node("config").children({node("enabled")})})};
};

TEST_F(PushedEntries, AreWalkedInsteadOfTheListNode) {
    Context context(YMAP_REQ_GET);
    push_from_the_list_callback(context);
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(names_recorded(), ElementsAre("eth1", "eth2"));
    EXPECT_THAT(entry_calls, ElementsAre(EntryCall{&entries->children[0], &output},
                                         EntryCall{&entries->children[1], &output}));
    EXPECT_EQ(fw.entry_stack_size(), 0u);
}

TEST_F(PushedEntries, AreInTheHierarchyFromTheSecondOn) {
    Context context(YMAP_REQ_GET);
    push_from_the_list_callback(context);
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    const std::vector<std::string> steps = hierarchy();
    EXPECT_THAT(steps, AllOf(Contains("+interface, 2").Times(1), Contains("-interface").Times(1),
                             Contains("+second, 2").Times(1), Contains("-second").Times(1),
                             Not(Contains("+first, 2")), Not(Contains("-first"))));
    EXPECT_THAT(fw.calls_of("yfw_map_update_current_list_node"),
                AllOf(SizeIs(2), Each(Field(&Call::args, "/lldp/interfaces/interface"))));
}

TEST_F(PushedEntries, MayComeWithoutACallback) {
    Context context(YMAP_REQ_GET);
    when(list_callback, "End",
         [&] { yfw_map_util_itree_stack_push(context, entries->children, entries->child_count, nullptr); });
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(names_recorded(), ElementsAre("eth1", "eth2"));
    EXPECT_THAT(entry_calls, IsEmpty());
}

TEST_F(PushedEntries, StopAtTheFirstFailure) {
    Context context(YMAP_REQ_GET);
    push_from_the_list_callback(context);
    entry_status = 0x77;
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), 0x77u);
    EXPECT_THAT(entry_calls, SizeIs(1));
    EXPECT_THAT(names_recorded(), IsEmpty());
    EXPECT_EQ(fw.entry_stack_size(), 0u);
}

TEST_F(PushedEntries, EndTheWalkInSuccessWhenTheirCallbackIsDone) {
    Context context(YMAP_REQ_GET);
    push_from_the_list_callback(context);
    entry_status = YMAP_STS_SUBTREE_DONE;
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(entry_calls, SizeIs(1));
    EXPECT_THAT(names_recorded(), IsEmpty());
    EXPECT_THAT(left(), Not(Contains(interface_walker)));
    EXPECT_EQ(fw.entry_stack_size(), 0u);
}

TEST_F(PushedEntries, PassTheFrameworksSubtreeDoneUp) {
    Context context(YMAP_REQ_GET);
    push_from_the_list_callback(context);
    // The first update is that of the list node, the second that of the second entry.
    fw.fail("yfw_map_update_current_list_node", 2, YMAP_STS_SUBTREE_DONE);
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_STS_SUBTREE_DONE);
    EXPECT_THAT(names_recorded(), ElementsAre("eth1"));
    EXPECT_EQ(left().back(), interface_walker);
    EXPECT_EQ(fw.entry_stack_size(), 0u);
}

TEST_F(PushedEntries, OfADeleteBecomeRemovals) {
    Context context(plain_edit);
    push_from_the_list_callback(context);
    entries->children[0].operation = YFW_OP_DELETE;
    entries->children[1].operation = YFW_OP_DELETE;
    Tree tree(node("interface").operation(YFW_OP_DELETE).children({leaf("name", "eth0")}));
    std::vector<std::pair<uint32_t, int>> seen;
    when(name_walker, "Start", [&] {
        const tidl_yfw_datatree &entry = entries->children[entry_calls.size() - 1];
        seen.emplace_back(entry.operation, entry.node_flags & YFW_NODE_OPERATION_CHANGED);
    });
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(seen, ElementsAre(std::pair(4u, 0x10), std::pair(4u, 0x10)));
}

class BrokenPushedEntries : public PushedEntries, public ::testing::WithParamInterface<uint32_t> {};

TEST_P(BrokenPushedEntries, FailForTheirMissingChildren) {
    for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_DELETE}) {
        SCOPED_TRACE(operation);
        fw.reset();
        Context context(operation == YFW_OP_NONE ? uint32_t{YMAP_REQ_GET} : plain_edit);
        push_from_the_list_callback(context);
        tidl_yfw_datatree &broken = entries->children[GetParam()];
        tidl_yfw_datatree *const children = std::exchange(broken.children, nullptr);
        Tree tree(node("interface").operation(operation).children({leaf("name", "eth0")}));
        EXPECT_EQ(call(interface_walker, context, tree), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.errors(), ElementsAre("Failed to get subtrees!"));
        EXPECT_THAT(fw.error_paths, IsEmpty());
        EXPECT_EQ(left().back(), interface_walker);
        EXPECT_EQ(hierarchy().back(), "-interface");
        EXPECT_EQ(std::ranges::count(hierarchy(), "+second, 2"), std::ranges::count(hierarchy(), "-second"));
        EXPECT_EQ(fw.entry_stack_size(), 0u);
        broken.children = children;
    }
}

INSTANTIATE_TEST_SUITE_P(FirstAndSecond, BrokenPushedEntries, ::testing::Values(0u, 1u));

TEST_F(PushedEntries, OfAnOuterListAreNotTakenForThisOne) {
    Context context(YMAP_REQ_GET);
    yfw_map_util_itree_stack_push(context, entries->children, entries->child_count, note_entry);
    Tree tree(list_node);
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(names_recorded(), ElementsAre("eth0"));
    EXPECT_THAT(entry_calls, IsEmpty());
    EXPECT_EQ(fw.entry_stack_size(), 1u);
}

// ---- whole entries ---------------------------------------------------------------------------------

class WholeEntry : public OcWalkerTest {
protected:
    // What was called to map the entry whole, in order: the walkers of the table's children, then the hook.
    std::vector<std::string> mapped_whole() const {
        std::vector<std::string> kept;
        for (const std::string &function : entered()) {
            for (const std::string &walker :
                 {entry_config, entry_state, entry_neighbors, interface_walker + "_parse_augments"}) {
                if (function == walker)
                    kept.push_back(function);
            }
        }
        return kept;
    }
    const std::string hook = interface_walker + "_parse_augments";
};

TEST_F(WholeEntry, OfAGetIsConfigStateAndNeighbors) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("interface").children({match("name", "eth0")}));
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_STS_NO_MAPPING);
    EXPECT_THAT(mapped_whole(), ElementsAre(entry_config, entry_state, entry_neighbors, hook));
}

TEST_F(WholeEntry, OfAGetConfigIsConfig) {
    Context context(YMAP_REQ_GET_CONFIG);
    Tree tree(node("interface").children({match("name", "eth0")}));
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(mapped_whole(), ElementsAre(entry_config, hook));
}

TEST_F(WholeEntry, OfADeleteIsConfig) {
    for (const auto &children :
         {std::vector<Node>{leaf("name", "eth0")},
          std::vector<Node>{leaf("name", "eth0"), leaf("colour", "blue").in(foreign_ns)}}) {
        SCOPED_TRACE(children.size());
        fw.reset();
        fw.is_request_add = false;
        Context context(plain_edit);
        Tree tree(node("interface").operation(YFW_OP_DELETE).children(children));
        std::vector<std::pair<uint32_t, int>> seen;
        when(entry_config, "Start",
             [&] { seen.emplace_back(tree->operation, tree->node_flags & YFW_NODE_OPERATION_CHANGED); });
        EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
        EXPECT_EQ(mapped_whole().back(), hook);
        EXPECT_THAT(mapped_whole(), Contains(entry_config).Times(1));
        EXPECT_THAT(seen, ElementsAre(std::pair(4u, 0x10)));
    }
}

TEST_F(WholeEntry, IsNotMappedWhenAReadNamesMoreThanTheKey) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("interface").children({match("name", "eth0"), node("config").children({node("enabled")})}));
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(mapped_whole(), ElementsAre(entry_config));
}

TEST_F(WholeEntry, IsNotMappedInAnEditThatDeletesNothing) {
    Context context(plain_edit);
    Tree tree(node("interface").children({leaf("name", "eth0")}));
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(mapped_whole(), IsEmpty());
}

TEST_F(WholeEntry, HasItsChildrenOnTheEntryStackMeanwhile) {
    Context context(YMAP_REQ_GET_CONFIG);
    Tree tree(node("interface").children({match("name", "eth0")}));
    tidl_yfw_datatree *const children = tree->children;
    std::vector<std::string> seen;
    when(entry_config, "Start", [&] {
        EXPECT_EQ(tree->children, nullptr);
        EXPECT_EQ(tree->child_count, 0u);
        EXPECT_EQ(tree->node_flags & YFW_NODE_CHILDREN_VALID, 0);
        ASSERT_EQ(fw.entry_stack_size(), 1u);
        EXPECT_EQ(fw.entry_stack.back().entries, children);
        EXPECT_EQ(fw.entry_stack.back().count, 1u);
        EXPECT_EQ(fw.entry_stack.back().callback, nullptr);
        EXPECT_EQ(context.req.map_all, 1u);
        seen.push_back("config");
    });
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(seen, SizeIs(1));
    EXPECT_EQ(tree->children, children);
    EXPECT_EQ(tree->child_count, 1u);
    EXPECT_EQ(tree->node_flags & YFW_NODE_CHILDREN_VALID, YFW_NODE_CHILDREN_VALID);
    EXPECT_EQ(fw.entry_stack_size(), 0u);
    EXPECT_EQ(context.req.map_all, 0u);
}

TEST_F(WholeEntry, IsMappedToItsEndAndReturnsTheFirstFailure) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("interface").children({match("name", "eth0")}));
    when(entry_config, "Start", [&] { fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x77); });
    EXPECT_EQ(call(interface_walker, context, tree), 0x77u);
    EXPECT_THAT(mapped_whole(), ElementsAre(entry_config, entry_state, entry_neighbors, hook));
    EXPECT_EQ(fw.entry_stack_size(), 0u);
    EXPECT_EQ(tree->child_count, 1u);
}

// ---- key completion --------------------------------------------------------------------------------

struct KeyedList {
    const char *tag;
    std::string walker;
    std::vector<const char *> keys;
};

void PrintTo(const KeyedList &list, std::ostream *stream) {
    *stream << list.tag;
}

class KeyCompletion : public OcWalkerTest, public ::testing::WithParamInterface<KeyedList> {
protected:
    // Adds directly below the list node.
    std::vector<Add> completions(const tidl_yfw_datatree *parent) const {
        std::vector<Add> kept;
        for (const Add &add : fw.adds) {
            if (add.parent == parent)
                kept.push_back(add);
        }
        return kept;
    }

    const KeyedList &list = GetParam();
};

TEST_P(KeyCompletion, AddsTheMissingKeysToTheRequestOfARead) {
    for (const uint32_t kind : {0u, 10u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        Context context(kind);
        Tree tree(node(list.tag).in("urn:example:of-the-list").children({node("config").in(oc_ns)}));
        EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
        const std::vector<Add> adds = completions(tree);
        ASSERT_EQ(adds.size(), list.keys.size());
        for (std::size_t index = 0; index < adds.size(); ++index) {
            EXPECT_EQ(adds[index].path, list.keys[index]);
            EXPECT_EQ(adds[index].ns, "urn:example:of-the-list");
            EXPECT_EQ(adds[index].value, std::nullopt);
            EXPECT_EQ(adds[index].source, nullptr);
            EXPECT_TRUE(adds[index].slot_given);
            ASSERT_NE(adds[index].node, nullptr);
            EXPECT_EQ(adds[index].node->key_byte, 1);
            EXPECT_EQ(adds[index].node->node_flags & YFW_NODE_IS_KEY, YFW_NODE_IS_KEY);
        }
    }
}

TEST_P(KeyCompletion, SurvivesAnAddThatGivesNoNodeBack) {
    fw.add_without_node = true;
    Context context(YMAP_REQ_GET);
    Tree tree(node(list.tag).children({node("config")}));
    EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
    EXPECT_THAT(completions(tree), SizeIs(list.keys.size()));
}

TEST_P(KeyCompletion, ReturnsTheStatusOfTheLastAdd) {
    for (std::size_t failing = 0; failing < list.keys.size(); ++failing) {
        SCOPED_TRACE(failing);
        fw.reset();
        Context context(YMAP_REQ_GET);
        Tree tree(node(list.tag).children({node("config")}));
        std::size_t seen = 0;
        fw.on_call("yfw_map_datatree_add_path_flagged", [&](const Call &add) {
            if (add.args.starts_with("/"))
                return;
            // Fails only this call.
            if (seen++ == failing)
                fw.fail("yfw_map_datatree_add_path_flagged", 0, 0x77);
            else
                fw.fail("yfw_map_datatree_add_path_flagged", 0, 0);
        });
        EXPECT_EQ(call(list.walker, context, tree), failing + 1 == list.keys.size() ? 0x77u : 0u);
        EXPECT_THAT(completions(tree), SizeIs(list.keys.size()));
    }
}

struct Uncompleted {
    const char *name;
    uint32_t kind;
    uint32_t map_all;
    bool with_key;
    bool with_config;
};

TEST_P(KeyCompletion, AddsNothingElsewhere) {
    for (const Uncompleted &c :
         {Uncompleted{"the key is named", 10, 0, true, true},
          Uncompleted{"the key is named, get-config", 0, 0, true, true},
          Uncompleted{"an edit", plain_edit, 0, false, true},
          Uncompleted{"a whole subtree is mapped", 10, 1, false, true},
          Uncompleted{"the key alone", 10, 0, true, false}, Uncompleted{"no children", 10, 0, false, false}}) {
        SCOPED_TRACE(c.name);
        fw.forget_calls();
        Context context(c.kind);
        context.req.map_all = c.map_all;
        std::vector<Node> children;
        if (c.with_key)
            children.push_back(node(list.keys.back()));
        if (c.with_config)
            children.push_back(node("config"));
        Tree tree(children.empty() ? node(list.tag) : node(list.tag).children(children));
        call(list.walker, context, tree);
        EXPECT_THAT(completions(tree), IsEmpty());
    }
}

TEST_P(KeyCompletion, AddsNothingAfterAFailure) {
    Context context(YMAP_REQ_GET);
    Tree tree(node(list.tag).children({node("config"), leaf("x", "y").without_tag()}));
    EXPECT_EQ(call(list.walker, context, tree), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(completions(tree), IsEmpty());
}

INSTANTIATE_TEST_SUITE_P(Of, KeyCompletion,
                         ::testing::Values(KeyedList{"interface", interface_walker, {"name"}},
                                           KeyedList{"neighbor", neighbor_walker, {"id"}},
                                           KeyedList{"tlv", tlv_walker, {"type", "oui", "oui-subtype"}},
                                           KeyedList{"capability", capability_walker, {"name"}}),
                         [](const auto &test) { return std::string(test.param.tag); });

TEST_F(OcWalkerTest, AReadOfOneLeafOfAnUnnamedInterfaceAlsoFetchesItsName) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("lldp").children(
        {node("interfaces")
             .children({node("interface").children({node("config").children({node("enabled")})})})}));
    EXPECT_EQ(call(root_walker, context, tree), YMAP_OK);
    const Add &last = fw.adds.back();
    EXPECT_EQ(last.path, "name");
    EXPECT_EQ(last.parent, &tree.at("interfaces/interface"));
    EXPECT_EQ(last.node->key_byte, 1);
}

} // namespace
} // namespace oclldp_test
