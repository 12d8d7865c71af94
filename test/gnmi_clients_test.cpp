// Third-party gNMI clients, with the throw-away certificates of `yfw serve --gnmi`.
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <gmock/gmock.h>

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

TEST_F(AGnmiServer, ServesPygnmi) {
    const std::string packages = in_files("packages");
    const Finished installed = run({"/usr/bin/env", "python3", "-m", "pip", "install", "--quiet",
                                    "--disable-pip-version-check", "--target", packages, "pygnmi"});
    if (installed.status != 0)
        return missing("pygnmi cannot be installed: " + installed.reason());
    const Finished finished =
        run({"/usr/bin/env", "PYTHONPATH=" + packages, "python3", YFW_GNMI_SCRIPTS_DIR "/pygnmi_session.py",
             "127.0.0.1", port_, certificates_ + "/ca.pem", certificates_ + "/client.pem",
             certificates_ + "/client.key"});
    EXPECT_EQ(finished.status, 0) << finished.errors;
    EXPECT_THAT(lines_of(finished.output),
                ElementsAre("version: 0.10.0", "encodings: json,json_ietf,proto", "json: [\"r1.example.net\"]",
                            "json_ietf: [\"r1.example.net\"]", "proto: [\"r1.example.net\"]", "all: 1",
                            "update: updated", "replace: {\"system-name\": \"replaced\"}", "delete: True",
                            "once: streamed", "first: streamed", "then: changed"));
}

} // namespace
} // namespace yfw::test
