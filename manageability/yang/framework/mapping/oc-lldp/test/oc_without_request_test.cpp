// OpenConfig walks whose context has no request: the walkers of one walk share their state, two walks nothing.
#include <gmock/gmock.h>

#include "oc_walker_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::AnyOf;
using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WithoutRequest : public OcWalkerTest {
protected:
    WithoutRequest() {
        fw.is_request_add = false;
        context.ctx.req_ctx = nullptr;
    }
    // A replace whose first pass the callback ends: it leaves its marks in the state of the walk.
    void leave_a_replace_unfinished(Context &of) {
        Tree tree(node("interfaces").operation(YFW_OP_REPLACE));
        EXPECT_EQ(call(interfaces_walker, of, tree), YMAP_OK);
        EXPECT_EQ(tree->operation, YFW_OP_REMOVE);
        fw.forget_calls();
    }
    terrno edit_an_interface(Context &of) {
        Tree tree(node("interface")
                      .children({leaf("name", "eth0"), node("config").children({leaf("enabled", "true")})}));
        return call(interface_walker, of, tree);
    }

    const std::string enabled = oq("lvlb_lldp_config_enabled");
    Context context{plain_edit};
};

TEST_F(WithoutRequest, AWalkIsAnEdit) {
    EXPECT_EQ(edit_an_interface(context), YMAP_OK);
    EXPECT_THAT(entered(), Contains(enabled));
    EXPECT_THAT(hierarchy(), ElementsAre("+interface, 2", "+config, 1", "-config", "-interface"));
}

TEST_F(WithoutRequest, AnUnfinishedReplaceIsForgottenByTheNextWalk) {
    leave_a_replace_unfinished(context);
    EXPECT_EQ(edit_an_interface(context), YMAP_OK);
    EXPECT_THAT(entered(), Contains(enabled));
}

TEST_F(WithoutRequest, AnUnfinishedReplaceIsForgottenByAnotherRequest) {
    Context other(plain_edit);
    other.ctx.req_ctx = nullptr;
    leave_a_replace_unfinished(other);
    EXPECT_EQ(edit_an_interface(context), YMAP_OK);
    EXPECT_THAT(entered(), Contains(enabled));
}

TEST_F(WithoutRequest, AnUnfinishedReplaceOutlivesTheWalkOfARequestThatHasAContext) {
    Context with(plain_edit);
    leave_a_replace_unfinished(with);
    EXPECT_EQ(with.req.request_flags, static_cast<uint32_t>(YFW_REQ_REPLACE_DELETE_PASS));
    EXPECT_EQ(with.req.replace_marker, 1u);
}

// The walkers below know that the container is mapped whole, and stay out of the hierarchy.
TEST_F(WithoutRequest, TheWalkersBelowShareTheStateOfTheWalk) {
    for (int walk = 0; walk < 2; ++walk) {
        SCOPED_TRACE(walk);
        fw.forget_calls();
        Tree tree(node("lldp").operation(YFW_OP_DELETE));
        EXPECT_EQ(call(root_walker, context, tree), YMAP_OK);
        EXPECT_THAT(hierarchy(), ElementsAre("+lldp, 1", "-lldp"));
        EXPECT_THAT(entered(), Contains(config_walker));
    }
}

TEST_F(WithoutRequest, AReplacedContainerIsRemovedAndMerged) {
    for (int walk = 0; walk < 2; ++walk) {
        SCOPED_TRACE(walk);
        fw.forget_calls();
        Tree tree(node("config").operation(YFW_OP_REPLACE).children({leaf("system-name", "r1")}));
        EXPECT_EQ(call(config_walker, context, tree), YMAP_OK);
        EXPECT_EQ(fw.adds.back().path, "/lldp/system-name");
        EXPECT_EQ(fw.adds.back().source_operation, static_cast<uint32_t>(YFW_OP_NONE));
        EXPECT_THAT(fw.add_paths(), Contains("/lldp/chassis-id").Times(1));
    }
}

TEST_F(WithoutRequest, EveryWalkerAnswers) {
    std::vector<terrno> statuses;
    for (const WalkerRow &row : walker_table()) {
        for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE}) {
            Tree tree(node(row.tag).operation(operation).children({leaf("name", "eth0").in(foreign_ns)}));
            statuses.push_back(call(row.walker, context, tree));
        }
    }
    for (const LeafWalker &walker : leaf_walkers()) {
        Tree tree(node(walker.tag));
        statuses.push_back(call(walker.walker, context, tree));
    }
    EXPECT_THAT(statuses, Each(AnyOf(YMAP_OK, YMAP_STS_NO_MAPPING)));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

} // namespace
} // namespace oclldp_test
