// Laboratories for tests, created by the program as a user runs it, each with its own name and directory.
#ifndef YFW_LAB_TEST_LAB_PROGRAM_H
#define YFW_LAB_TEST_LAB_PROGRAM_H

#include <chrono>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "base/descriptor.h"
#include "base/process.h"
#include "base/run_program.h"
#include "lab/lab_directory.h"
#include "support/child_process.h"
#include "support/eventually.h"
#include "support/files.h"

namespace yfw::lab::test {

// Polls until the condition is true; returns false when the time is up.
inline bool eventually(const std::function<bool()> &condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    return yfw::test::eventually(condition, limit);
}

// A running `yfw` whose output the test reads line by line. Killed when the object is destroyed.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string> &arguments);

    // Waits for this many lines on standard error; returns false if the program ends or half a minute passes
    // before that.
    bool says_lines(size_t count);
    void signal(int number) const { process_.signal(number); }
    // The exit status, or 128 + the signal that ended it. Kills the program after half a minute.
    int wait();
    const std::string &errors() const { return errors_; }

private:
    bool read_more(std::chrono::milliseconds limit);

    Descriptor stream_;
    Process process_;
    std::string errors_;
};

// A laboratory that is removed after the test. Where none can be created, skips the test, or fails it in CI.
class LabTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    const Place &place() const { return place_; }
    // Runs `yfw lab COMMAND` on the test's laboratory.
    yfw::test::Outcome lab(const std::string &command, const std::vector<std::string> &more = {}) const;
    std::vector<std::string> words(const std::string &command, const std::vector<std::string> &more = {}) const;
    std::string topology_file(const std::string &text) const { return files_.add("topology.json", text); }

    nlohmann::json status() const;
    // What lldpcli reports about the neighbors on an interface; empty when it cannot be queried.
    std::vector<nlohmann::json> neighbors(const std::string &router, const std::string &interface) const;
    std::vector<std::string> names_heard(const std::string &router, const std::string &interface) const;

    // The laboratory's namespaces, processes, mounts and files that still exist.
    std::vector<std::string> left_over() const;
    // Processes that have a file of the laboratory open.
    std::vector<pid_t> processes() const;
    std::filesystem::path directory_of_files() const { return files_.path(); }

private:
    yfw::test::TemporaryDirectory files_;
    Place place_;
};

// The smallest network: two routers and a cable.
extern const char *const two_routers;

} // namespace yfw::lab::test

#endif
