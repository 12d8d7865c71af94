// Runs the program under test as a user would, and gives back what it printed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/process.h"

namespace yfw::test {

struct Invocation {
    std::vector<std::string> arguments;        // without the program's own name
    std::filesystem::path working_directory{}; // the test's own when empty
    std::string timezone = "UTC0";             // value of TZ
    std::string output_device{};               // path that standard output goes to instead of the test
};

struct Outcome {
    int status = -1; // exit status; 128 + the signal when one ended the program
    std::string output;
    std::string errors;
};

/// The program with these arguments, for tests that look at it while it runs.
Program program_under_test(const std::vector<std::string> &arguments);

/// Runs the program to its end. One that takes longer than two minutes is killed.
/// Throws std::runtime_error when it was, and when it could not be started.
Outcome run_yfw(const Invocation &invocation);

} // namespace yfw::test
