// What is written besides commits: texts in OpenConfig of old ones, and where the last one was applied.
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "numbered_commits.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

class AStoreWithTwoCommits : public testing::Test {
protected:
    AStoreWithTwoCommits() {
        keep(store, commit_with("first", "a"));
        keep(store, commit_with("second", "b"));
    }

    std::optional<std::string> openconfig(int64_t number) const {
        return CommitLog(file, false).find(number).value().openconfig;
    }
    std::optional<std::string> applied_to() const { return CommitLog(file, false).applied_to(); }

    // What a commit notes about the ones before it.
    void note() {
        store.set_openconfig(0, "in OpenConfig");
        store.set_applied_to("run 7");
    }

    yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    CommitLog store{file, true};
};

TEST_F(AStoreWithTwoCommits, HasNoNotesAtFirst) {
    EXPECT_EQ(openconfig(0), std::nullopt);
    EXPECT_EQ(openconfig(1), std::nullopt);
    EXPECT_EQ(applied_to(), std::nullopt);
}

TEST_F(AStoreWithTwoCommits, KeepsTheNotesOfACommitWithIt) {
    store.commit([this](const auto &) {
        note();
        return std::optional(commit_with("third", "c"));
    });
    EXPECT_EQ(openconfig(0), "in OpenConfig");
    EXPECT_EQ(openconfig(1), std::nullopt);
    EXPECT_EQ(applied_to(), "run 7");
    EXPECT_EQ(store.find(0).value().openconfig, "in OpenConfig");
    EXPECT_EQ(store.history().size(), 3U);
}

TEST_F(AStoreWithTwoCommits, ShowsNoNotesOfACommitThatIsUnderWay) {
    store.commit([this](const auto &) {
        note();
        EXPECT_EQ(store.find(0).value().openconfig, std::nullopt);
        EXPECT_EQ(store.applied_to(), std::nullopt);
        EXPECT_EQ(openconfig(0), std::nullopt);
        return std::optional(commit_with("third", "c"));
    });
}

TEST_F(AStoreWithTwoCommits, DropsTheNotesOfACommitThatIsNotMade) {
    store.commit([this](const auto &) {
        note();
        return std::optional<Commit>();
    });
    const auto refuse = [this](const auto &) -> std::optional<Commit> {
        note();
        throw std::invalid_argument("refused");
    };
    EXPECT_THROW(store.commit(refuse), std::invalid_argument);
    keep(store, commit_with("third", "c"));
    EXPECT_EQ(openconfig(0), std::nullopt);
    EXPECT_EQ(applied_to(), std::nullopt);
}

TEST_F(AStoreWithTwoCommits, KeepsNotesOutsideOfACommit) {
    note();
    EXPECT_EQ(openconfig(0), "in OpenConfig");
    EXPECT_EQ(applied_to(), "run 7");
    EXPECT_EQ(store.history().size(), 2U);
    EXPECT_EQ(store.last().value().comment, "second");
}

TEST_F(AStoreWithTwoCommits, ReportsNoStepsForNotes) {
    std::vector<Step> steps;
    store.on_step([&steps](Step step) { steps.push_back(step); });
    note();
    EXPECT_TRUE(steps.empty());
}

TEST_F(AStoreWithTwoCommits, DoesNotReplaceATextInOpenConfig) {
    store.set_openconfig(1, "first");
    store.set_openconfig(1, "second");
    EXPECT_EQ(openconfig(1), "first");
}

TEST_F(AStoreWithTwoCommits, HasNothingToAddToACommitThatIsNotThere) {
    for (const int64_t number : {INT64_MIN, INT64_C(-1), INT64_C(2), INT64_MAX})
        store.set_openconfig(number, "text");
    EXPECT_EQ(store.history().size(), 2U);
}

TEST_F(AStoreWithTwoCommits, ReplacesWhereTheLastOneWasApplied) {
    for (const std::string instance : {"run 7", "", "run 8: 'quoted'\n"}) {
        store.set_applied_to(instance);
        EXPECT_EQ(applied_to(), instance);
    }
}

} // namespace
} // namespace yfw::commits::test
