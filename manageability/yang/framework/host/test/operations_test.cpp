#include <cstdlib>
#include <ostream>

#include <gtest/gtest.h>

#include "host/request_context.h"
#include "test_nodes.h"

namespace yfw::host::test {
namespace {

struct Texts {
    const char *a;
    const char *b;
    bool match;
};

class Match : public testing::TestWithParam<Texts> {};

TEST_P(Match, IsEqualityOfTwoTexts) {
    EXPECT_EQ(yfw_map_do_these_match(GetParam().a, GetParam().b) != 0, GetParam().match);
}

INSTANTIATE_TEST_SUITE_P(Pairs, Match,
                         testing::Values(Texts{"name", "name", true}, Texts{"name", "names", false},
                                         Texts{"name", "Name", false}, Texts{"", "", true},
                                         Texts{"", "name", false}, Texts{nullptr, "name", false},
                                         Texts{"name", nullptr, false}, Texts{nullptr, nullptr, false}));

struct Edit {
    uint32_t kind;
    uint32_t operation;
    bool adds;
    bool deletes;
};

std::ostream &operator<<(std::ostream &out, const Edit &edit) {
    return out << "kind " << edit.kind << " operation " << edit.operation;
}

class RequestNode : public testing::TestWithParam<Edit> {
protected:
    RequestContext context{{.kind = GetParam().kind}, nullptr, nullptr, nullptr};
    tidl_yfw_datatree node{};

    void SetUp() override { node.operation = GetParam().operation; }
};

TEST_P(RequestNode, IsAddedWhenAnEditCreatesOrMergesIt) {
    EXPECT_EQ(yfw_map_is_request_add(context.handle(), &node) != 0, GetParam().adds);
}

TEST_P(RequestNode, IsDeletedWhenItCarriesADeleteOrRemove) {
    EXPECT_EQ(yfw_map_is_request_delete(&node) != 0, GetParam().deletes);
}

INSTANTIATE_TEST_SUITE_P(Kinds, RequestNode,
                         testing::Values(Edit{YMAP_REQ_GET, YFW_OP_NONE, false, false},
                                         Edit{YMAP_REQ_GET_CONFIG, YFW_OP_NONE, false, false},
                                         Edit{YMAP_REQ_EDIT_ONE_KEY, YFW_OP_NONE, true, false},
                                         Edit{YMAP_REQ_EDIT_ONE_KEY, YFW_OP_CREATE, true, false},
                                         Edit{YMAP_REQ_EDIT_VALUED_KEY, YFW_OP_NONE, true, false},
                                         Edit{YMAP_REQ_EDIT_ONE_KEY, YFW_OP_DELETE, false, true},
                                         Edit{YMAP_REQ_EDIT_ONE_KEY_ALSO, YFW_OP_REMOVE, false, true}));

TEST(RequestNodes, ThatAreMissingAreNeitherAddedNorDeleted) {
    RequestContext context({.kind = YMAP_REQ_EDIT_ONE_KEY}, nullptr, nullptr, nullptr);
    EXPECT_EQ(yfw_map_is_request_add(context.handle(), nullptr), 0);
    EXPECT_EQ(yfw_map_is_request_delete(nullptr), 0);
}

class RequestOperations : public testing::Test {
protected:
    yfw_map_ctx ctx() { return context.handle(); }
    yfw_output_list_ctx &output_list() { return ctx()->req_ctx->output_list; }

    // Makes /lldp/interfaces/interface[name='eth1'] the current node.
    void stand_in_the_interface() {
        context.hierarchy().start(tree.root());
        for (const auto *node : {tree.at({}), tree.at({0}), tree.at({0, 0})})
            yfw_map_add_to_node_hierarchy(ctx(), node, 1);
    }

