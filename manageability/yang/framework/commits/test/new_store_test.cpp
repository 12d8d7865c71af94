// A new store appears under its name whole, whoever is killed or makes it at the same time.
#include <csignal>
#include <filesystem>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "commits/new_store.h"
#include "committing_process.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

namespace fs = std::filesystem;
using Names = std::set<std::string>;

class ANewStore : public testing::Test {
protected:
    Names names() const {
        Names found;
        for (const auto &entry : fs::directory_iterator(directory.path()))
            found.insert(entry.path().filename().string());
        return found;
    }

    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "commits.db";
};

TEST_F(ANewStore, IsAllThereIsInItsDirectory) {
    make_store(file, "r1");
    EXPECT_EQ(names(), Names{"commits.db"});
}

TEST_F(ANewStore, HasItsOwnerAndNoCommit) {
    make_store(file, "r1");
    const CommitLog store(file, false, "r1");
    EXPECT_EQ(store.owner(), "r1");
    EXPECT_EQ(store.last_number(), std::nullopt);
}

TEST_F(ANewStore, HasTheWriteAheadLog) {
    make_store(file, "r1");
    EXPECT_EQ(run_sql(file, "PRAGMA journal_mode"), std::vector<std::string>{"wal"});
    EXPECT_EQ(run_sql(file, "PRAGMA integrity_check"), std::vector<std::string>{"ok"});
}

// A umask that forbids nothing, for the life of the object.
class NoUmask {
public:
    NoUmask() : before_(umask(0)) {}
    ~NoUmask() { umask(before_); }
    NoUmask(const NoUmask &) = delete;
    NoUmask &operator=(const NoUmask &) = delete;

private:
    mode_t before_;
};

