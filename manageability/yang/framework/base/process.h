// Programs that are run to their end, with arguments as they are (no shell).
#ifndef YFW_BASE_PROCESS_H
#define YFW_BASE_PROCESS_H

#include <chrono>
#include <string>
#include <vector>

namespace yfw {

struct Finished {
    int status = 0; // exit status; 128 + the signal that ended it
    std::string output;
    std::string errors;

    // The first line that it said on standard error, or its status when it said nothing.
    std::string reason() const;
};

// Runs `arguments`, the program's path first, in a process group of its own (Ctrl-C at the terminal does not
// end it) and collects what it prints. `inherited`, when it is one, stays open in the program: a lock is then
// held until the program has ended too. Throws std::runtime_error when the program cannot be started or takes
// longer than `limit`; then it is killed.
Finished run(const std::vector<std::string> &arguments, int inherited = -1,
             std::chrono::milliseconds limit = std::chrono::seconds(20));

// The path of a program, from PATH or from where the system keeps programs for root. Throws Error that
// says which package to install.
std::string find_program(const std::string &name, const std::string &package);

// The same, in these directories alone.
std::string find_program(const std::string &name, const std::string &package,
                         const std::vector<std::string> &directories);

} // namespace yfw

#endif
