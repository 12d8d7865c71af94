// Runs programs to completion.
#ifndef YFW_BASE_RUN_PROGRAM_H
#define YFW_BASE_RUN_PROGRAM_H

#include <chrono>
#include <stdexcept>
#include <string>
#include <vector>

#include "base/process.h"

namespace yfw {

struct Finished {
    int status = 0; // exit status, or 128 + the signal that killed it
    std::string output;
    std::string errors;

    // The first line on standard error; the exit status or the signal when there was none.
    std::string reason() const;
};

// The program exceeded its time limit and was killed.
class TookTooLong : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Runs the program with `input`, if any, on its standard input, and collects its output and errors unless the
// program has descriptors for them. Throws NotStarted, TookTooLong or std::runtime_error. If SIGCHLD is
// ignored, only one thread may call it at a time.
Finished run(Program program, const std::string &input, std::chrono::milliseconds limit);

// The same in a new process group: Ctrl-C at the terminal does not end the program. `inherited`, if given,
// stays open in the program, so that a lock is held until the program has ended, too.
Finished run(const std::vector<std::string> &arguments, int inherited = -1,
             std::chrono::milliseconds limit = std::chrono::seconds(20));

// The path of a program, from PATH or the system's directories for root. Throws Error naming who needs it ("the
// laboratory") and the package to install.
std::string find_program(const std::string &name, const std::string &package, const std::string &needed_by);

// The same, in these directories only.
std::string find_program(const std::string &name, const std::string &package, const std::string &needed_by,
                         const std::vector<std::string> &directories);

} // namespace yfw

#endif