TEST_F(ANewStore, IsForItsUserAloneWithTheDirectoriesThatAreMadeForIt) {
    const NoUmask umask;
    const fs::path deep = directory.path() / "deep" / "deeper" / "commits.db";
    const fs::perms before = fs::status(directory.path()).permissions();
    CommitLog store(deep, true);
    keep_numbered(store);
    for (const char *suffix : {"", "-wal", "-shm"})
        EXPECT_EQ(fs::status(deep.string() + suffix).permissions(), fs::perms(0600)) << suffix;
    EXPECT_EQ(fs::status(deep.parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(deep.parent_path().parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(directory.path()).permissions(), before);
}

TEST_F(ANewStore, DoesNotReplaceAStore) {
    {
        CommitLog store(file, true, "r1");
        keep_numbered(store);
    }
    make_store(file, "r2");
    EXPECT_TRUE(is_sound(CommitLog(file, true, "r1"), 0));
}

// The other process makes its store, with a commit, between two steps of this one.
class AStoreThatAnotherMakesMeanwhile : public ANewStore, public testing::WithParamInterface<MakingStep> {};

TEST_P(AStoreThatAnotherMakesMeanwhile, IsTheOneThatStays) {
    make_store(file, "r1", [this](MakingStep step) {
        if (step != GetParam())
            return;
        CommitLog other(file, true, "r2");
        keep_numbered(other);
    });
    EXPECT_EQ(names(), Names{"commits.db"});
    EXPECT_TRUE(is_sound(CommitLog(file, true, "r2"), 0));
}

INSTANTIATE_TEST_SUITE_P(When, AStoreThatAnotherMakesMeanwhile,
                         testing::Values(MakingStep::begun, MakingStep::filled), [](const auto &step) {
                             return step.param == MakingStep::begun ? "ItIsBegun" : "ItIsFilled";
                         });

TEST_F(ANewStore, IsOneWhenManyProcessesMakeItAtOnce) {
    for (int round = 0; round < 20; ++round) {
        const fs::path shared = directory.path() / (std::to_string(round) + ".db");
        std::vector<std::unique_ptr<CommittingProcess>> processes;
        for (int i = 0; i < 4; ++i)
            processes.push_back(std::make_unique<CommittingProcess>([&](const auto &report) {
                CommitLog store(shared, true, "r1");
                report(keep_numbered(store));
            }));
        std::set<int64_t> numbers;
        for (const auto &process : processes) {
            ASSERT_EQ(process->wait(), 0);
            for (const int64_t number : process->reported())
                numbers.insert(number);
        }
        EXPECT_EQ(numbers, (std::set<int64_t>{0, 1, 2, 3}));
        EXPECT_EQ(names(), Names{shared.filename().string()});
        fs::remove(shared);
    }
}

TEST_F(ANewStore, BelongsToOneOfTwoDevicesThatMakeItAtOnce) {
    for (int round = 0; round < 20; ++round) {
        const fs::path shared = directory.path() / (std::to_string(round) + ".db");
        const auto make_for = [&](const char *owner) {
            return std::make_unique<CommittingProcess>([&shared, owner](const auto &report) {
                CommitLog store(shared, true, owner);
                report(keep_numbered(store));
            });
        };
        const auto first = make_for("r1");
        const auto other = make_for("r2");
        const bool is_of_first = first->wait() == 0;
        const bool is_of_other = other->wait() == 0;
        EXPECT_NE(is_of_first, is_of_other);
        EXPECT_TRUE(is_sound(CommitLog(shared, false, is_of_first ? "r1" : "r2"), 0));
    }
}

struct MakingCase {
    const char *name;
    MakingStep step;
    bool is_made; // afterwards
};

class AProcessKilledWhileItMakesAStore : public ANewStore, public testing::WithParamInterface<MakingCase> {
protected:
    void SetUp() override {
        CommittingProcess process([this](const auto &) {
            make_store(file, "r1", [](MakingStep step) {
                if (step == GetParam().step)
                    raise(SIGKILL);
            });
        });
        ASSERT_EQ(process.wait(), 128 + SIGKILL);
    }
};

TEST_P(AProcessKilledWhileItMakesAStore, LeavesNoneOrAWholeOne) {
    EXPECT_EQ(fs::exists(file), GetParam().is_made);
    CommitLog store(file, true, "r1");
    EXPECT_EQ(keep_numbered(store), 0);
    EXPECT_TRUE(is_sound(store, 0));
    EXPECT_EQ(store.owner(), "r1");
}

TEST_P(AProcessKilledWhileItMakesAStore, LeavesAFileThatTheNextOneThatMakesItRemoves) {
    EXPECT_EQ(names().size(), GetParam().is_made ? 2U : 1U);
    fs::remove(file);
    make_store(file, "r1");
    EXPECT_EQ(names(), Names{"commits.db"});
}

INSTANTIATE_TEST_SUITE_P(When, AProcessKilledWhileItMakesAStore,
                         testing::Values(MakingCase{"ItIsBegun", MakingStep::begun, false},
                                         MakingCase{"ItIsFilled", MakingStep::filled, false},
                                         MakingCase{"ItIsNamed", MakingStep::named, true}),
                         [](const auto &step) { return step.param.name; });

TEST_F(ANewStore, LeavesFilesOfSimilarNamesAlone) {
    const Names others = {".commits.db.new-abc", ".commits.db.new-abcdefg", ".commits.db.abcdef",
                          "commits.db.new-backup", ".other.db.new-abcdef"};
    for (const std::string &name : others)
        directory.add(name, "");
    make_store(file, "r1");
    Names all = others;
    all.insert("commits.db");
    EXPECT_EQ(names(), all);
}

TEST_F(ANewStore, IsNotMadeBehindALinkThatLeadsNowhere) {
    fs::create_symlink(directory.path() / "missing.db", file);
    EXPECT_THROW(CommitLog(file, true), StoreError);
    EXPECT_EQ(names(), Names{"commits.db"});
}

} // namespace
} // namespace yfw::commits::test
