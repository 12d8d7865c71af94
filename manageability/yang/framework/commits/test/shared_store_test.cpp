// One file shared by several users.
#include <chrono>
#include <cstdint>
#include <functional>
#include <future>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "committing_process.h"
#include "numbered_commits.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

constexpr int commits_each = 40;

// Each commit appends its line to the previous configuration.
void keep_line(CommitLog &store, const std::string &line, const CommittingProcess::Report &report) {
    const Commit kept = store
                            .commit([&line](const std::optional<Commit> &last) {
                                const std::string before = last.has_value() ? last->configuration : "";
                                return std::optional(commit_with(line, before + line + "\n"));
                            })
                            .value();
    report(kept.number);
}

TEST(ProcessesThatCommitAtOnce, LoseNoneOfTheirCommits) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    std::vector<std::unique_ptr<CommittingProcess>> processes;
    for (const std::string name : {"first", "second", "third"})
        processes.push_back(std::make_unique<CommittingProcess>([&](const CommittingProcess::Report &report) {
            CommitLog store(file, true);
            for (int i = 0; i < commits_each; ++i)
                keep_line(store, name + " " + std::to_string(i), report);
        }));
    std::vector<bool> given(processes.size() * commits_each, false);
    for (const auto &process : processes) {
        EXPECT_EQ(process->wait(), 0);
        for (const int64_t number : process->reported()) {
            ASSERT_LT(static_cast<size_t>(number), given.size());
            EXPECT_FALSE(given[static_cast<size_t>(number)]) << number << " was given twice";
            given[static_cast<size_t>(number)] = true;
        }
    }
    const CommitLog store(file, false);
    EXPECT_EQ(store.history().size(), given.size());
    EXPECT_TRUE(is_gapless(store.history()));
    EXPECT_EQ(yfw::test::lines_of(store.last().value().configuration).size(), given.size());
}

TEST(TwoStoresOfOneProcess, SeeEachOthersCommits) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    CommitLog one(file, true);
    CommitLog other(file, true);
    for (int64_t number = 0; number < 6; ++number) {
        CommitLog &committing = number % 2 == 0 ? one : other;
        EXPECT_EQ(keep_numbered(committing), number);
        EXPECT_TRUE(is_sound(one, number));
        EXPECT_TRUE(is_sound(other, number));
    }
}

TEST(AReader, SeesTheCommitBeforeWhileOneIsUnderWay) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    CommitLog store(file, true);
    keep_numbered(store);
    const CommitLog reader(file, false);
    std::vector<int64_t> seen;
    store.on_step([&](Step) { seen.push_back(reader.last().value().number); });
    keep_numbered(store);
    EXPECT_EQ(seen, (std::vector<int64_t>{0, 0, 0, 0, 1}));
}

TEST(ThreadsThatShareAStore, SetAnObserverBetweenCommits) {
    const yfw::test::TemporaryDirectory directory;
    CommitLog store(directory.path() / "commits.db", true);
    std::vector<Step> seen;
    std::future<void> setting;
    store.commit([&](const std::optional<Commit> &) {
        setting =
            std::async(std::launch::async, [&] { store.on_step([&](Step step) { seen.push_back(step); }); });
        EXPECT_EQ(setting.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
        return std::optional(commit_with("first", ""));
    });
    setting.get();
    EXPECT_EQ(seen, std::vector<Step>{});
    keep_numbered(store);
    EXPECT_EQ(seen,
              (std::vector<Step>{Step::begun, Step::read, Step::prepared, Step::inserted, Step::committed}));
}

TEST(ThreadsThatShareAStore, SeeWholeCommitsInOrder) {
    const yfw::test::TemporaryDirectory directory;
    CommitLog store(directory.path() / "commits.db", true);
    keep_numbered(store);
    const auto commit = [&store] {
        for (int i = 0; i < 10; ++i) {
            keep_numbered(store);
            store.set_applied_to("run 7");
        }
    };
    const auto read = [&store] {
        int64_t before = 0;
        for (int i = 0; i < 100; ++i) {
            const Commit last = store.last().value();
            EXPECT_GE(last.number, before);
            EXPECT_TRUE(is_of_one_piece(last));
            EXPECT_TRUE(is_gapless(store.history()));
            store.applied_to();
            before = last.number;
        }
    };
    std::vector<std::future<void>> threads;
    for (const std::function<void()> &work : std::vector<std::function<void()>>{commit, commit, read, read})
        threads.push_back(std::async(std::launch::async, work));
    for (std::future<void> &thread : threads)
        thread.get();
    EXPECT_TRUE(is_sound(store, 20));
}

TEST(ACommit, WaitsForTheOneThatIsUnderWay) {
    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
    CommitLog store(file, true);
    std::future<int64_t> later;
    const int64_t first =
        store
            .commit([&](const std::optional<Commit> &last) {
                std::promise<void> opened;
                std::future<void> ready = opened.get_future();
                later = std::async(std::launch::async, [&file, opened = std::move(opened)]() mutable {
                    CommitLog other(file, false);
                    opened.set_value();
                    return keep_numbered(other);
                });
                ready.wait();
                return std::optional(numbered_commit(last));
            })
            .value()
            .number;
    EXPECT_EQ(first, 0);
    EXPECT_EQ(later.get(), 1);
    EXPECT_TRUE(is_sound(store, 1));
}

} // namespace
} // namespace yfw::commits::test
