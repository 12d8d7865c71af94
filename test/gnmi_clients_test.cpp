// Third-party gNMI clients, with the throw-away certificates of `yfw serve --gnmi`.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <unistd.h>

#include "base/run_program.h"
#include "support/files.h"
#include "support/running_yfw.h"

namespace yfw::test {
namespace {

using testing::ElementsAre;

namespace fs = std::filesystem;

Finished run(const std::vector<std::string> &words) {
    return yfw::run(words, -1, std::chrono::minutes(3));
}

// A client that is not there is no failure, unless it is required.
void missing(const std::string &what) {
    if (std::getenv("CI") != nullptr || std::getenv("YFW_REQUIRE_CLIENTS") != nullptr)
        FAIL() << what;
    GTEST_SKIP() << what;
}

class AGnmiServer : public testing::Test {
protected:
    AGnmiServer() {
        fs::copy(YFW_EXAMPLES_DIR "/r1", in_files("device"));
        server_.emplace(std::vector<std::string>{"serve", "--device", in_files("device"), "--store",
                                                 in_files("store.db"), "--socket", in_files("netconf.sock"),
                                                 "--gnmi"});
        const std::string line = server_->line_with({"gNMI on 127.0.0.1:", "certificates in "}).value_or("");
        const size_t port = line.find("127.0.0.1:") + 10;
        port_ = line.substr(port, line.find(',') - port);
        const size_t certificates = line.find("certificates in ") + 16;
        certificates_ = line.substr(certificates, line.find_first_of("\r\n", certificates) - certificates);
    }

    std::string in_files(const std::string &name) const { return (files_.path() / name).string(); }

    TemporaryDirectory files_;
    std::optional<RunningYfw> server_;
    std::string port_;
    std::string certificates_;
};

// Where later runs find what an earlier one has installed.
fs::path cache() {
    const char *given = std::getenv("XDG_CACHE_HOME");
    const char *home = std::getenv("HOME");
    return fs::path(given != nullptr ? given : std::string(home != nullptr ? home : "/tmp") + "/.cache") /
           "yfw-tests";
}

class APygnmi : public AGnmiServer {
protected:
    void SetUp() override {
        const std::string version = "0.8.15";
        packages_ = cache() / ("pygnmi-" + version);
        if (fs::exists(packages_))
            return;
        fs::create_directories(cache());
        const fs::path fresh = packages_.string() + "." + std::to_string(getpid());
        const Finished installed =
            run({"/usr/bin/env", "python3", "-m", "pip", "install", "--quiet", "--disable-pip-version-check",
                 "--target", fresh.string(), "pygnmi==" + version});
        if (installed.status != 0)
            return missing("pygnmi cannot be installed: " + installed.reason());
        std::error_code is_there_by_now;
        fs::rename(fresh, packages_, is_there_by_now);
    }

    // Runs a script on the server; returns the lines that it printed. Fails unless it ends well.
    std::vector<std::string> lines_of_script(const std::string &name) const {
        const Finished finished =
            run({"/usr/bin/env", "PYTHONPATH=" + packages_.string(), "python3", YFW_GNMI_SCRIPTS_DIR "/" + name,
                 "127.0.0.1", port_, certificates_ + "/ca.pem", certificates_ + "/client.pem",
                 certificates_ + "/client.key"});
        EXPECT_EQ(finished.status, 0) << finished.errors;
        return lines_of(finished.output);
    }

    fs::path packages_;
};

TEST_F(APygnmi, RunsTheLinesThatTheServerPrints) {
    ASSERT_TRUE(server_->line_with({"print(client.get("}).has_value());
    const std::string output = server_->output();
    std::ofstream(in_files("pasted.py")) << output.substr(output.find("from pygnmi"));
    const Finished finished =
        run({"/usr/bin/env", "PYTHONPATH=" + packages_.string(), "python3", in_files("pasted.py")});
    EXPECT_EQ(finished.status, 0) << finished.errors;
    EXPECT_THAT(finished.output, testing::HasSubstr("r1.example.net"));
}

TEST_F(APygnmi, ReadsSetsAndStreams) {
    EXPECT_THAT(lines_of_script("pygnmi_session.py"),
                ElementsAre("version: 0.10.0", "encodings: json,json_ietf,proto", "json: [\"r1.example.net\"]",
                            "json_ietf: [\"r1.example.net\"]", "proto: [\"r1.example.net\"]", "all: 1",
                            "update: updated", "replace: {\"system-name\": \"replaced\"}", "delete: True",
                            "once: streamed", "first: streamed", "then: changed"));
}

TEST_F(APygnmi, ConfirmsCancelsAndProlongsCommits) {
    EXPECT_THAT(lines_of_script("pygnmi_commits.py"),
                ElementsAre("committed: first", "another commit: FAILED_PRECONDITION",
                            "without an id: FAILED_PRECONDITION", "of another id: INVALID_ARGUMENT",
                            "confirmed: first", "confirmed again: FAILED_PRECONDITION",
                            "to be cancelled: second", "cancelled: first", "not confirmed in time: first",
                            "no time at all: INVALID_ARGUMENT", "to be shortened: fourth",
                            "not confirmed in the shorter time: first", "with more time: fifth",
                            "confirmed at last: fifth"));
}

TEST_F(APygnmi, PollsAndSamples) {
    EXPECT_THAT(lines_of_script("pygnmi_streams.py"),
                ElementsAre("polled: ['at first']", "polled again: ['at first']", "told without a poll: False",
                            "polled after a change: ['between polls']", "current: ['between polls']",
                            "sampled: ['between polls'] ['between polls']", "in their time: True",
                            "sampled after a change: ['between samples']", "current: ['between samples']",
                            "sampled without a change: False",
                            "sampled after a change: ['no longer redundant']",
                            "current: ['no longer redundant']", "with the heartbeat: ['no longer redundant']"));
}

} // namespace
} // namespace yfw::test
