// Where a device's commits are when no file is named.
#include <cstdlib>
#include <filesystem>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commits/commit_log.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/options/store_name.h"
#include "support/files.h"

namespace yfw::cli::test {
namespace {

namespace fs = std::filesystem;

TEST(TheNameOfAStore, IsThePathOfItsDeviceInPercentEncoding) {
    EXPECT_EQ(store_name("home/me/r1"), "home%2Fme%2Fr1.db");
    EXPECT_EQ(store_name("lldpd:run/lldpd.socket"), "lldpd:run%2Flldpd.socket.db");
    EXPECT_EQ(store_name("100% r1"), "100%25 r1.db");
}

TEST(TheNameOfAStore, IsThatOfOneDeviceAlone) {
    std::set<std::string> devices = {"a/b", "a%b", "a%2Fb", "a%252Fb", "a%25b", "a%/b", "a/%b", "ab"};
    for (const std::string &end : {std::string(300, 'x'), std::string(100, '/'), std::string(100, '%')})
        for (const char *difference : {"", "a", "b", "a/b", "a%b", "%~", "~"}) {
            devices.insert("dev/" + end + difference);
            devices.insert("dev/" + (difference + end));
        }
    std::set<std::string> names;
    for (const std::string &device : devices)
        EXPECT_TRUE(names.insert(store_name(device)).second) << device;
}

TEST(TheNameOfAStore, LeavesRoomForTheOtherFilesOfTheStore) {
    for (size_t length = 200; length < 300; ++length) {
        const std::string device(length, 'x');
        const std::string name = store_name(device);
        EXPECT_LE(name.size() + std::string(".unconfirmed").size(), 255U);
        EXPECT_TRUE(name.ends_with(".db")) << name;
        EXPECT_TRUE(length > 240 || name == device + ".db") << name;
    }
}

TEST(TheNameOfAStore, HasWholeCharacters) {
    for (size_t shift = 0; shift < 4; ++shift) {
        std::string device(shift, 'x');
        for (int i = 0; i < 100; ++i)
            device += "\xf0\x9f\x8c\x90";
        const std::string name = store_name(device);
        EXPECT_EQ((name.find("%~") - shift) % 4, 0U) << name;
    }
}

class TheStoreOfADevice : public testing::Test {
protected:
    TheStoreOfADevice() { setenv("XDG_STATE_HOME", state.path().c_str(), 1); }
    ~TheStoreOfADevice() override { unsetenv("XDG_STATE_HOME"); }

    // The device in this directory, which is made.
    static DeviceOptions device(const fs::path &path) {
        fs::create_directories(path);
        DeviceOptions options;
        options.device = path;
        return options;
    }

    // The name by which earlier versions find the store.
    static std::string former_name(const fs::path &device) {
        std::string name = fs::canonical(device).string().substr(1);
        for (char &c : name)
            c = c == '/' ? '%' : c;
        return name + ".db";
    }

    void make(const std::string &name) const {
        fs::create_directory(place);
        yfw::test::write_file(place / name, "");
    }

    const yfw::test::TemporaryDirectory state;
    const yfw::test::TemporaryDirectory directory;
    const fs::path place = state.path() / "yfw";
};

TEST_F(TheStoreOfADevice, IsAnotherForEachPath) {
    std::set<fs::path> stores;
    for (const char *path : {"a/b", "a%b", "a%2Fb"})
        stores.insert(store_of(device(directory.path() / path)));
    EXPECT_EQ(stores.size(), 3U);
    for (const fs::path &store : stores)
        EXPECT_EQ(store.parent_path(), place);
}

// XDG base directories: a relative path is invalid, and ignored.
TEST_F(TheStoreOfADevice, IsNotBelowARelativePath) {
    setenv("XDG_STATE_HOME", "state", 1);
    const fs::path store = store_of(device(directory.path() / "r1"));
    EXPECT_EQ(store.parent_path(), fs::path(getenv("HOME")) / ".local/state/yfw");
}

TEST_F(TheStoreOfADevice, IsTheFileThatIsNamed) {
    DeviceOptions options = device(directory.path() / "r1");
    options.store = "commits.db";
    EXPECT_EQ(store_of(options), "commits.db");
}

TEST_F(TheStoreOfADevice, IsNoneForFiles) {
    DeviceOptions options;
    options.native_files = {"state.xml"};
    EXPECT_EQ(store_of(options), "");
    EXPECT_EQ(owner_of(options), "");
}

TEST_F(TheStoreOfADevice, BelongsToTheFilesThatItIsGivenAs) {
    const auto owner = [&](const std::vector<fs::path> &files) {
        DeviceOptions options;
        options.native_files = files;
        options.store = "commits.db";
        return owner_of(options);
    };
    const fs::path config = directory.path() / "r1" / "config.xml",
                   more = directory.path() / "r1" / "state.xml";
    EXPECT_EQ(owner({config}), owner({directory.path() / "r2" / ".." / "r1" / "config.xml"}));
    EXPECT_EQ(owner({config, more}), owner({more, config}));
    EXPECT_NE(owner({config}), owner({directory.path() / "r2" / "config.xml"}));
    EXPECT_NE(owner({config}), owner({config, more}));
    EXPECT_NE(owner({config}).find(config.string()), std::string::npos);
}

TEST_F(TheStoreOfADevice, TakesCommitsForALongPath) {
    fs::path path = directory.path();
    for (int i = 0; i < 5; ++i)
        path /= std::string(100, 'r');
    const DeviceOptions first = device(path / "r1");
    const DeviceOptions other = device(path / "r2");
    EXPECT_NE(store_of(first), store_of(other));
    commits::CommitLog store(store_of(first), true, owner_of(first));
    const auto kept = store.commit([](const auto &) { return std::optional(commits::Commit()); });
    EXPECT_TRUE(kept.has_value());
    EXPECT_TRUE(fs::exists(store_of(first)));
    EXPECT_FALSE(fs::exists(store_of(other)));
}

TEST_F(TheStoreOfADevice, IsFoundByItsFormerName) {
    const DeviceOptions r1 = device(directory.path() / "a" / "r1");
    make(former_name(r1.device));
    EXPECT_EQ(store_of(r1), place / former_name(r1.device));
}

TEST_F(TheStoreOfADevice, HasItsOwnNameWhenBothExist) {
    const DeviceOptions r1 = device(directory.path() / "a" / "r1");
    const fs::path store = store_of(r1);
    make(store.filename().string());
    make(former_name(r1.device));
    EXPECT_EQ(store_of(r1), store);
}

TEST_F(TheStoreOfADevice, IsNotFoundByAFormerNameThatCouldBeAnothers) {
    const DeviceOptions r1 = device(directory.path() / "a%r1");
    make(former_name(r1.device));
    EXPECT_NE(store_of(r1), place / former_name(r1.device));
}

} // namespace
} // namespace yfw::cli::test
