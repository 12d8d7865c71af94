// Runs the program under test as a user would, and returns what it printed.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/process.h"

namespace yfw::test {

struct Invocation {
    std::vector<std::string> arguments;        // without the program's name
    std::filesystem::path working_directory{}; // empty: the test's
    std::string timezone = "UTC0";             // value of TZ
    std::string output_device{};               // where standard output goes; empty: to the test
};

struct Outcome {
    int status = -1; // exit status, or 128 + the signal that killed the program
    std::string output;
    std::string errors;
};

/// The program with these arguments, for tests that observe it while it runs.
Program program_under_test(const std::vector<std::string> &arguments);

/// Runs the program to completion. Throws std::runtime_error when it cannot be started, or takes longer than
/// two minutes and is killed.
Outcome run_yfw(const Invocation &invocation);

/// Makes run_yfw call the program's main function in place of starting the program, which takes longer than
/// most commands with sanitizers. A working directory and TZ hold for the whole process then: only one thread
/// may run it.
void run_yfw_in_this_process(int (*main)(int argc, char **argv));

} // namespace yfw::test
