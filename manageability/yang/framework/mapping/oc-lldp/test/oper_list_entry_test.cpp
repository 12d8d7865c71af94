// List entries of the native operational data: the order of their steps, entries that are skipped, and the
// output list.
#include "oper_responses.h"

namespace oclldp_test {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using ::testing::Values;
using ::testing::ValuesIn;

std::vector<OperLevel> entry_levels() {
    std::vector<OperLevel> lists;
    std::ranges::copy_if(oper_levels(), std::back_inserter(lists), &OperLevel::is_list);
    return lists;
}

class OperListEntries : public OperTest, public ::testing::WithParamInterface<OperLevel> {
protected:
    const OperLevel &level() const { return GetParam(); }
    Node entry() const { return node(level().tag()).children({leaf("unheard-of", "1")}); }
    // Walks the list's container from the root, with the given entries.
    terrno walk_entries(std::vector<Node> entries) {
        std::vector<std::string> parent = level().path;
        parent.pop_back();
        return walk(nest(parent, 0, node(parent.back()).children(std::move(entries))));
    }
    // The steps from the list's first entry on: pushes and pops, the list's steps, the end of its callback
    // ("callback") and the walk of its child ("child").
    std::vector<std::string> entry_steps() const {
        std::vector<std::string> told;
        for (std::string step : steps(fw)) {
            if (step == "push " + level().tag() + " 2" && !told.empty() && !has_begun(told))
                told.clear();
            if (step == oper + level().callback + ": End")
                step = "callback";
            if (step.ends_with(": Unsupported tag. Ignoring."))
                step = "child";
            if (step == "callback" || step == "child" || step.starts_with("p") || step.starts_with("current") ||
                step.starts_with("list"))
                told.push_back(step);
        }
        return told;
    }
    bool has_begun(const std::vector<std::string> &told) const {
        return told.front() == "push " + level().tag() + " 2";
    }
    // The pops of the levels above the entry.
    std::vector<std::string> then_pops_above(std::vector<std::string> told, bool grown = false) const {
        for (std::size_t at = level().path.size() - 1; at > 0; --at) {
            told.push_back("pop " + level().path[at - 1]);
            const std::vector<std::string> here(level().path.begin(),
                                                level().path.begin() + static_cast<std::ptrdiff_t>(at));
            if (grown && oper_level_at(here).is_list())
                told.push_back("list- " + level().path[at - 1]);
        }
        return told;
    }
    std::vector<std::string> expected(std::vector<std::string> told) const {
        for (std::string &step : told) {
            if (step == "push")
                step += " " + level().tag() + " 2";
            else if (step == "current")
                step += " " + level().list_path;
            else if (step != "callback" && step != "child")
                step += " " + level().tag();
        }
        return told;
    }
    void grow_the_output_list() {
        fw.on_call("yfw_add_to_output_list_ctx", [this](const Call &) { ++context.req.output_list.depth; });
        fw.on_call("yfw_remove_from_output_list_ctx",
                   [this](const Call &) { --context.req.output_list.depth; });
    }
    // Makes the update of the nth entry return `status`.
    void fail_update_of_entry(terrno status) {
        fw.on_call("yfw_map_update_current_list_node", [this, status](const Call &update) {
            if (update.args == level().list_path)
                fw.fail("yfw_map_update_current_list_node", 0, status);
        });
    }
};

INSTANTIATE_TEST_SUITE_P(Every, OperListEntries, ValuesIn(entry_levels()), oper_level_label);

TEST_P(OperListEntries, TakeTheirStepsInOrder) {
    EXPECT_EQ(walk_entries({entry()}), YMAP_OK);
    EXPECT_THAT(entry_steps(), ElementsAreArray(then_pops_above(
                                   expected({"push", "current", "callback", "list+", "child", "pop"}))));
}

TEST_P(OperListEntries, TakeTheirStepsOneEntryAfterTheOther) {
    EXPECT_EQ(walk_entries({entry(), entry()}), YMAP_OK);
    EXPECT_THAT(entry_steps(), ElementsAreArray(then_pops_above(
                                   expected({"push", "current", "callback", "list+", "child", "pop", "push",
                                             "current", "callback", "list+", "child", "pop"}))));
}

TEST_P(OperListEntries, JoinTheOutputListUnderTheOutputParent) {
    EXPECT_EQ(walk_entries({entry()}), YMAP_OK);
    EXPECT_EQ(fw.calls_of("yfw_add_to_output_list_ctx").back().args, level().tag() + ", output");
    EXPECT_THAT(fw.calls_of("yfw_remove_from_output_list_ctx"), IsEmpty());
}

TEST_P(OperListEntries, LeaveTheOutputListAfterThePopWhenItGrew) {
    grow_the_output_list();
    EXPECT_EQ(walk_entries({entry()}), YMAP_OK);
    EXPECT_THAT(entry_steps(),
                ElementsAreArray(then_pops_above(
                    expected({"push", "current", "callback", "list+", "child", "pop", "list-"}), true)));
    EXPECT_THAT(fw.calls_of("yfw_remove_from_output_list_ctx"),
                Contains(Call{"yfw_remove_from_output_list_ctx", level().tag() + ", output"}));
    EXPECT_EQ(context.req.output_list.depth, 0u);
}

TEST_P(OperListEntries, RunTheirCallbackWithoutChildrenToo) {
    EXPECT_EQ(walk_entries({node(level().tag())}), YMAP_OK);
    EXPECT_THAT(fw.errors(), ElementsAre("No keys specified with a list node."));
    EXPECT_THAT(messages_of(fw, oper + level().walker), Contains("No keys specified with a list node."));
    EXPECT_THAT(entry_steps(),
                ElementsAreArray(then_pops_above(expected({"push", "current", "callback", "list+", "pop"}))));
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperListEntries, PassAFailedUpdateUpWithoutCallbackAndChildren) {
    fail_update_of_entry(0x55aa);
    EXPECT_EQ(walk_entries({entry(), entry()}), 0x55aau);
    EXPECT_THAT(entry_steps(),
                ElementsAreArray(then_pops_above(expected({"push", "current", "list+", "pop"}))));
}

// Only the list callback can ask to skip an entry; after an update, its status means nothing but failure. The
// loop over the entries goes on after either.
TEST_P(OperListEntries, TakeAnUpdateThatSaysDoneForAFailureAndGoOn) {
    fail_update_of_entry(YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(walk_entries({entry(), entry()}), YMAP_OK);
    EXPECT_THAT(entry_steps(), ElementsAreArray(then_pops_above(expected(
                                   {"push", "current", "list+", "pop", "push", "current", "list+", "pop"}))));
}

TEST_P(OperListEntries, LeaveAGrownOutputListAfterAFailedUpdateToo) {
    grow_the_output_list();
    fail_update_of_entry(0x55aa);
    EXPECT_EQ(walk_entries({entry()}), 0x55aau);
    EXPECT_THAT(entry_steps(), ElementsAreArray(then_pops_above(
                                   expected({"push", "current", "list+", "pop", "list-"}), true)));
}

TEST_P(OperListEntries, PassAFailedChildUpAfterLeavingTheOutputList) {
    grow_the_output_list();
    EXPECT_EQ(walk_entries({node(level().tag()).children({leaf("x", "1").without_tag()}), entry()}),
              YMAP_ERR_MAP_FAILED);
    EXPECT_THAT(entry_steps(), ElementsAreArray(then_pops_above(
                                   expected({"push", "current", "callback", "list+", "pop", "list-"}), true)));
}

// ---- entries whose list callback answers with a status ------------------------------------------------

// The three list callbacks that call the framework.
class OperListStatus : public OperListEntries {
protected:
    // Makes the list callback of the first entry return `status`.
    void answer_first_callback(terrno status) {
        if (level().label == "lldp_neighbor")
            fw.fail("yfw_map_stitch_list_to_list", 1, status);
        else // the last of the adds of an interface's state, or the only one of a TLV entry
            fw.fail(add_path, level().label == "interface" ? 10 : 1, status);
    }
};

INSTANTIATE_TEST_SUITE_P(Every, OperListStatus,
                         Values(oper_level("lldp_neighbor"), oper_level("lldp_org_def_tlv_entry"),
                                oper_level("interface")),
                         oper_level_label);

TEST_P(OperListStatus, SkipsAnEntryWhoseCallbackIsDoneWithItAndGoesOnWithTheNext) {
    answer_first_callback(YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(walk_entries({entry(), entry()}), YMAP_OK);
    EXPECT_THAT(entry_steps(),
                ElementsAreArray(then_pops_above(expected({"push", "current", "callback", "pop", "push",
                                                           "current", "callback", "list+", "child", "pop"}))));
    EXPECT_THAT(fw.errors(), IsEmpty());
    EXPECT_THAT(fw.error_paths, IsEmpty());
}

TEST_P(OperListStatus, PassesAnotherStatusUpWithoutChildrenAndSiblings) {
    answer_first_callback(0x66);
    EXPECT_EQ(walk_entries({entry(), entry()}), 0x66u);
    EXPECT_THAT(entry_steps(),
                ElementsAreArray(then_pops_above(expected({"push", "current", "callback", "list+", "pop"}))));
}

TEST_P(OperListStatus, GoesOnWithTagsAfterASkippedEntry) {
    answer_first_callback(YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(walk_entries({entry(), leaf("vendor-leaf", "1").in(foreign_ns)}), YMAP_OK);
    EXPECT_THAT(fw.started().back(), ::testing::EndsWith("_parse_augments"));
}

// An entry's own walker tells its caller that the entry was skipped.
class OperListWalkers : public OperListStatus {};

INSTANTIATE_TEST_SUITE_P(Every, OperListWalkers, Values(oper_level("lldp_neighbor"), oper_level("interface")),
                         oper_level_label);

TEST_P(OperListWalkers, AnswerThatAnEntryWasSkipped) {
    answer_first_callback(YMAP_STS_SUBTREE_DONE);
    EXPECT_EQ(run(level().walker, entry()), YMAP_STS_SUBTREE_DONE);
    EXPECT_THAT(hierarchy(fw), ElementsAre("push " + level().tag() + " 2", "pop " + level().tag()));
    EXPECT_EQ(ends_of(fw, oper + level().walker), 1u);
    EXPECT_THAT(fw.calls_of("yfw_add_to_output_list_ctx"), IsEmpty());
}

} // namespace
} // namespace oclldp_test
