// A replace of an OpenConfig list entry: its two passes, and what they leave.
#include <gmock/gmock.h>

#include <ostream>
#include <utility>

#include "oc_walker_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

struct Pass {
    uint32_t request_flags;
    uint32_t replace_marker;
    uint32_t operation;
    uint32_t changed;
    uint32_t children;

    bool operator==(const Pass &) const = default;
};

void PrintTo(const Pass &pass, std::ostream *stream) {
    *stream << "flags " << pass.request_flags << " marker " << pass.replace_marker << " operation "
            << pass.operation << " changed " << pass.changed << " children " << pass.children;
}

class ReplacedEntry : public OcWalkerTest {
protected:
    Pass now() {
        return {context.req.request_flags, context.req.replace_marker, tree->operation,
                tree->node_flags & static_cast<uint32_t>(YFW_NODE_OPERATION_CHANGED),
                tree->children == nullptr ? 0 : tree->child_count};
    }

    Context context{YMAP_REQ_EDIT_ONE_KEY};
    Tree tree{node("capability").operation(YFW_OP_REPLACE).children({leaf("name", "ROUTER"), node("config")})};
    const std::string key_walker = oq("lvla_lldp_capability_name");
    const std::string capability_config = oq("lvla_lldp_capability_config");
};

TEST_F(ReplacedEntry, IsRemovedAndThenMergedWithItsChildrenAttachedInBothPasses) {
    std::vector<Pass> passes;
    when(key_walker, "Start", [&] { passes.push_back(now()); });
    EXPECT_EQ(call(capability_walker, context, tree), YMAP_OK);
    EXPECT_THAT(passes, ElementsAre(Pass{YFW_REQ_REPLACE_DELETE_PASS, 1, YFW_OP_REMOVE, 0x10, 2},
                                    Pass{YFW_REQ_REPLACE_MERGE_PASS, 1, YFW_OP_NONE, 0x10, 2}));
}

TEST_F(ReplacedEntry, WalksItsOtherChildrenByThemselvesInTheSecondPassOnly) {
    std::vector<uint32_t> map_all;
    when(capability_config, "Start", [&] { map_all.push_back(context.req.map_all); });
    EXPECT_EQ(call(capability_walker, context, tree), YMAP_OK);
    // The first value was seen while the whole entry was mapped.
    EXPECT_THAT(map_all, ElementsAre(1u, 0u));
}

TEST_F(ReplacedEntry, LeavesAMergeAndTheRequestAsItWas) {
    EXPECT_EQ(call(capability_walker, context, tree), YMAP_OK);
    EXPECT_EQ(now(), (Pass{0, 0, YFW_OP_NONE, 0x10, 2}));
    EXPECT_EQ(context.req.list_entry_state, 0u);
    EXPECT_EQ(context.req.map_all, 0u);
    EXPECT_EQ(fw.entry_stack_size(), 0u);
    EXPECT_THAT(hierarchy(), ElementsAre("+capability, 2", "+config, 1", "-config", "-capability"));
}

TEST_F(ReplacedEntry, CallsTheListCallbackInEachPass) {
    uint32_t calls = 0;
    when(oq("duck_map_list"), "End", [&] { ++calls; });
    EXPECT_EQ(call(capability_walker, context, tree), YMAP_OK);
    EXPECT_EQ(calls, 2u);
}

// The name's callback turns its node into a removal in the first pass; the second finds it as the client sent
// it.
TEST_F(OcWalkerTest, AReplacedInterfaceGetsItsKeysOperationBackForTheMerge) {
    for (const uint32_t operation : {YFW_OP_NONE, YFW_OP_REPLACE, YFW_OP_CREATE}) {
        SCOPED_TRACE(operation);
        fw.reset();
        Context context(YMAP_REQ_EDIT_ONE_KEY);
        Tree tree(node("interface")
                      .operation(YFW_OP_REPLACE)
                      .children({leaf("name", "eth0").operation(operation), node("config")}));
        const tidl_yfw_datatree &name = tree.at("name");
        std::vector<std::pair<std::string, uint32_t>> from_the_key;
        fw.on_add([&](const Add &add) {
            if (add.source == &name)
                from_the_key.emplace_back(add.path, *add.source_operation);
        });
        EXPECT_EQ(call(interface_walker, context, tree), YMAP_OK);
        const std::string entry = "/interface-configurations/interface-configuration";
        EXPECT_THAT(from_the_key, ElementsAre(std::pair(entry + "/interface-name", operation),
                                              std::pair(entry + "/lldp", uint32_t{YFW_OP_REMOVE}),
                                              std::pair(entry + "/interface-name", operation)));
        EXPECT_EQ(name.operation, operation);
        EXPECT_EQ(name.node_flags, YFW_NODE_IS_KEY);
        EXPECT_THAT(fw.errors(), IsEmpty());
    }
}

} // namespace
} // namespace oclldp_test
