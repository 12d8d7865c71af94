// Directories for a program's own files.
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>

#include <sys/stat.h>

#include <gtest/gtest.h>

#include "base/directories.h"
#include "base/error.h"
#include "base/private_directory.h"
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

// Restored with the object.
class ADirectoryForTemporaryFiles : public testing::Test {
protected:
    ADirectoryForTemporaryFiles() {
        if (const char *value = getenv("TMPDIR"))
            before_ = value;
    }
    ~ADirectoryForTemporaryFiles() override {
        if (before_.has_value())
            setenv("TMPDIR", before_->c_str(), 1);
        else
            unsetenv("TMPDIR");
    }

    const TemporaryDirectory directory;

private:
    std::optional<std::string> before_;
};

TEST_F(ADirectoryForTemporaryFiles, IsAskedForWhereItIsMissing) {
    setenv("TMPDIR", (directory.path() / "missing").c_str(), 1);
    try {
        const PrivateDirectory made("yfw-test");
        FAIL() << made.path();
    } catch (const Error &error) {
        EXPECT_STREQ(error.what(), "there is no directory for temporary files: see TMPDIR");
    }
}

TEST_F(ADirectoryForTemporaryFiles, HoldsThePrivateOnes) {
    setenv("TMPDIR", directory.path().c_str(), 1);
    const PrivateDirectory made("yfw-test");
    EXPECT_EQ(made.path().parent_path(), directory.path());
}

} // namespace
} // namespace yfw::test
