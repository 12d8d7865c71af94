// When a process is killed while it upgrades a store, the store is the old one or the new one.
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "committing_process.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

constexpr int killed = 128 + SIGKILL;
constexpr int64_t last_old = 3;

// The store, old or new, has whole commits; it takes the next one, and is a new one then.
void expect_sound(const std::filesystem::path &file, bool is_upgraded) {
    CommitLog store(file, false, "r1");
    const int64_t last = is_upgraded ? last_old + 1 : last_old;
    EXPECT_TRUE(is_sound(store, last));
    EXPECT_EQ(store.last().value().number, last);
    EXPECT_EQ(store.last().value().openconfig.has_value(), is_upgraded);
    EXPECT_EQ(store.owner().has_value(), is_upgraded);
    EXPECT_EQ(keep_numbered(store), last + 1);
    EXPECT_EQ(store.owner(), "r1");
    for (int64_t number = 0; number <= last + 1; ++number) {
        EXPECT_TRUE(is_of_one_piece(store.find(number).value()));
        EXPECT_EQ(store.find(number).value().openconfig.has_value(), number > last_old);
    }
}

struct StepCase {
    const char *name;
    Step step;
    bool is_upgraded; // afterwards
};

class AnUpgradeKilledAtAStep : public testing::TestWithParam<StepCase> {};

TEST_P(AnUpgradeKilledAtAStep, LeavesTheOldStoreOrTheNewOne) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    make_first_format(file, last_old);
    CommittingProcess process([&](const CommittingProcess::Report &) {
        CommitLog store(file, false, "r1");
        store.on_step([](Step step) {
            if (step == GetParam().step)
                raise(SIGKILL);
        });
        keep_numbered(store);
    });
    ASSERT_EQ(process.wait(), killed);
    expect_sound(file, GetParam().is_upgraded);
}

INSTANTIATE_TEST_SUITE_P(
    Of, AnUpgradeKilledAtAStep,
    testing::Values(StepCase{"Begun", Step::begun, false}, StepCase{"Read", Step::read, false},
                    StepCase{"Prepared", Step::prepared, false}, StepCase{"Upgraded", Step::upgraded, false},
                    StepCase{"Inserted", Step::inserted, false}, StepCase{"Committed", Step::committed, true}),
    [](const auto &step) { return step.param.name; });

TEST(AnUpgradeKilledAtRandom, LeavesTheOldStoreOrTheNewOne) {
    const yfw::test::TemporaryDirectory directory;
    std::mt19937 random{4711};
    std::uniform_int_distribution<int> delay{0, 6000};
    for (int kill = 0; kill < 60; ++kill) {
        const std::filesystem::path file = directory.path() / (std::to_string(kill) + ".db");
        make_first_format(file, last_old);
        CommittingProcess process([&](const CommittingProcess::Report &report) {
            CommitLog store(file, false, "r1");
            report(keep_numbered(store));
            std::this_thread::sleep_for(std::chrono::minutes(2));
        });
        std::this_thread::sleep_for(std::chrono::microseconds(delay(random)));
        process.kill();
        ASSERT_EQ(process.wait(), killed);
        const bool is_upgraded = CommitLog(file, false).last_number().value() > last_old;
        EXPECT_TRUE(is_upgraded || process.reported().empty());
        expect_sound(file, is_upgraded);
        ASSERT_FALSE(HasFailure()) << "kill " << kill;
    }
}

} // namespace
} // namespace yfw::commits::test
