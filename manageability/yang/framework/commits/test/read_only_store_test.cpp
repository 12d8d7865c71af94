// A store that may only be read serves reads, and says so when something is to be written.
#include <csignal>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <string>

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "base/process.h"
#include "commits/commit_log.h"
#include "committing_process.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

namespace fs = std::filesystem;

constexpr uid_t nobody = 65534;
constexpr int64_t last = 2;

// Root may write everything: where possible, the store is nobody's, and nobody runs the test.
class AStoreOfOneUser : public testing::Test {
protected:
    void SetUp() override {
        fs::permissions(directory.path(), fs::perms(0755));
        fs::create_directory(place);
        fs::create_symlink(file, link);
        if (getuid() != 0)
            return;
        ASSERT_EQ(chown(place.c_str(), nobody, nobody), 0);
        if (seteuid(nobody) != 0)
            GTEST_SKIP() << "there is no other user here";
    }

    void TearDown() override {
        if (getuid() == 0) {
            ASSERT_EQ(seteuid(0), 0);
        }
        fs::permissions(place, fs::perms(0755));
    }

    void make(int64_t commits = last + 1) const {
        CommitLog store(file, true, "r1");
        for (int64_t i = 0; i < commits; ++i)
            keep_numbered(store);
    }

    void allow(int of_file, int of_directory) const {
        fs::permissions(file, fs::perms(of_file));
        fs::permissions(place, fs::perms(of_directory));
    }

    // The error of a commit; empty on success.
    static std::string complaint(CommitLog &store) {
        try {
            keep_numbered(store);
            return "";
        } catch (const StoreError &error) {
            return error.what();
        }
    }

    void expect_refusal(const std::string &message) const {
        EXPECT_NE(message.find(file.string()), std::string::npos) << message;
        EXPECT_NE(message.find("may only be read"), std::string::npos) << message;
    }

    void commit_in_another_process() const {
        CommittingProcess other([this](const CommittingProcess::Report &report) {
            CommitLog store(file, false);
            report(keep_numbered(store));
        });
        ASSERT_EQ(other.wait(), 0);
    }

    const yfw::test::TemporaryDirectory directory;
    const fs::path place = directory.path() / "state";
    const fs::path file = place / "commits #1?.db";
    const fs::path link = directory.path() / "link.db";
};

struct PermissionCase {
    const char *name;
    int of_file;
    int of_directory;
};

class AStoreThatMayOnlyBeRead : public AStoreOfOneUser, public testing::WithParamInterface<PermissionCase> {
protected:
    void forbid() const { allow(GetParam().of_file, GetParam().of_directory); }
};

TEST_P(AStoreThatMayOnlyBeRead, ServesReads) {
    make();
    forbid();
    for (const bool create : {false, true}) {
        const CommitLog store(file, create, "r1");
        EXPECT_TRUE(is_sound(store, last));
        EXPECT_TRUE(is_of_one_piece(store.find(1).value()));
        EXPECT_EQ(store.owner(), "r1");
        EXPECT_EQ(store.applied_to(), std::nullopt);
    }
}

TEST_P(AStoreThatMayOnlyBeRead, ServesReadsOfTheFirstVersion) {
    make_first_format(file, last);
    forbid();
    EXPECT_TRUE(is_sound(CommitLog(file, false, "r1"), last));
}

TEST_P(AStoreThatMayOnlyBeRead, RefusesACommitBeforeItIsMade) {
    make();
    forbid();
    CommitLog store(file, true, "r1");
    bool called = false;
    EXPECT_THROW(store.commit([&called](const auto &) {
        called = true;
        return std::optional(commit_with("a", "a"));
    }),
                 StoreError);
    EXPECT_FALSE(called);
    expect_refusal(complaint(store));
    EXPECT_THROW(store.set_applied_to("run 7"), StoreError);
    EXPECT_TRUE(is_sound(store, last));
}

TEST_P(AStoreThatMayOnlyBeRead, TakesCommitsOnceItMayBeWritten) {
    make();
    forbid();
    CommitLog store(file, false, "r1");
    EXPECT_NE(complaint(store), "");
    allow(0600, 0700);
    EXPECT_EQ(complaint(store), "");
    EXPECT_TRUE(is_sound(store, last + 1));
}

TEST_P(AStoreThatMayOnlyBeRead, IsRefusedToAnotherDevice) {
    make();
    forbid();
    EXPECT_THROW(CommitLog(file, false, "r2"), StoreError);
}

TEST_P(AStoreThatMayOnlyBeRead, ShowsWhatIsCommittedOnceItMayBeWritten) {
    make();
    forbid();
    const CommitLog store(file, false, "r1");
    EXPECT_TRUE(is_sound(store, last));
    allow(0600, 0700);
    commit_in_another_process();
    forbid();
    EXPECT_TRUE(is_sound(store, last + 1));
    EXPECT_EQ(store.last_number(), last + 1);
}

