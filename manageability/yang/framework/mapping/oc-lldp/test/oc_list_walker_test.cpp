// How an OpenConfig list entry is walked: hierarchy, current list node, keys and their rules, the list
// callback and delete.
#include <gmock/gmock.h>

#include <algorithm>

#include "oc_walker_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;

const std::string list_callback = oq("list_lvla_lldp_interfaces_interface");
const std::string name_walker = oq("lvla_lldp_interface_name");
const std::string entry_config = oq("lvla_lldp_interface_config");
const std::string neighbor_path = "/lldp/interfaces/interface/neighbors/neighbor";

// One of the four lists.
struct List {
    const char *tag;
    std::string walker;
    std::string path;
    std::vector<const char *> keys;
};

void PrintTo(const List &list, std::ostream *stream) {
    *stream << list.tag;
}

const std::vector<List> lists = {
    {"interface", interface_walker, "/lldp/interfaces/interface", {"name"}},
    {"neighbor", neighbor_walker, neighbor_path, {"id"}},
    {"tlv", tlv_walker, neighbor_path + "/custom-tlvs/tlv", {"type", "oui", "oui-subtype"}},
    {"capability", capability_walker, neighbor_path + "/capabilities/capability", {"name"}}};

std::string list_name(const ::testing::TestParamInfo<List> &test) {
    return test.param.tag;
}

class ListWalker : public OcWalkerTest, public ::testing::WithParamInterface<List> {
protected:
    const List &list = GetParam();
};

INSTANTIATE_TEST_SUITE_P(Of, ListWalker, ::testing::ValuesIn(lists), list_name);

// A key with a value that every callback accepts.
Node key(const char *name) {
    return leaf(name, "127");
}

// ---- before the callback ---------------------------------------------------------------------------

