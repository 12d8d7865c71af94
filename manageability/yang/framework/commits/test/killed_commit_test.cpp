// When a process is killed during a commit, the commit is stored whole or not at all.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "committing_process.h"
#include "numbered_commits.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

constexpr int killed = 128 + SIGKILL;

struct StepCase {
    const char *name;
    Step step;
    bool kept; // whether the commit exists afterwards
};

class AProcessKilledAtAStep : public testing::TestWithParam<StepCase> {
protected:
    // A child that makes `whole` commits and is killed at the given step of the next.
    int commit_and_die(int whole) const {
        CommittingProcess process([&](const CommittingProcess::Report &report) {
            CommitLog store(file, true);
            for (int i = 0; i < whole; ++i)
                report(keep_numbered(store));
            store.on_step([](Step step) {
                if (step == GetParam().step)
                    raise(SIGKILL);
            });
            report(keep_numbered(store));
        });
        return process.wait();
    }

    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
};

TEST_P(AProcessKilledAtAStep, LeavesTheFirstCommitWholeOrNotAtAll) {
    ASSERT_EQ(commit_and_die(0), killed);
    CommitLog store(file, true);
    EXPECT_EQ(store.last().has_value(), GetParam().kept);
    EXPECT_TRUE(is_sound(store, -1));
    const int64_t next = GetParam().kept ? 1 : 0;
    EXPECT_EQ(keep_numbered(store), next);
    EXPECT_TRUE(is_sound(store, next));
}

TEST_P(AProcessKilledAtAStep, LeavesALaterCommitWholeOrNotAtAll) {
    int64_t expected = -1;
    for (int round = 0; round < 5; ++round) {
        ASSERT_EQ(commit_and_die(3), killed);
        expected += GetParam().kept ? 4 : 3;
        const CommitLog store(file, false);
        EXPECT_EQ(store.last().value().number, expected) << "round " << round;
        EXPECT_TRUE(is_sound(store, expected));
    }
}

INSTANTIATE_TEST_SUITE_P(Of, AProcessKilledAtAStep,
                         testing::Values(StepCase{"Begun", Step::begun, false},
                                         StepCase{"Read", Step::read, false},
                                         StepCase{"Prepared", Step::prepared, false},
                                         StepCase{"Inserted", Step::inserted, false},
                                         StepCase{"Committed", Step::committed, true}),
                         [](const auto &step) { return step.param.name; });

// Commits forever, until killed.
void commit_on(const std::filesystem::path &file, const CommittingProcess::Report &report) {
    CommitLog store(file, true);
    for (;;)
        report(keep_numbered(store));
}

class RandomKills : public testing::Test {
protected:
    // Lets a child commit for a random time and kills it. Returns the last number that it reported, or
    // `before`.
    int64_t commit_and_kill(const std::filesystem::path &file, int64_t before) {
        CommittingProcess process(
            [&file](const CommittingProcess::Report &report) { commit_on(file, report); });
        std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
        process.kill();
        EXPECT_EQ(process.wait(), killed);
        for (const int64_t number : process.reported())
            EXPECT_EQ(number, ++before);
        return before;
    }

    std::mt19937 random{4711};
    std::uniform_int_distribution<int> delay{0, 30000};
    const yfw::test::TemporaryDirectory directory;
};

TEST_F(RandomKills, LeaveAStoreThatGrowsOnSound) {
    const std::filesystem::path file = directory.path() / "commits.db";
    int64_t last = -1;
    int kills_within_a_commit = 0;
    for (int kill = 0; kill < 250; ++kill) {
        const int64_t reported = commit_and_kill(file, last);
        const CommitLog store(file, true);
        ASSERT_TRUE(is_sound(store, reported)) << "kill " << kill;
        last = store.last().has_value() ? store.last()->number : -1;
        kills_within_a_commit += last == reported ? 0 : 1;
    }
    RecordProperty("commits", std::to_string(last + 1));
    RecordProperty("commits_kept_but_not_reported", std::to_string(kills_within_a_commit));
    EXPECT_GT(last, 250) << "the children were killed before they could commit";
    const CommitLog store(file, false);
    for (int64_t number = 0; number <= last; ++number)
        ASSERT_TRUE(is_of_one_piece(store.find(number).value()));
}

TEST_F(RandomKills, LeaveANewStoreSound) {
    delay = std::uniform_int_distribution<int>(0, 8000);
    for (int kill = 0; kill < 60; ++kill) {
        const std::filesystem::path file = directory.path() / std::to_string(kill) / "commits.db";
        const int64_t reported = commit_and_kill(file, -1);
        CommitLog store(file, true);
        ASSERT_TRUE(is_sound(store, reported)) << "kill " << kill;
        const int64_t next = store.last().has_value() ? store.last()->number + 1 : 0;
        ASSERT_EQ(keep_numbered(store), next) << "kill " << kill;
    }
}

} // namespace
} // namespace yfw::commits::test
