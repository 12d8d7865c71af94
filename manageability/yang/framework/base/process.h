// Runs programs to completion, without a shell.
#ifndef YFW_BASE_PROCESS_H
#define YFW_BASE_PROCESS_H

#include <chrono>
#include <string>
#include <vector>

namespace yfw {

struct Finished {
    int status = 0; // exit status, or 128 + the signal that killed it
    std::string output;
    std::string errors;

    // The first line on standard error, or the status when there was none.
    std::string reason() const;
};

// Runs `arguments`, which start with the program's path, in a new process group (Ctrl-C at the terminal does
// not end it) and collects its output. `inherited`, if given, stays open in the program, so that a lock is held
// until the program has ended, too. Throws std::runtime_error when the program cannot be started, or is killed
// because it exceeds `limit`.
Finished run(const std::vector<std::string> &arguments, int inherited = -1,
             std::chrono::milliseconds limit = std::chrono::seconds(20));

// The path of a program, from PATH or the system's directories for root. Throws Error naming the package to
// install.
std::string find_program(const std::string &name, const std::string &package);

// The same, in these directories only.
std::string find_program(const std::string &name, const std::string &package,
                         const std::vector<std::string> &directories);

} // namespace yfw

#endif
