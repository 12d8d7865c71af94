// Laboratories of the tests: made by the program as a user runs it, with a name and a directory of their own.
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
#include "lab/lab_directory.h"
#include "support/child_process.h"
#include "support/eventually.h"
#include "support/files.h"
#include "support/program_process.h"

namespace yfw::lab::test {

// Asks again and again until it is true or the time is up; then false.
inline bool eventually(const std::function<bool()> &condition,
                       std::chrono::milliseconds limit = std::chrono::seconds(30)) {
    return yfw::test::eventually(condition, limit);
}

// `yfw` at work, which the test looks at line by line. Killed with the object.
class RunningProgram {
public:
    explicit RunningProgram(const std::vector<std::string> &arguments);

    // Waits for this many lines on standard error; false when it ended, or took half a minute, before.
    bool says_lines(size_t count);
    void signal(int number) const { process_->signal(number); }
    // The exit status, 128 + the signal that ended it. Killed after half a minute.
    int wait();
    const std::string &errors() const { return errors_; }

private:
    bool read_more(std::chrono::milliseconds limit);

    Descriptor stream_;
    std::optional<yfw::test::ProgramProcess> process_;
    std::string errors_;
};

// A laboratory that is removed after the test. Skips the test where none can be made, or fails it in CI.
class LabTest : public testing::Test {
protected:
    void SetUp() override;
    void TearDown() override;

    const Place &place() const { return place_; }
    // `yfw lab COMMAND` on the laboratory of the test.
    yfw::test::Outcome lab(const std::string &command, const std::vector<std::string> &more = {}) const;
    std::vector<std::string> words(const std::string &command, const std::vector<std::string> &more = {}) const;
    std::string topology_file(const std::string &text) const { return files_.add("topology.json", text); }

    nlohmann::json status() const;
    // What lldpcli tells of the neighbors on an interface, when it can be asked.
    std::vector<nlohmann::json> neighbors(const std::string &router, const std::string &interface) const;
    std::vector<std::string> names_heard(const std::string &router, const std::string &interface) const;

    // Namespaces, processes, mounts and files of the laboratory that are there now.
    std::vector<std::string> left_over() const;
    // Processes that hold a file of the laboratory open.
    std::vector<pid_t> processes() const;
    std::filesystem::path directory_of_files() const { return files_.path(); }

private:
    yfw::test::TemporaryDirectory files_;
    Place place_;
};

// The shortest network: two routers and a cable.
extern const char *const two_routers;

} // namespace yfw::lab::test

#endif
