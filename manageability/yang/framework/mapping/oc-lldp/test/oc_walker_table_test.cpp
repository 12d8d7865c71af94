// Which callback and child walkers each OpenConfig walker calls for each kind of request, and what its leaf
// walkers and parse-augments hooks do.
#include <gmock/gmock.h>

#include <algorithm>
#include <set>

#include "oc_walker_fixture.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Field;
using ::testing::IsEmpty;
using ::testing::Not;

std::string after_prefix(const std::string &name) {
    return name.substr(oq("").size());
}

// ---- children --------------------------------------------------------------------------------------

struct Dispatch {
    WalkerRow row;
    WalkerChild child;
};

void PrintTo(const Dispatch &d, std::ostream *stream) {
    *stream << d.row.walker << " " << d.child.tag;
}

std::vector<Dispatch> all_dispatches() {
    std::vector<Dispatch> all;
    for (const WalkerRow &row : walker_table()) {
        for (const WalkerChild &child : row.children)
            all.push_back({row, child});
    }
    return all;
}

class WalkerDispatch : public OcWalkerTest, public ::testing::WithParamInterface<Dispatch> {
protected:
    terrno walk(Context &context) {
        fw.forget_calls();
        Tree tree(node(row.tag).children({node(child.tag)}));
        return call(row.walker, context, tree);
    }

    const WalkerRow &row = GetParam().row;
    const WalkerChild &child = GetParam().child;
};

TEST_P(WalkerDispatch, CallsTheNodeCallbackThenTheChildsWalkerThenItsCallback) {
    for (const uint32_t kind : {0u, 10u, plain_edit}) {
        if (child.get_only && kind != YMAP_REQ_GET)
            continue;
        SCOPED_TRACE(kind);
        Context context(kind);
        walk(context);
        std::vector<std::string> expected = {row.walker, row.callback, child.walker};
        if (!child.leaf_callback.empty())
            expected.push_back(child.leaf_callback);
        std::vector<std::string> functions = entered();
        functions.resize(expected.size());
        EXPECT_EQ(functions, expected);
        EXPECT_THAT(fw.errors(), Not(Contains("Unsupported tag is specified in the request.")));
    }
}

TEST_P(WalkerDispatch, KeepsAGetOnlyChildFromOtherKinds) {
    for (const uint32_t kind : {0u, plain_edit}) {
        if (!child.get_only)
            continue;
        SCOPED_TRACE(kind);
        const bool edit = kind == plain_edit;
        Context context(kind);
        EXPECT_EQ(walk(context), edit ? YMAP_ERR_UNSUPPORTED_TAG : YMAP_OK);
        EXPECT_THAT(entered(), Not(Contains(child.walker)));
        EXPECT_THAT(fw.errors(), ElementsAre("Unsupported tag is specified in the request."));
        EXPECT_EQ(context.err_node_name(), edit ? std::optional<std::string>(child.tag) : std::nullopt);
    }
}

INSTANTIATE_TEST_SUITE_P(Of, WalkerDispatch, ::testing::ValuesIn(all_dispatches()), [](const auto &test) {
    std::string name = after_prefix(test.param.row.walker) + "_to_" + test.param.child.tag;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
});

// ---- whole subtrees --------------------------------------------------------------------------------

struct Whole {
    WalkerRow row;
    uint32_t kind;
};

void PrintTo(const Whole &whole, std::ostream *stream) {
    *stream << whole.row.walker << " kind " << whole.kind;
}

bool is_list(const WalkerRow &row) {
    return row.callback.find("_list_") != std::string::npos || row.callback == oq("duck_map_list");
}

std::vector<Whole> all_wholes() {
    std::vector<Whole> all;
    for (const WalkerRow &row : walker_table()) {
        for (const uint32_t kind : {0u, 10u})
            all.push_back({row, kind});
    }
    return all;
}

