// A store belongs to one device.
#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "numbered_commits.h"
#include "raw_database.h"
#include "support/files.h"

namespace yfw::commits::test {
namespace {

using Owner = std::optional<std::string>;

class AStoreOfADevice : public testing::Test {
protected:
    // The error from opening the store for the device; empty on success.
    std::string complaint(const Owner &owner) const {
        for (const bool create : {false, true}) {
            try {
                CommitLog(file, create, owner).last();
            } catch (const StoreError &error) {
                return error.what();
            }
        }
        return "";
    }

    void make(const Owner &owner) const {
        CommitLog store(file, true, owner);
        keep_numbered(store);
    }

    const yfw::test::TemporaryDirectory directory;
    const std::filesystem::path file = directory.path() / "commits.db";
};

TEST_F(AStoreOfADevice, OpensForIt) {
    for (const Owner owner : {"home/me/r1", "", "lldpd:run/lldpd.socket", "with 'quotes'"}) {
        std::filesystem::remove(file);
        make(owner);
        EXPECT_EQ(complaint(owner), "");
        EXPECT_EQ(CommitLog(file, false).owner(), owner);
    }
}

TEST_F(AStoreOfADevice, IsRefusedToAnotherByTheNamesOfBoth) {
    make("home/me/r1");
    const std::string message = complaint("home/me/r2");
    for (const std::string &word : {file.string(), std::string("home/me/r1"), std::string("home/me/r2")})
        EXPECT_NE(message.find(word), std::string::npos) << message;
}

TEST_F(AStoreOfADevice, IsRefusedToADeviceGivenAsFiles) {
    make("home/me/r1");
    EXPECT_NE(complaint("").find("files"), std::string::npos) << complaint("");
}

TEST_F(AStoreOfADevice, IsRefusedToANamedDeviceWhenItsOwnIsGivenAsFiles) {
    make("");
    const std::string message = complaint("home/me/r1");
    EXPECT_NE(message.find("files"), std::string::npos) << message;
    EXPECT_NE(message.find("home/me/r1"), std::string::npos) << message;
}

TEST_F(AStoreOfADevice, GivenAsFilesIsRefusedToOtherFilesByTheNamesOfBoth) {
    make("files:/r1/config.xml");
    EXPECT_EQ(complaint("files:/r1/config.xml"), "");
    const std::string message = complaint("files:/r2/config.xml");
    for (const std::string word : {"a device given as files, /r1/config.xml", "/r2/config.xml"})
        EXPECT_NE(message.find(word), std::string::npos) << message;
}

TEST_F(AStoreOfADevice, GivenAsFilesThatAnEarlierVersionMadeBelongsToTheFirstFilesThatCommit) {
    make("");
    EXPECT_EQ(complaint("files:/r1/config.xml"), "");
    EXPECT_EQ(complaint("files:/r2/config.xml"), "");
    EXPECT_NE(complaint("home/me/r1"), "");
    CommitLog store(file, false, "files:/r1/config.xml");
    EXPECT_EQ(keep_numbered(store), 1);
    EXPECT_EQ(store.owner(), "files:/r1/config.xml");
    EXPECT_NE(complaint("files:/r2/config.xml"), "");
}

TEST_F(AStoreOfADevice, OpensWithoutADevice) {
    make("home/me/r1");
    EXPECT_EQ(complaint(std::nullopt), "");
    CommitLog store(file, false);
    EXPECT_EQ(keep_numbered(store), 1);
    EXPECT_EQ(store.owner(), "home/me/r1");
}

class AStoreWithoutAnOwner : public AStoreOfADevice, public testing::WithParamInterface<bool> {
protected:
    AStoreWithoutAnOwner() {
        if (GetParam())
            make_first_format(file, 0);
        else
            make(std::nullopt);
    }
};

TEST_P(AStoreWithoutAnOwner, OpensForEveryDevice) {
    for (const Owner owner : {"home/me/r1", "home/me/r2", ""})
        EXPECT_EQ(complaint(owner), "");
    EXPECT_EQ(CommitLog(file, false).owner(), std::nullopt);
}

TEST_P(AStoreWithoutAnOwner, BelongsToTheFirstThatCommits) {
    CommitLog first(file, false, "home/me/r1");
    CommitLog other(file, false, "home/me/r2");
    EXPECT_EQ(keep_numbered(first), 1);
    EXPECT_THROW(keep_numbered(other), StoreError);
    EXPECT_THROW(other.set_applied_to("run 7"), StoreError);
    EXPECT_NE(complaint("home/me/r2"), "");
    EXPECT_EQ(first.owner(), "home/me/r1");
    EXPECT_TRUE(is_sound(first, 1));
}

TEST_P(AStoreWithoutAnOwner, GetsNoneFromACommitWithoutADevice) {
    CommitLog store(file, false);
    keep_numbered(store);
    EXPECT_EQ(store.owner(), std::nullopt);
}

INSTANTIATE_TEST_SUITE_P(Of, AStoreWithoutAnOwner, testing::Bool(),
                         [](const auto &is_old) { return is_old.param ? "TheFirstVersion" : "ThisVersion"; });

} // namespace
} // namespace yfw::commits::test
