// Stores of other versions: older ones are read as they are and upgraded by the first write, newer ones
// refused.
#include <filesystem>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

using Strings = std::vector<std::string>;

class AStoreOfTheFirstVersion : public testing::Test {
protected:
    AStoreOfTheFirstVersion() { make_first_format(file, 2); }

    Strings version() const { return run_sql(file, "PRAGMA user_version"); }

    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
};

TEST_F(AStoreOfTheFirstVersion, ServesItsCommits) {
    for (const bool create : {false, true}) {
        const CommitLog store(file, create, "r1");
        EXPECT_TRUE(is_sound(store, 2));
        for (int64_t number = 0; number <= 2; ++number) {
            EXPECT_TRUE(is_of_one_piece(store.find(number).value()));
            EXPECT_EQ(store.find(number).value().openconfig, std::nullopt);
        }
        EXPECT_EQ(store.applied_to(), std::nullopt);
        EXPECT_EQ(store.owner(), std::nullopt);
    }
}

TEST_F(AStoreOfTheFirstVersion, IsLeftAsItIsByReading) {
    const std::string before = yfw::test::read_file(file);
    {
        const CommitLog store(file, true, "r1");
        store.last();
        store.history();
        store.applied_to();
    }
    EXPECT_TRUE(yfw::test::read_file(file) == before);
}

TEST_F(AStoreOfTheFirstVersion, IsUpgradedByTheFirstCommit) {
    CommitLog store(file, false, "r1");
    const CommitLog opened_before(file, false, "r1");
    EXPECT_EQ(keep_numbered(store), 3);
    for (const CommitLog *log : std::initializer_list<const CommitLog *>{&store, &opened_before}) {
        EXPECT_TRUE(is_sound(*log, 3));
        EXPECT_TRUE(log->last().value().openconfig.has_value());
        EXPECT_EQ(log->find(2).value().openconfig, std::nullopt);
        EXPECT_EQ(log->owner(), "r1");
    }
    EXPECT_EQ(version(), Strings{"2"});
}

TEST_F(AStoreOfTheFirstVersion, IsUpgradedByAStoreThatWasOpenedBeforeAnotherUpgradedIt) {
    CommitLog one(file, false, "r1");
    CommitLog other(file, false, "r1");
    EXPECT_EQ(keep_numbered(one), 3);
    EXPECT_EQ(keep_numbered(other), 4);
    EXPECT_EQ(keep_numbered(one), 5);
    EXPECT_TRUE(is_sound(one, 5));
}

TEST_F(AStoreOfTheFirstVersion, IsUpgradedByANote) {
    CommitLog store(file, false, "r1");
    store.set_openconfig(1, "in OpenConfig");
    store.set_applied_to("run 7");
    const CommitLog again(file, false);
    EXPECT_EQ(again.find(1).value().openconfig, "in OpenConfig");
    EXPECT_EQ(again.applied_to(), "run 7");
    EXPECT_TRUE(is_sound(again, 2));
}

TEST_F(AStoreOfTheFirstVersion, GetsTheTextsOfACommitThatUpgradesIt) {
    CommitLog store(file, false);
    store.commit([&](const std::optional<Commit> &last) {
        store.set_openconfig(last.value().number, "in OpenConfig");
        store.set_applied_to("run 7");
        return std::optional(numbered_commit(last));
    });
    EXPECT_EQ(store.find(2).value().openconfig, "in OpenConfig");
    EXPECT_EQ(store.applied_to(), "run 7");
}

TEST_F(AStoreOfTheFirstVersion, StaysWhatItIsWhenNothingIsCommitted) {
    const std::string before = yfw::test::read_file(file);
    CommitLog(file, false, "r1").commit([](const auto &) { return std::optional<Commit>(); });
    EXPECT_TRUE(yfw::test::read_file(file) == before);
}

TEST_F(AStoreOfTheFirstVersion, GoesThroughOneStepMore) {
    CommitLog store(file, false);
    std::vector<Step> steps;
    store.on_step([&steps](Step step) { steps.push_back(step); });
    keep_numbered(store);
    keep_numbered(store);
    EXPECT_EQ(steps, (std::vector<Step>{Step::begun, Step::read, Step::prepared, Step::upgraded, Step::inserted,
                                        Step::committed, Step::begun, Step::read, Step::prepared,
                                        Step::inserted, Step::committed}));
}

TEST_F(AStoreOfTheFirstVersion, TakesNoCommitOfTheFirstVersionOnceItIsUpgraded) {
    CommitLog store(file, false);
    keep_numbered(store);
    EXPECT_THROW(run_sql(file, first_format_insert(4)), std::runtime_error);
    EXPECT_TRUE(is_sound(store, 3));
}

TEST_F(AStoreOfTheFirstVersion, IsServedWithoutCommitsToo) {
    const std::filesystem::path empty = directory.path() / "empty.db";
    make_first_format(empty, -1);
    CommitLog store(empty, false);
    EXPECT_EQ(store.last_number(), std::nullopt);
    EXPECT_EQ(keep_numbered(store), 0);
}

// The error's message; empty on success.
template <class Work> std::string complaint(const Work &work) {
    try {
        work();
        return "";
    } catch (const StoreError &error) {
        return error.what();
    }
}

class AStoreOfANewerVersion : public testing::Test {
protected:
    AStoreOfANewerVersion() {
        keep_numbered(store);
        run_sql(file, "PRAGMA user_version = 4");
    }

    void expect_named(const std::string &message) const {
        EXPECT_NE(message.find(file.string()), std::string::npos) << message;
        EXPECT_NE(message.find("version 4"), std::string::npos) << message;
    }

    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    CommitLog store{file, true};
};

TEST_F(AStoreOfANewerVersion, IsRefusedWithItsVersion) {
    for (const bool create : {false, true})
        expect_named(complaint([&] { CommitLog(file, create); }));
}

TEST_F(AStoreOfANewerVersion, IsRefusedBeforeACommitIsMadeInIt) {
    bool called = false;
    expect_named(complaint([&] {
        store.commit([&called](const auto &) {
            called = true;
            return std::optional(commit_with("a", "a"));
        });
    }));
    EXPECT_FALSE(called);
    EXPECT_EQ(run_sql(file, "SELECT count(*) FROM commits"), Strings{"1"});
}

} // namespace
} // namespace yfw::commits::test