class WholeSubtree : public OcWalkerTest, public ::testing::WithParamInterface<Whole> {
protected:
    const WalkerRow &row = GetParam().row;
    const uint32_t kind = GetParam().kind;

    // Of the entered walkers, those of the table's direct children and the table's own hook.
    std::vector<std::string> children_entered() const {
        std::set<std::string> own = {row.walker + "_parse_augments"};
        for (const WalkerChild &child : row.children)
            own.insert(child.walker);
        std::vector<std::string> kept;
        for (const std::string &function : entered()) {
            if (own.contains(function))
                kept.push_back(function);
        }
        return kept;
    }

    std::vector<std::string> expected_children() const {
        std::vector<std::string> names;
        for (const WalkerChild &child : row.children) {
            // Mapping a list whole skips its keys, and mapping the root whole calls "state" last.
            const bool key = is_list(row) && !child.leaf_callback.empty();
            if (!key && (!child.get_only || kind == YMAP_REQ_GET))
                names.push_back(child.walker);
        }
        if (row.walker == root_walker && kind == YMAP_REQ_GET)
            names = {config_walker, interfaces_walker, oq("lvla_lldp_state")};
        names.push_back(row.walker + "_parse_augments");
        return names;
    }
};

TEST_P(WholeSubtree, CallsEveryChildWalkerInOrderAndThenTheHook) {
    Context context(kind);
    Tree tree(node(row.tag));
    call(row.walker, context, tree);
    EXPECT_EQ(children_entered(), expected_children());
    EXPECT_EQ(context.req.map_all, 0u);
    EXPECT_THAT(fw.errors(), Not(Contains("Unsupported tag is specified in the request.")));
}

INSTANTIATE_TEST_SUITE_P(Of, WholeSubtree, ::testing::ValuesIn(all_wholes()), [](const auto &test) {
    return after_prefix(test.param.row.walker) + "_kind" + std::to_string(test.param.kind);
});

// ---- nodes without a walker ------------------------------------------------------------------------

struct Stranger {
    WalkerRow row;
    uint32_t kind;
    bool foreign; // in another module's namespace
};

void PrintTo(const Stranger &s, std::ostream *stream) {
    *stream << s.row.walker << (s.foreign ? " foreign" : " own") << " kind " << s.kind;
}

std::vector<Stranger> all_strangers(bool foreign) {
    std::vector<Stranger> all;
    for (const WalkerRow &row : walker_table()) {
        for (const uint32_t kind : {0u, 10u, plain_edit})
            all.push_back({row, kind, foreign});
    }
    return all;
}

class StrangeChild : public OcWalkerTest, public ::testing::WithParamInterface<Stranger> {
protected:
    const WalkerRow &row = GetParam().row;
    const bool edit = GetParam().kind == plain_edit;
    Context context{GetParam().kind};
    Tree tree{node(row.tag).children({leaf("colour", "blue").in(GetParam().foreign ? foreign_ns : oc_ns)})};
};

class UnsupportedTag : public StrangeChild {};

TEST_P(UnsupportedTag, IsIgnoredInAReadAndRefusedInAnEdit) {
    EXPECT_EQ(call(row.walker, context, tree), edit ? YMAP_ERR_UNSUPPORTED_TAG : YMAP_OK);
    EXPECT_THAT(fw.errors(), ElementsAre("Unsupported tag is specified in the request."));
    EXPECT_EQ(fw.error_paths.size(), edit ? 1u : 0u);
    EXPECT_EQ(context.err_node_name(), edit ? std::optional<std::string>("colour") : std::nullopt);
    EXPECT_EQ(left().back(), row.walker);
    EXPECT_EQ(hierarchy().back(), std::string("-") + row.tag);
}

INSTANTIATE_TEST_SUITE_P(Of, UnsupportedTag, ::testing::ValuesIn(all_strangers(false)), [](const auto &test) {
    return after_prefix(test.param.row.walker) + "_kind" + std::to_string(test.param.kind);
});

class ForeignTag : public StrangeChild {};