    NodeTree tree{NodeText{"lldp", {{"interfaces", {{"interface", {key("name", "eth1")}}}}}}};
    RequestContext context{{}, nullptr, nullptr, nullptr};
};

TEST_F(RequestOperations, RecordTheErrorPathOfTheCurrentNode) {
    stand_in_the_interface();
    yfw_oc_error_path(ctx());
    EXPECT_EQ(context.error_path(), "/lldp/interfaces/interface[name='eth1']");
}

TEST_F(RequestOperations, AppendTheFailingTagToTheErrorPath) {
    stand_in_the_interface();
    ctx()->req_ctx->err_node_name = yfw_strdup("bogus", "YFW MAP");
    yfw_oc_error_path(ctx());
    EXPECT_EQ(context.error_path(), "/lldp/interfaces/interface[name='eth1']/bogus");
}

TEST_F(RequestOperations, KeepTheErrorPathWhenTheWalkLeavesTheNode) {
    stand_in_the_interface();
    yfw_oc_error_path(ctx());
    yfw_map_remove_from_node_hierarchy(ctx(), tree.at({0, 0}));
    yfw_map_remove_from_node_hierarchy(ctx(), tree.at({0}));
    EXPECT_EQ(context.error_path(), "/lldp/interfaces/interface[name='eth1']");
}

// LeakSanitizer does the checking.
TEST_F(RequestOperations, LeaveNothingOfThePluginsMemoryBehind) {
    ctx()->req_ctx->err_node_name = yfw_strdup("a tag that nobody reported", "YFW MAP");
    ctx()->req_ctx->common_data_ptr = std::calloc(1, 255);
    ASSERT_NE(ctx()->req_ctx->common_data_ptr, nullptr);
}

TEST_F(RequestOperations, CountTheEntriesInTheOutputList) {
    EXPECT_EQ(output_list().depth, 0);
    EXPECT_EQ(yfw_add_to_output_list_ctx(ctx(), tree.at({0, 0}), tree.at({0})), YMAP_OK);
    EXPECT_EQ(output_list().depth, 1);
    EXPECT_EQ(yfw_add_to_output_list_ctx(ctx(), tree.at({0, 0, 0}), tree.at({0})), YMAP_OK);
    EXPECT_EQ(output_list().depth, 2);
    EXPECT_EQ(yfw_remove_from_output_list_ctx(ctx(), tree.at({0, 0, 0}), tree.at({0})), YMAP_OK);
    EXPECT_EQ(yfw_remove_from_output_list_ctx(ctx(), tree.at({0, 0}), tree.at({0})), YMAP_OK);
    EXPECT_EQ(output_list().depth, 0);
}

TEST_F(RequestOperations, DropNothingFromAnEmptyOutputList) {
    EXPECT_NE(yfw_remove_from_output_list_ctx(ctx(), tree.at({0, 0}), tree.at({0})), YMAP_OK);
    EXPECT_EQ(output_list().depth, 0);
}

TEST_F(RequestOperations, HandEntriesBackFromTheStackLastOnesFirst) {
    EXPECT_EQ(yfw_map_util_itree_stack_size(ctx()), 0u);
    EXPECT_EQ(yfw_map_util_itree_stack_push(ctx(), tree.at({0}), 1, nullptr), YMAP_OK);
    const yfw_map_callback callback = [](yfw_map_ctx, const tidl_yfw_datatree *, tidl_yfw_datatree *) {
        return YMAP_OK;
    };
    EXPECT_EQ(yfw_map_util_itree_stack_push(ctx(), tree.at({0, 0}), 7, callback), YMAP_OK);
    EXPECT_EQ(yfw_map_util_itree_stack_size(ctx()), 2u);
    yfw_map_itree_item item{};
    EXPECT_EQ(yfw_map_util_itree_stack_peak(ctx(), &item), YMAP_OK);
    EXPECT_EQ(item.entries, tree.at({0, 0}));
    EXPECT_EQ(item.count, 7u);
    EXPECT_EQ(item.callback, callback);
    EXPECT_EQ(yfw_map_util_itree_stack_size(ctx()), 2u) << "peak() must not remove the entry";
    EXPECT_EQ(yfw_map_util_itree_stack_pop(ctx()), YMAP_OK);
    EXPECT_EQ(yfw_map_util_itree_stack_peak(ctx(), &item), YMAP_OK);
    EXPECT_EQ(item.entries, tree.at({0}));
    EXPECT_EQ(item.callback, nullptr);
}

TEST_F(RequestOperations, TakeEntriesWithoutAnArrayOnTheStack) {
    EXPECT_EQ(yfw_map_util_itree_stack_push(ctx(), nullptr, 0, nullptr), YMAP_OK);
    yfw_map_itree_item item{tree.at({0}), 9, nullptr};
    EXPECT_EQ(yfw_map_util_itree_stack_peak(ctx(), &item), YMAP_OK);
    EXPECT_EQ(item.entries, nullptr);
    EXPECT_EQ(item.count, 0u);
}

TEST_F(RequestOperations, HaveAStatusForAnEmptyStack) {
    yfw_map_itree_item item{};
    EXPECT_NE(yfw_map_util_itree_stack_peak(ctx(), &item), YMAP_OK);
    EXPECT_NE(yfw_map_util_itree_stack_pop(ctx()), YMAP_OK);
    EXPECT_EQ(yfw_map_util_itree_stack_size(ctx()), 0u);
}

TEST_F(RequestOperations, KeepThePathsOfDeletedEntries) {
    EXPECT_EQ(yfw_map_copy_trim_path_list_ctx(ctx(), "/lldp/interfaces/interface"), YMAP_OK);
    EXPECT_EQ(context.trimmed_paths(), std::vector<std::string>{"/lldp/interfaces/interface"});
}

TEST_F(RequestOperations, RefuseToAddToWhatIsNoOutputNode) {
    EXPECT_NE(yfw_map_datatree_add_path_flagged(ctx(), nullptr, "/lldp/state", lldp_ns.data(), nullptr, nullptr,
                                                nullptr, 0, 0),
              YMAP_OK);
    EXPECT_NE(yfw_map_datatree_add_path_flagged(ctx(), tree.at({0}), "/lldp/state", lldp_ns.data(), nullptr,
                                                nullptr, nullptr, 0, 0),
              YMAP_OK);
}

struct KeyAndTarget {
    const char *name;
    std::vector<NodeText> children;
    bool agrees;
};

std::ostream &operator<<(std::ostream &out, const KeyAndTarget &entry) {
    return out << entry.name;
}

class LeafReference : public testing::TestWithParam<KeyAndTarget> {};

TEST_P(LeafReference, HoldsWhenTheKeyAgreesWithItsTarget) {
    NodeTree tree(NodeText{"interface", GetParam().children});
    RequestContext context({.kind = YMAP_REQ_EDIT_ONE_KEY}, nullptr, nullptr, nullptr);
    const terrno status =
        yfw_map_check_oc_leafref(context.handle(), "/lldp/interfaces/interface", "config", "name", tree.root());
    EXPECT_EQ(status == YMAP_OK, GetParam().agrees) << status;
}

INSTANTIATE_TEST_SUITE_P(
    Entries, LeafReference,
    testing::Values(
        KeyAndTarget{"the same value", {leaf("name", "a"), {"config", {leaf("name", "a")}}}, true},
        KeyAndTarget{"another value", {leaf("name", "a"), {"config", {leaf("name", "b")}}}, false},
        KeyAndTarget{"an empty value", {leaf("name", "a"), {"config", {leaf("name", "")}}}, false},
        KeyAndTarget{"the target first", {{"config", {leaf("name", "b")}}, leaf("name", "a")}, false},
        KeyAndTarget{"no container", {leaf("name", "a")}, true},
        KeyAndTarget{"an empty container", {leaf("name", "a"), {"config", {}}}, true},
        KeyAndTarget{"another leaf", {leaf("name", "a"), {"config", {leaf("enabled", "true")}}}, true},
        KeyAndTarget{"another container", {leaf("name", "a"), {"state", {leaf("name", "b")}}}, true}));

TEST(RequestDescriptor, TellsThePluginWhatIsAsked) {
    RequestContext whole({}, nullptr, nullptr, nullptr);
    EXPECT_EQ(whole.handle()->req_ctx->request->req_type, static_cast<uint32_t>(YMAP_REQ_GET));
    EXPECT_NE(whole.handle()->req_ctx->request->req_selection_empty, 0u);
    RequestContext state({.kind = YMAP_REQ_GET, .content = YFW_CONTENT_OPERATIONAL, .selects_state = true},
                         nullptr, nullptr, nullptr);
    const yfw_request_descriptor &asked = *state.handle()->req_ctx->request;
    EXPECT_EQ(asked.data_kind, static_cast<uint32_t>(YFW_CONTENT_OPERATIONAL));
    EXPECT_EQ(asked.req_content, static_cast<uint32_t>(YFW_CONTENT_OPERATIONAL));
    EXPECT_EQ(asked.req_selection_empty, 0u);
    EXPECT_NE((asked.touches_4f4 & 0x0f) | (asked.touches_520 & 0x03) | (asked.touches_538 & 0x03) |
                  (asked.touches_540 & 0x07) | (asked.touches_560 & 0x03) | (asked.touches_584 & 0x0f) |
                  (asked.touches_588 & 0x07) | (asked.touches_808 & 0x8000) | asked.touches_559[0],
              0);
}

TEST(RequestDescriptor, SaysOfConfigurationThatItTouchesNoState) {
    RequestContext context({.kind = YMAP_REQ_GET_CONFIG, .content = YFW_CONTENT_CONFIG}, nullptr, nullptr,
                           nullptr);
    const yfw_request_descriptor &asked = *context.handle()->req_ctx->request;
    EXPECT_EQ(asked.data_kind, static_cast<uint32_t>(YFW_CONTENT_CONFIG));
    EXPECT_EQ(asked.req_selection_empty, 0u);
    EXPECT_EQ(asked.touches_4f4 | asked.touches_520 | asked.touches_538 | asked.touches_540 |
                  asked.touches_560 | asked.touches_584 | asked.touches_588 | asked.touches_808 |
                  asked.touches_559[0] | asked.touches_559[1],
              0);
}

} // namespace
} // namespace yfw::host::test
