// Directories for a program's own files.
#include <filesystem>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "base/directories.h"
#include "support/files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;

class APrivateDirectory : public testing::Test {
protected:
    void SetUp() override { before_ = umask(0); }
    void TearDown() override { umask(before_); }

    fs::perms permissions(const fs::path &path) const { return fs::status(path).permissions(); }

    const TemporaryDirectory directory;

private:
    mode_t before_ = 0;
};

TEST_F(APrivateDirectory, IsMadeWithThoseAboveIt) {
    const fs::path deepest = directory.path() / "a" / "b" / "c";
    EXPECT_FALSE(make_private_directories(deepest));
    for (const fs::path &made : {deepest, deepest.parent_path(), deepest.parent_path().parent_path()})
        EXPECT_EQ(permissions(made), fs::perms(0700)) << made;
}

TEST_F(APrivateDirectory, IsMadeWhateverTheSlashes) {
    EXPECT_FALSE(make_private_directories(directory.path() / "a//b/"));
    EXPECT_TRUE(fs::is_directory(directory.path() / "a" / "b"));
}

TEST_F(APrivateDirectory, IsLeftAsItIsWhenItExists) {
    const fs::path existing = directory.path() / "a";
    fs::create_directory(existing);
    fs::permissions(existing, fs::perms(0750));
    EXPECT_FALSE(make_private_directories(existing));
    EXPECT_EQ(permissions(existing), fs::perms(0750));
    EXPECT_FALSE(make_private_directories(""));
    EXPECT_FALSE(make_private_directories("/"));
}

TEST_F(APrivateDirectory, IsNotMadeBelowAFile) {
    const fs::path file = directory.add("file", "");
    EXPECT_TRUE(make_private_directories(file));
    EXPECT_TRUE(make_private_directories(file / "a" / "b"));
    EXPECT_TRUE(make_private_directories("/dev/null/a"));
}

TEST_F(APrivateDirectory, IsBroughtToDisk) {
    EXPECT_FALSE(sync_directory(directory.path()));
    EXPECT_TRUE(sync_directory(directory.path() / "missing"));
}

} // namespace
} // namespace yfw::test