TEST_P(ForeignTag, GoesToTheHookOfItsContainer) {
    EXPECT_EQ(call(row.walker, context, tree), edit ? YMAP_ERR_UNSUPPORTED_AUGMENT : YMAP_OK);
    const std::vector<std::string> functions = entered();
    ASSERT_GE(functions.size(), 3u);
    EXPECT_EQ(functions[2], row.walker + "_parse_augments");
    EXPECT_EQ(fw.error_paths.size(), edit ? 1u : 0u);
    EXPECT_EQ(context.err_node_name(), edit ? std::optional<std::string>("colour") : std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Of, ForeignTag, ::testing::ValuesIn(all_strangers(true)), [](const auto &test) {
    return after_prefix(test.param.row.walker) + "_kind" + std::to_string(test.param.kind);
});

// ---- hooks -----------------------------------------------------------------------------------------

class ParseAugmentsHook : public OcWalkerTest, public ::testing::WithParamInterface<WalkerRow> {
protected:
    terrno run() { return call(GetParam().walker + "_parse_augments", context, tree); }

    Context context{YMAP_REQ_EDIT_ONE_KEY};
    Tree tree{leaf("colour", "blue").in(foreign_ns)};
};

TEST_P(ParseAugmentsHook, RefusesANodeThatTheRequestCreates) {
    fw.is_request_add = true;
    EXPECT_EQ(run(), YMAP_ERR_UNSUPPORTED_AUGMENT);
    EXPECT_THAT(fw.calls_of("yfw_map_is_request_add"), ElementsAre(Call{"yfw_map_is_request_add", "colour"}));
    EXPECT_THAT(fw.error_paths, ElementsAre(Field(&ErrorPath::err_node_name, "colour")));
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "TRC: End"));
}

TEST_P(ParseAugmentsHook, AcceptsAnyOtherNode) {
    fw.is_request_add = false;
    EXPECT_EQ(run(), YMAP_OK);
    EXPECT_THAT(fw.error_paths, IsEmpty());
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "TRC: End"));
}

std::string row_name(const ::testing::TestParamInfo<WalkerRow> &test) {
    return after_prefix(test.param.walker);
}

INSTANTIATE_TEST_SUITE_P(Of, ParseAugmentsHook, ::testing::ValuesIn(walker_table()), row_name);

// ---- broken trees, for every walker ----------------------------------------------------------------

class EveryWalker : public OcWalkerTest, public ::testing::WithParamInterface<WalkerRow> {};

TEST_P(EveryWalker, FailsBeforeAnythingElseOnAChildCountWithoutChildren) {
    Context context(YMAP_REQ_GET);
    Tree tree(node(GetParam().tag).broken_children(2));
    EXPECT_EQ(call(GetParam().walker, context, tree), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.debug_lines(), ElementsAre("TRC: Start", "ERR: Failed to get subtrees!", "TRC: End"));
    EXPECT_THAT(fw.mapping_calls(), IsEmpty());
}