TEST_P(AStoreThatMayOnlyBeRead, ShowsTheLastCommitOfAProcessThatHasItOpen) {
    make(1);
    CommitLog writer(file, false, "r1"); // has made the files that SQLite locks
    forbid();
    for (int64_t number = 1; number <= last; ++number) {
        EXPECT_EQ(keep_numbered(writer), number);
        EXPECT_TRUE(is_sound(CommitLog(file, false, "r1"), number));
        EXPECT_TRUE(is_sound(CommitLog(link, false, "r1"), number)) << "through a link";
    }
}

INSTANTIATE_TEST_SUITE_P(Because, AStoreThatMayOnlyBeRead,
                         testing::Values(PermissionCase{"TheFileMayNotBeWritten", 0400, 0700},
                                         PermissionCase{"TheDirectoryMayNotBeWritten", 0600, 0500},
                                         PermissionCase{"NeitherMayBeWritten", 0400, 0500}),
                         [](const auto &param) { return param.param.name; });

// A process that dies leaves its commits in a file next to the store.
class AStoreWhoseProcessDied : public AStoreOfOneUser {
protected:
    void SetUp() override {
        AStoreOfOneUser::SetUp();
        if (IsSkipped() || HasFatalFailure())
            return;
        CommittingProcess process([this](const CommittingProcess::Report &) {
            make();
            CommitLog store(file, true, "r1");
            keep_numbered(store);
            raise(SIGKILL);
        });
        ASSERT_EQ(process.wait(), 128 + SIGKILL);
        ASSERT_GT(fs::file_size(log), 0U);
    }

    const fs::path log = file.string() + "-wal";
    const fs::path locks = file.string() + "-shm";
};

TEST_F(AStoreWhoseProcessDied, ServesAllItsCommitsWhereItMayOnlyBeRead) {
    allow(0400, 0500);
    EXPECT_TRUE(is_sound(CommitLog(file, false, "r1"), last + 1));
}

TEST_F(AStoreWhoseProcessDied, IsRefusedRatherThanServedWithoutItsLastCommit) {
    fs::remove(locks);
    allow(0400, 0500);
    try {
        CommitLog(file, false, "r1").last();
        FAIL() << "it is served";
    } catch (const StoreError &error) {
        EXPECT_NE(std::string(error.what()).find(file.string()), std::string::npos) << error.what();
    }
    allow(0600, 0700);
    EXPECT_TRUE(is_sound(CommitLog(file, false, "r1"), last + 1));
}

TEST_F(AStoreOfOneUser, IsNotMadeWhereNothingMayBeWritten) {
    fs::permissions(place, fs::perms(0500));
    for (const fs::path &path : {file, place / "deep" / "commits.db"})
        try {
            CommitLog(path, true);
            FAIL() << "it is made";
        } catch (const StoreError &error) {
            EXPECT_NE(std::string(error.what()).find(place.string()), std::string::npos) << error.what();
            EXPECT_NE(std::string(error.what()).find("Permission denied"), std::string::npos) << error.what();
        }
    EXPECT_TRUE(fs::is_empty(place));
}

// Shows the directory to this process as one of a read-only file system.
bool make_read_only(const fs::path &directory) {
    return unshare(CLONE_NEWNS) == 0 && mount("", "/", "none", MS_PRIVATE | MS_REC, nullptr) == 0 &&
           mount(directory.c_str(), directory.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
           mount(nullptr, directory.c_str(), nullptr, MS_BIND | MS_REMOUNT | MS_RDONLY, nullptr) == 0;
}

TEST(AStoreOnAReadOnlyFileSystem, ServesReads) {
    const yfw::test::TemporaryDirectory directory;
    const fs::path file = directory.path() / "commits.db";
    {
        CommitLog store(file, true, "r1");
        keep_numbered(store);
    }
    constexpr int not_allowed = 77;
    Process reader = Process::copy([&] {
        if (!make_read_only(directory.path()))
            return not_allowed;
        CommitLog store(file, true, "r1");
        if (!is_sound(store, 0))
            return 2;
        try {
            keep_numbered(store);
            return 3;
        } catch (const StoreError &error) {
            return std::string(error.what()).find("may only be read") != std::string::npos ? 0 : 4;
        }
    });
    const auto status = reader.wait(std::chrono::minutes(1));
    if (status == not_allowed)
        GTEST_SKIP() << "file systems cannot be mounted here";
    EXPECT_EQ(status, 0);
    EXPECT_TRUE(is_sound(CommitLog(file, false, "r1"), 0));
}

} // namespace
} // namespace yfw::commits::test
