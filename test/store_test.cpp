// The commits of a device on disk, through the program.
#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "support/child_process.h"
#include "support/files.h"
#include "support/native_xml.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using Strings = std::vector<std::string>;

class Stores : public testing::Test {
protected:
    Stores() { setenv("XDG_STATE_HOME", (directory.path() / "state").c_str(), 1); }

    // A new device in this directory.
    fs::path device(const fs::path &path) const {
        const fs::path made = directory.path() / path;
        fs::create_directories(made);
        write_file(made / "config.xml", native_configuration(""));
        return made;
    }

    static Outcome run(const fs::path &device, Strings arguments) {
        const Strings options{"--device", device.string()};
        arguments.insert(arguments.begin() + 1, options.begin(), options.end());
        return run_yfw({.arguments = arguments});
    }

    static void expect_commits(const fs::path &device, int count) {
        const Outcome outcome = run(device, {"history"});
        EXPECT_EQ(outcome.status, 0) << outcome.errors;
        EXPECT_EQ(lines_of(outcome.output).size(), static_cast<size_t>(count)) << outcome.output;
    }

    const TemporaryDirectory directory;
};

TEST_F(Stores, OfDevicesWithSimilarPathsAreSeparate) {
    const Strings set{"set", "/lldp/config/enabled", "true"};
    const fs::path first = device("a/b");
    EXPECT_EQ(run(first, set).status, 0) << run(first, set).errors;
    expect_commits(first, 2);
    EXPECT_NE(run(device("a%b"), {"history"}).errors.find("no commits yet"), std::string::npos);
}

TEST_F(Stores, WorkForLongPaths) {
    fs::path path;
    for (int i = 0; i < 4; ++i)
        path /= std::string(90, 'r');
    const fs::path r1 = device(path / "r1");
    const Outcome outcome = run(r1, {"set", "/lldp/config/enabled", "true"});
    EXPECT_EQ(outcome.status, 0) << outcome.errors;
    expect_commits(r1, 2);
}

TEST_F(Stores, AreRefusedToOtherDevices) {
    const std::string store = (directory.path() / "commits.db").string();
    const fs::path r1 = device("r1");
    const fs::path r2 = device("r2");
    EXPECT_EQ(run(r1, {"set", "/lldp/config/enabled", "true", "--store", store}).status, 0);
    for (const Strings &arguments :
         {Strings{"get", "/lldp"}, {"history"}, {"set", "/lldp/config/hello-timer", "20"}, {"rollback", "0"}}) {
        Strings on_store = arguments;
        on_store.insert(on_store.end(), {"--store", store});
        const Outcome outcome = run(r2, on_store);
        EXPECT_EQ(outcome.status, 2) << arguments.front();
        for (const std::string &word : {store, r1.string().substr(1), r2.string().substr(1)})
            EXPECT_NE(outcome.errors.find(word), std::string::npos) << outcome.errors;
    }
    EXPECT_EQ(lines_of(run(r1, {"history", "--store", store}).output).size(), 2U);
}

TEST_F(Stores, AreNotMadeOfEmptyFiles) {
    const std::string store = directory.add("commits.db", "");
    const Outcome outcome = run(device("r1"), {"set", "/lldp/config/enabled", "true", "--store", store});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_NE(outcome.errors.find(store), std::string::npos) << outcome.errors;
    EXPECT_EQ(read_file(store), "");
}

} // namespace
} // namespace yfw::test