TEST_P(EveryWalker, EndsAtAChildWithoutATag) {
    Context context(YMAP_REQ_GET);
    Tree tree(node(GetParam().tag).children({leaf("x", "y").without_tag(), leaf("colour", "blue")}));
    EXPECT_EQ(call(GetParam().walker, context, tree), YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(fw.errors(), ElementsAre("Tag name is not available!"));
    EXPECT_THAT(fw.error_paths, IsEmpty());
    EXPECT_EQ(hierarchy().back(), std::string("-") + GetParam().tag);
    EXPECT_EQ(left().back(), GetParam().walker);
}

INSTANTIATE_TEST_SUITE_P(Of, EveryWalker, ::testing::ValuesIn(walker_table()), row_name);

// ---- leaf walkers ----------------------------------------------------------------------------------

class LeafWalkerTest : public OcWalkerTest, public ::testing::WithParamInterface<LeafWalker> {
protected:
    // A value that every callback accepts; nothing else about it matters.
    Node content_match() const { return match(walker.tag, "127"); }

    const LeafWalker &walker = GetParam();
    const std::vector<uint32_t> kinds = {0u, 10u, plain_edit};
};

TEST_P(LeafWalkerTest, CallsTheLeafCallbackAndReturnsItsStatus) {
    for (const uint32_t kind : kinds) {
        SCOPED_TRACE(kind);
        Context context(kind);
        Tree tree(node(walker.tag));
        const terrno direct = call(walker.callback, context, tree);
        const std::vector<std::string> paths = fw.add_paths();
        fw.forget_calls();
        EXPECT_EQ(call(walker.walker, context, tree), direct);
        EXPECT_EQ(fw.add_paths(), paths);
        std::vector<std::string> functions = entered();
        functions.resize(2);
        EXPECT_THAT(functions, ElementsAre(walker.walker, walker.callback));
        EXPECT_EQ(left().back(), walker.walker);
        fw.forget_calls();
    }
}

TEST_P(LeafWalkerTest, ReturnsTheStatusOfAFailingAdd) {
    fw.fail("yfw_map_datatree_add_path_flagged", 0, 0x77);
    for (const uint32_t kind : kinds) {
        SCOPED_TRACE(kind);
        Context context(kind);
        Tree tree(node(walker.tag));
        const terrno direct = call(walker.callback, context, tree);
        EXPECT_EQ(call(walker.walker, context, tree), direct);
    }
}

TEST_P(LeafWalkerTest, MarksASelectionLeaf) {
    for (const uint32_t kind : kinds) {
        SCOPED_TRACE(kind);
        Context context(kind);
        Tree tree(node(walker.tag));
        call(walker.walker, context, tree);
        EXPECT_EQ(tree->hierarchy_marker, walker.marker);
        EXPECT_EQ(tree->framework_flags, YFW_FW_HAS_MARKER);
        EXPECT_EQ(context.req.walk_flags, kind != plain_edit && walker.touches_walk_flags ? 0x2u : 0u);
    }
}

TEST_P(LeafWalkerTest, MarksAContentMatchLeafInARead) {
    for (const uint32_t kind : kinds) {
        SCOPED_TRACE(kind);
        Context context(kind);
        Tree tree(content_match());
        call(walker.walker, context, tree);
        const bool as_match = kind != plain_edit && walker.touches_walk_flags;
        EXPECT_EQ(tree->hierarchy_marker, as_match ? 6u : walker.marker);
        EXPECT_EQ(tree->framework_flags, YFW_FW_HAS_MARKER);
        EXPECT_EQ(context.req.walk_flags, as_match ? 0x10004u : 0u);
    }
}

TEST_P(LeafWalkerTest, LeavesMarkersAndFlagsAloneWhileAWholeSubtreeOrEntryIsMapped) {
    for (const uint32_t kind : kinds) {
        for (const auto &[map_all, state] : {std::pair(1u, 0u), std::pair(0u, 1u), std::pair(0u, 2u)}) {
            SCOPED_TRACE(std::to_string(kind) + " " + std::to_string(map_all) + " " + std::to_string(state));
            Context context(kind);
            context.req.map_all = map_all;
            context.req.list_entry_state = state;
            Tree tree(content_match());
            call(walker.walker, context, tree);
            EXPECT_EQ(tree->hierarchy_marker, 0u);
            EXPECT_EQ(tree->framework_flags, 0u);
            EXPECT_EQ(context.req.walk_flags, 0u);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Of, LeafWalkerTest, ::testing::ValuesIn(leaf_walkers()),
                         [](const auto &test) { return after_prefix(test.param.walker); });

TEST_F(OcWalkerTest, TheTableHoldsAllWalkersOfTheOpenConfigModel) {
    EXPECT_EQ(walker_table().size(), 21u);
    EXPECT_EQ(leaf_walkers().size(), 60u);
}

} // namespace
} // namespace oclldp_test