TEST_P(ListWalker, NeedsKeysInTheEditKindsThatRequireThem) {
    for (const uint32_t kind : {1u, 8u, 15u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        Context context(kind);
        Tree tree(node(list.tag));
        EXPECT_EQ(call(list.walker, context, tree), YMAP_ERR_MAP_FAILED);
        EXPECT_THAT(fw.debug_lines(),
                    ElementsAre("TRC: Start", "ERR: No keys specified with a list node.", "TRC: End"));
        EXPECT_THAT(fw.error_paths, IsEmpty());
        EXPECT_THAT(hierarchy(), IsEmpty());
    }
}

TEST_P(ListWalker, NeedsNoKeysWhileAWholeSubtreeOrEntryIsMapped) {
    for (const auto &[map_all, state] : {std::pair(1u, 0u), std::pair(0u, 1u), std::pair(0u, 2u)}) {
        SCOPED_TRACE(std::to_string(map_all) + " " + std::to_string(state));
        fw.forget_calls();
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        context.req.map_all = map_all;
        context.req.list_entry_state = state;
        Tree tree(node(list.tag));
        EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
        EXPECT_THAT(fw.errors(), IsEmpty());
    }
}

TEST_P(ListWalker, PutsTheEntryIntoTheHierarchyAsAListAndMarksIt) {
    for (const uint32_t kind : {0u, 10u, plain_edit}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        Context context(kind);
        context.req.walk_flags = 0xffffffff;
        Tree tree(node(list.tag).children({leaf("colour", "blue").in(foreign_ns)}));
        fw.is_request_add = false;
        EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
        EXPECT_EQ(hierarchy().front(), std::string("+") + list.tag + ", 2");
        EXPECT_EQ(hierarchy().back(), std::string("-") + list.tag);
        EXPECT_EQ(tree->hierarchy_marker, YFW_MARKER_LIST);
        EXPECT_EQ(tree->framework_flags, YFW_FW_HAS_MARKER);
    }
}

TEST_P(ListWalker, MasksTheWalkFlagsInAReadOnly) {
    for (const uint32_t kind : {0u, 10u, plain_edit}) {
        SCOPED_TRACE(kind);
        Context context(kind);
        context.req.walk_flags = 0xffffffff;
        Tree tree(node(list.tag).children({leaf("colour", "blue").in(foreign_ns)}));
        fw.is_request_add = false;
        uint32_t at_the_child = 0;
        when(list.walker + "_parse_augments", "Start", [&] { at_the_child = context.req.walk_flags; });
        EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
        EXPECT_EQ(at_the_child, kind == plain_edit ? 0xffffffffu : 0x11111110u);
        fw.reset();
    }
}

TEST_P(ListWalker, StaysOutOfTheHierarchyWhileAWholeSubtreeIsMapped) {
    Context context(YMAP_REQ_GET);
    context.req.map_all = 1;
    Tree tree(node(list.tag));
    call(list.walker, context, tree);
    EXPECT_THAT(hierarchy(), IsEmpty());
    EXPECT_EQ(tree->hierarchy_marker, 0u);
    EXPECT_EQ(tree->framework_flags, 0u);
}

TEST_P(ListWalker, TellsTheFrameworkTheCurrentList) {
    for (const uint32_t map_all : {0u, 1u}) {
        SCOPED_TRACE(map_all);
        fw.forget_calls();
        Context context(YMAP_REQ_GET);
        context.req.map_all = map_all;
        Tree tree(node(list.tag).children({node("colour")}));
        EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
        EXPECT_EQ(fw.calls_of("yfw_map_update_current_list_node").front().args, list.path);
    }
}

TEST_P(ListWalker, ReturnsTheFailureToUpdateTheCurrentListWithoutLookingAtKeys) {
    Context context(YMAP_REQ_EDIT_ONE_KEY);
    fw.fail("yfw_map_update_current_list_node", 1, 0x77);
    Tree tree(node(list.tag).children({key(list.keys.front())}));
    EXPECT_EQ(call(list.walker, context, tree), 0x77u);
    EXPECT_THAT(fw.calls_of("yfw_map_check_oc_leafref"), IsEmpty());
    EXPECT_EQ(tree->children[0].key_byte, 0);
    EXPECT_THAT(hierarchy(), ElementsAre(std::string("+") + list.tag + ", 2", std::string("-") + list.tag));
    EXPECT_EQ(left().back(), list.walker);
}

// ---- keys ------------------------------------------------------------------------------------------

TEST_P(ListWalker, MarksItsKeys) {
    Context context(YMAP_REQ_GET);
    std::vector<Node> children = {node("config")};
    for (const char *name : list.keys)
        children.push_back(match(name, "127"));
    Tree tree(node(list.tag).children(children));
    EXPECT_EQ(call(list.walker, context, tree), YMAP_OK);
    EXPECT_EQ(tree->children[0].key_byte, 0);
    EXPECT_EQ(tree->children[0].node_flags & YFW_NODE_IS_KEY, 0);
    for (uint32_t index = 1; index < tree->child_count; ++index) {
        EXPECT_EQ(tree->children[index].key_byte, 1);
        EXPECT_EQ(tree->children[index].node_flags, YFW_NODE_IS_KEY | YFW_NODE_HAS_VALUE);
    }
}

TEST_P(ListWalker, MarksItsKeysAlsoWhileAWholeSubtreeIsMapped) {
    Context context(YMAP_REQ_GET);
    context.req.map_all = 1;
    Tree tree(node(list.tag).children({match(list.keys.front(), "127")}));
    call(list.walker, context, tree);
    EXPECT_EQ(tree->children[0].key_byte, 1);
    EXPECT_EQ(tree->children[0].node_flags & YFW_NODE_IS_KEY, YFW_NODE_IS_KEY);
}

TEST_P(ListWalker, ChecksTheLeafrefOfEachKeyInTheEditKindsThatRequireKeys) {
    for (const uint32_t kind : {0u, 10u, plain_edit, 1u, 8u, 15u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        Context context(kind);
        std::vector<Node> children;
        std::vector<Call> expected;
        for (const char *name : list.keys) {
            children.push_back(key(name));
            if (kind == 1 || kind == 8 || kind == 15)
                expected.push_back(
                    {"yfw_map_check_oc_leafref", list.path + ", config, " + name + ", " + list.tag});
        }
        Tree tree(node(list.tag).children(children));
        call(list.walker, context, tree);
        EXPECT_EQ(fw.calls_of("yfw_map_check_oc_leafref"), expected);
    }
}

TEST_P(ListWalker, ReturnsAFailingLeafrefAsItIs) {
    for (const uint32_t kind : {1u, 8u, 15u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        fw.fail("yfw_map_check_oc_leafref", 0, 0x77);
        Context context(kind);
        Tree tree(node(list.tag).children({key(list.keys.front())}));
        EXPECT_EQ(call(list.walker, context, tree), 0x77u);
        EXPECT_THAT(fw.errors(), ElementsAre("leafref value check fail"));
        EXPECT_THAT(hierarchy(), ElementsAre(std::string("+") + list.tag + ", 2", std::string("-") + list.tag));
    }
}

TEST_P(ListWalker, PassesTheFrameworksSubtreeDoneUp) {
    for (const char *operation : {"yfw_map_update_current_list_node", "yfw_map_check_oc_leafref"}) {
        SCOPED_TRACE(operation);
        fw.forget_calls();
        fw.fail(operation, 0, YMAP_STS_SUBTREE_DONE);
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        Tree tree(node(list.tag).children({key(list.keys.front())}));
        EXPECT_EQ(call(list.walker, context, tree), YMAP_STS_SUBTREE_DONE);
        EXPECT_THAT(entered(), ElementsAre(list.walker));
        EXPECT_THAT(left(), ElementsAre(list.walker));
        EXPECT_THAT(hierarchy(), ElementsAre(std::string("+") + list.tag + ", 2", std::string("-") + list.tag));
        fw.reset();
    }
}

// ---- the key rule ----------------------------------------------------------------------------------

struct KeyRule {
    const char *name;
    std::vector<Node> keys;
    std::vector<uint32_t> refused_kinds;
};

void PrintTo(const KeyRule &rule, std::ostream *stream) {
    *stream << rule.name;
}

class InterfaceKeyRule : public OcWalkerTest, public ::testing::WithParamInterface<KeyRule> {
protected:
    Tree entry() const {
        std::vector<Node> children = GetParam().keys;
        children.push_back(node("config"));
        return Tree(node("interface").children(children));
    }
};

TEST_P(InterfaceKeyRule, RefusesTheKindsThatItDoesNotSatisfy) {
    for (const uint32_t kind : {0u, 10u, plain_edit, 7u, 1u, 8u, 15u}) {
        SCOPED_TRACE(kind);
        fw.forget_calls();
        const auto &refused = GetParam().refused_kinds;
        const bool breach = std::find(refused.begin(), refused.end(), kind) != refused.end();
        Context context(kind);
        Tree tree = entry();
        const terrno status = call(interface_walker, context, tree);
        EXPECT_EQ(status, breach ? YMAP_ERR_EMPTY_LIST_KEY : YMAP_OK);
        EXPECT_EQ(fw.errors(),
                  breach ? std::vector<std::string>{"List key node error."} : std::vector<std::string>{});
        EXPECT_EQ(fw.error_paths.size(), breach ? 1u : 0u);
        EXPECT_EQ(context.err_node_name(), breach ? std::optional<std::string>("name") : std::nullopt);
        EXPECT_EQ(hierarchy().back(), "-interface");
    }
}

TEST_P(InterfaceKeyRule, DoesNotHoldWhileAWholeEntryIsMapped) {
    Context context(plain_edit);
    context.req.list_entry_state = 1;
    Tree tree = entry();
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
}

INSTANTIATE_TEST_SUITE_P(
    Of, InterfaceKeyRule,
    ::testing::Values(
        KeyRule{"NoKey", {}, {1, 8, 15}}, KeyRule{"OneValuedKey", {leaf("name", "eth0")}, {}},
        KeyRule{"OneKeyWithoutAValue", {node("name")}, {1, 8, 15}},
        KeyRule{
            "TwoValuedKeys", {leaf("name", "eth0"), leaf("name", "eth1")}, {0, 10, plain_edit, 7, 1, 8, 15}},
        KeyRule{"OneValuedOfTwoKeys", {leaf("name", "eth0"), node("name")}, {0, 10, plain_edit, 7, 1, 8, 15}},
        KeyRule{"TwoKeysWithoutAValue", {node("name"), node("name")}, {0, 10, plain_edit, 7, 1, 8, 15}}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(OcWalkerTest, OtherListsTakeTwoKeysOfTheSameName) {
    Context context(YMAP_REQ_GET);
    Tree neighbor(node("neighbor").children({node("id"), node("id"), node("config")}));
    EXPECT_EQ(call(neighbor_walker, context, neighbor), YMAP_OK);
    Tree capability(node("capability").children({node("name"), node("name"), node("config")}));
    EXPECT_EQ(call(capability_walker, context, capability), YMAP_OK);
    Tree tlv(node("tlv").children({node("type"), node("type"), node("config")}));
    EXPECT_EQ(call(tlv_walker, context, tlv), YMAP_OK);
    EXPECT_THAT(fw.errors(), IsEmpty());
}

// ---- keys in the child loop ------------------------------------------------------------------------

TEST_F(OcWalkerTest, AnInterfaceKeyMustNotBeDeleted) {
    for (const uint32_t kind : {1u, plain_edit}) {
        for (const uint32_t operation : {YFW_OP_DELETE, YFW_OP_REMOVE}) {
            SCOPED_TRACE(std::to_string(kind) + " " + std::to_string(operation));
            fw.forget_calls();
            Context context(kind);
            Tree tree(node("interface").children({leaf("name", "eth0").operation(operation), node("config")}));
            EXPECT_EQ(call(interface_walker, context, tree), YMAP_ERR_KEY_DELETE);
            EXPECT_THAT(fw.errors(), ElementsAre("The key node should not have delete operation."));
            EXPECT_EQ(fw.error_paths.size(), 1u);
            EXPECT_THAT(entered(), Not(Contains(name_walker)));
            EXPECT_EQ(hierarchy().back(), "-interface");
        }
    }
}

TEST_F(OcWalkerTest, OtherListsLetTheirKeysBeDeleted) {
    Context context(plain_edit);
    Tree tlv(node("tlv").children({leaf("type", "127").operation(YFW_OP_DELETE), node("config")}));
    EXPECT_EQ(call(tlv_walker, context, tlv), YMAP_OK);
    Tree capability(
        node("capability").children({leaf("name", "ROUTER").operation(YFW_OP_DELETE), node("config")}));
    EXPECT_EQ(call(capability_walker, context, capability), YMAP_OK);
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OcWalkerTest, AnInterfaceKeyNeedsAValueAlsoWhereTheKeyRuleIsSkipped) {
    for (const uint32_t kind : {1u, 8u, 15u}) {
        for (const auto &[map_all, state] : {std::pair(1u, 0u), std::pair(0u, 1u)}) {
            SCOPED_TRACE(std::to_string(kind) + " " + std::to_string(map_all));
            fw.forget_calls();
            Context context(kind);
            context.req.map_all = map_all;
            context.req.list_entry_state = state;
            Tree tree(node("interface").children({node("name"), node("config")}));
            EXPECT_EQ(call(interface_walker, context, tree), YMAP_ERR_EMPTY_LIST_KEY);
            EXPECT_THAT(fw.errors(), ElementsAre("Empty list key specified."));
            EXPECT_THAT(fw.error_paths, ElementsAre(Field(&ErrorPath::err_node_name, "name")));
            EXPECT_THAT(entered(), Not(Contains(entry_config)));
        }
    }
}

TEST_F(OcWalkerTest, AnInterfaceKeyNeedsNoValueInOtherKinds) {
    for (const uint32_t kind : {0u, 10u, plain_edit}) {
        SCOPED_TRACE(kind);
        Context context(kind);
        Tree tree(node("interface").children({node("name"), node("config")}));
        EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    }
    EXPECT_THAT(fw.errors(), IsEmpty());
}

TEST_F(OcWalkerTest, AnInterfaceEntryIsWalkedInTheOrderOfItsChildren) {
    Context context(YMAP_REQ_GET);
    Tree tree(node("interface")
                  .children({node("config").children({node("enabled")}), match("name", "eth0"),
                             node("state").children({node("name")})}));
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(hierarchy(),
                ElementsAre("+interface, 2", "+config, 1", "-config", "+state, 1", "-state", "-interface"));
}

TEST_F(OcWalkerTest, AnInterfaceEntryStopsAtTheFirstChildThatFails) {
    Context context(YMAP_REQ_GET);
    // The list's path is the first add, the interface name the second.
    fw.fail("yfw_map_datatree_add_path_flagged", 2, 0x77);
    Tree tree(node("interface").children({match("name", "eth0"), node("config").children({node("enabled")})}));
    EXPECT_EQ(call(interface_walker, context, tree), 0x77u);
    EXPECT_THAT(hierarchy(), ElementsAre("+interface, 2", "-interface"));
    EXPECT_EQ(left().back(), interface_walker);
}

// ---- the list callback -----------------------------------------------------------------------------

struct CurrentOperation {
    uint32_t operation;
    uint32_t flags;
    uint32_t expected;
};

class CurrentListOperation : public OcWalkerTest, public ::testing::WithParamInterface<CurrentOperation> {};

TEST_P(CurrentListOperation, IsThatOfAnEntryWhoseOperationThePlugInChanged) {
    Context context(plain_edit);
    context.ctx.current_list_operation = 99;
    Tree tree(node("interface")
                  .operation(GetParam().operation)
                  .flags(GetParam().flags)
                  .children({leaf("name", "eth0"), leaf("colour", "blue").in(foreign_ns)}));
    uint32_t at_the_key = 0;
    when(name_walker, "Start", [&] { at_the_key = context.ctx.current_list_operation; });
    fw.is_request_add = false;
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_EQ(at_the_key, GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Of, CurrentListOperation,
    ::testing::Values(CurrentOperation{YFW_OP_NONE, 0, 0},
                      CurrentOperation{YFW_OP_NONE, YFW_NODE_OPERATION_CHANGED, 0},
                      CurrentOperation{YFW_OP_CREATE, 0, 0},
                      CurrentOperation{YFW_OP_CREATE, YFW_NODE_OPERATION_CHANGED, YFW_OP_CREATE},
                      CurrentOperation{YFW_OP_REMOVE, YFW_NODE_OPERATION_CHANGED, YFW_OP_REMOVE},
                      CurrentOperation{YFW_OP_DELETE, 0, 0}));

TEST_F(OcWalkerTest, AFailingListCallbackLeavesTheCurrentListOperationAndTheChildren) {
    Context context(YMAP_REQ_GET);
    context.ctx.current_list_operation = 99;
    fw.fail("yfw_map_datatree_add_path_flagged", 1, 0x77);
    Tree tree(node("interface").children({match("name", "eth0")}));
    EXPECT_EQ(call(interface_walker, context, tree), 0x77u);
    EXPECT_EQ(context.ctx.current_list_operation, 99u);
    EXPECT_THAT(entered(), ElementsAre(interface_walker, list_callback));
    EXPECT_THAT(hierarchy(), ElementsAre("+interface, 2", "-interface"));
}

TEST_F(OcWalkerTest, AListCallbackThatIsDoneEndsTheWalkInSuccess) {
    Context context(YMAP_REQ_GET);
    fw.fail("yfw_map_datatree_add_path_flagged", 1, YMAP_STS_SUBTREE_DONE);
    Tree tree(node("interface").children({match("name", "eth0")}));
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(entered(), ElementsAre(interface_walker, list_callback));
    // The walker writes no exit trace.
    EXPECT_THAT(left(), ElementsAre(list_callback));
    EXPECT_THAT(hierarchy(), ElementsAre("+interface, 2", "-interface"));
}

TEST_F(OcWalkerTest, AnEntryPassesTheSubtreeDoneOfItsChildrenUp) {
    // The list's path is the first add, the interface name the second, a leaf below "config" the third.
    for (const unsigned failing : {2u, 3u}) {
        SCOPED_TRACE(failing);
        Context context(YMAP_REQ_GET);
        fw.fail("yfw_map_datatree_add_path_flagged", failing, YMAP_STS_SUBTREE_DONE);
        Tree tree(node("interface").children({match("name", "eth0"), node("config").children({node("name")})}));
        EXPECT_EQ(call(interface_walker, context, tree), YMAP_STS_SUBTREE_DONE);
        EXPECT_EQ(left().back(), interface_walker);
        EXPECT_EQ(hierarchy().back(), "-interface");
        fw.reset();
    }
}

// ---- the list-entry state --------------------------------------------------------------------------

struct EntryState {
    const char *name;
    uint32_t operation;
    uint32_t map_all;
    std::vector<Node> children;
    uint32_t at_callback;
    uint32_t at_config; // while the whole entry is mapped
};

void PrintTo(const EntryState &state, std::ostream *stream) {
    *stream << state.name;
}

class ListEntryState : public OcWalkerTest, public ::testing::WithParamInterface<EntryState> {};

TEST_P(ListEntryState, TellsHowTheEntryIsDeleted) {
    Context context(plain_edit);
    context.req.map_all = GetParam().map_all;
    Tree tree(GetParam().children.empty()
                  ? node("interface").operation(GetParam().operation)
                  : node("interface").operation(GetParam().operation).children(GetParam().children));
    std::vector<uint32_t> at_callback;
    std::vector<uint32_t> at_config;
    when(list_callback, "Start", [&] { at_callback.push_back(context.req.list_entry_state); });
    when(entry_config, "Start", [&] { at_config.push_back(context.req.list_entry_state); });
    EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
    EXPECT_THAT(at_callback, ElementsAre(GetParam().at_callback));
    EXPECT_EQ(at_config.back(), GetParam().at_config);
    EXPECT_EQ(context.req.list_entry_state, 0u);
    EXPECT_EQ(context.req.map_all, GetParam().map_all);
}

INSTANTIATE_TEST_SUITE_P(
    Of, ListEntryState,
    ::testing::Values(
        EntryState{"DeleteWithTheKeyAlone", YFW_OP_DELETE, 0, {leaf("name", "eth0")}, 2, 0},
        EntryState{"RemoveWithTheKeyAlone", YFW_OP_REMOVE, 0, {leaf("name", "eth0")}, 2, 0},
        EntryState{"DeleteWithMoreThanTheKey", YFW_OP_DELETE, 0, {leaf("name", "eth0"), node("config")}, 0, 0},
        EntryState{"DeleteWithoutChildren", YFW_OP_DELETE, 0, {}, 0, 0},
        EntryState{"DeleteWithoutChildrenInAWholeSubtree", YFW_OP_DELETE, 1, {}, 1, 1}),
    [](const auto &test) { return std::string(test.param.name); });

} // namespace
} // namespace oclldp_test
