// The record of an unconfirmed commit, next to the store.
#include <filesystem>

#include <gtest/gtest.h>

#include "base/error.h"
#include "device/pending_file.h"
#include "support/files.h"

namespace yfw::device::test {
namespace {

namespace fs = std::filesystem;

class TheRecordOfAnUnconfirmedCommit : public testing::Test {
protected:
    const yfw::test::TemporaryDirectory directory;
    const fs::path store = directory.path() / "deep" / "commits.db";
};

TEST_F(TheRecordOfAnUnconfirmedCommit, IsThereUntilItIsForgotten) {
    EXPECT_EQ(remembered_pending(store), std::nullopt);
    remember_pending(store, 7);
    EXPECT_EQ(remembered_pending(store), 7);
    forget_pending(store);
    EXPECT_EQ(remembered_pending(store), std::nullopt);
}

TEST_F(TheRecordOfAnUnconfirmedCommit, IsForItsUserAloneWithTheDirectoryThatIsMadeForIt) {
    remember_pending(store, 7);
    EXPECT_EQ(fs::status(store.parent_path()).permissions(), fs::perms(0700));
    EXPECT_EQ(fs::status(store.string() + ".unconfirmed").permissions(), fs::perms(0600));
}

TEST_F(TheRecordOfAnUnconfirmedCommit, IsRefusedBelowAFile) {
    const fs::path below_a_file = fs::path(directory.add("file", "")) / "deep" / "commits.db";
    EXPECT_THROW(remember_pending(below_a_file, 7), Error);
}

} // namespace
} // namespace yfw::device::test
