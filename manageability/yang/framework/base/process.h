// Child processes.
#ifndef YFW_BASE_PROCESS_H
#define YFW_BASE_PROCESS_H

#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include <sys/types.h>

#include "base/descriptor.h"

namespace yfw {

// A program to start. It starts with default signal handling, whatever this process blocks or ignores.
struct Program {
    // The program comes first: a path, or a name without a slash, which is looked up in PATH. There is no
    // shell.
    std::vector<std::string> arguments;
    // Descriptors for its standard streams, borrowed until it has started; -1: /dev/null.
    int input = -1;
    int output = -1;
    int errors = -1;
    // Stays open in the program as descriptor 3; -1: none.
    int inherited = -1;
    std::filesystem::path directory = {};      // its working directory; empty: this process's
    std::vector<std::string> environment = {}; // "NAME=value"; empty: this process's
    bool in_own_group = false;                 // so that Ctrl-C at the terminal does not end it
    bool ends_with_parent = false;             // gets SIGTERM when the thread that started it ends
};

// The program could not be started; reason() is an errno.
class NotStarted : public std::runtime_error {
public:
    NotStarted(const std::string &program, int reason);
    int reason() const { return reason_; }

private:
    int reason_;
};

// A child process. Killed and reaped on destruction. Not thread-safe.
class Process {
public:
    // No process.
    Process() = default;
    // Starts the program. Throws NotStarted, or std::runtime_error when no process can be created.
    explicit Process(const Program &program);
    // Forks. The child has only the calling thread; it runs `body` and exits with its result, or with 1 when it
    // throws. Throws std::runtime_error.
    static Process copy(const std::function<int()> &body);

    ~Process();
    Process(Process &&other) noexcept { *this = std::move(other); }
    Process &operator=(Process &&other) noexcept;
    Process(const Process &) = delete;
    Process &operator=(const Process &) = delete;

    pid_t number() const { return number_; }
    // Readable once the process has ended; -1 when there is none. Lives as long as this object.
    int end_descriptor() const { return handle_.get(); }
    bool runs();
    // Sends the signal; does nothing once the process has been reaped.
    void signal(int number) const;

    // These return the exit status, or 128 + the signal that killed the process; -1 when there is no process,
    // or when this process ignores SIGCHLD and the status is lost.

    // Waits for the process to end; nothing on timeout.
    std::optional<int> wait(std::chrono::milliseconds limit);
    // Sends SIGTERM, and SIGKILL if the process is still running after `patience`.
    int end(std::chrono::milliseconds patience);
    // Sends SIGKILL.
    int kill();

    // Gives up ownership: the process runs on, and the caller reaps it.
    pid_t release();

private:
    explicit Process(pid_t number);

    pid_t number_ = -1;
    Descriptor handle_; // readable once the process has ended
    std::optional<int> status_;
};

} // namespace yfw

#endif
