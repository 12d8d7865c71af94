#include "base/run_program.h"

#include <algorithm>
#include <array>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <sstream>

#include <poll.h>
#include <sys/mman.h>

#include "base/error.h"
#include "base/system_error.h"

namespace yfw {
namespace {

using Clock = std::chrono::steady_clock;

// Makes the system keep the exit statuses of children even if this process was started with SIGCHLD ignored.
class KeptStatuses {
public:
    KeptStatuses() {
        ::sigaction(SIGCHLD, nullptr, &before_);
        if (!ignores())
            return;
        struct sigaction normal {};
        normal.sa_handler = SIG_DFL;
        ::sigaction(SIGCHLD, &normal, nullptr);
    }
    ~KeptStatuses() {
        if (ignores())
            ::sigaction(SIGCHLD, &before_, nullptr);
    }
    KeptStatuses(const KeptStatuses &) = delete;
    KeptStatuses &operator=(const KeptStatuses &) = delete;

private:
    bool ignores() const { return before_.sa_handler == SIG_IGN; }

    struct sigaction before_ {};
};

// An anonymous file, positioned at its start. Unlike a pipe, it takes all of the input at once and does not
// fail when the reader exits early.
Descriptor file_of(const std::string &content) {
    Descriptor file(::memfd_create("input", MFD_CLOEXEC));
    if (!file.is_open() || !write_all(file.get(), content) || ::lseek(file.get(), 0, SEEK_SET) < 0)
        throw std::runtime_error("cannot store a program's input: " + system_error_text());
    return file;
}

int milliseconds_until(Clock::time_point deadline) {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
    return static_cast<int>(std::clamp<int64_t>(left, 0, INT_MAX));
}

// Reads both streams to their ends; false on timeout.
bool collect(const Pipe &output, const Pipe &errors, Finished &finished, Clock::time_point deadline) {
    std::array<pollfd, 2> open{{{output.read_end.get(), POLLIN, 0}, {errors.read_end.get(), POLLIN, 0}}};
    const std::array<std::string *, 2> texts{&finished.output, &finished.errors};
    while (open[0].fd >= 0 || open[1].fd >= 0) {
        const int left = milliseconds_until(deadline);
        if (left == 0)
            return false;
        if (::poll(open.data(), open.size(), left) < 0)
            continue; // interrupted by a signal: retry with the remaining time
        for (size_t i = 0; i < open.size(); ++i)
            if (open[i].fd >= 0 && open[i].revents != 0 && !append_from(open[i].fd, *texts[i]))
                open[i].fd = -1; // poll ignores it
    }
    return true;
}

} // namespace

std::string Finished::reason() const {
    if (const std::string line = errors.substr(0, errors.find('\n')); !line.empty())
        return line;
    return status > 128 ? "signal " + std::to_string(status - 128) : "exit status " + std::to_string(status);
}

Finished run(Program program, const std::string &input, std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    const KeptStatuses kept;
    const Descriptor fed = input.empty() ? Descriptor() : file_of(input);
    Pipe output, errors;
    if (fed.is_open())
        program.input = fed.get();
    if (program.output < 0)
        program.output = output.write_end.get();
    if (program.errors < 0)
        program.errors = errors.write_end.get();
    Process process(program);
    output.write_end.close();
    errors.write_end.close();
    Finished finished;
    std::optional<int> status;
    if (collect(output, errors, finished, deadline))
        status = process.wait(std::chrono::milliseconds(milliseconds_until(deadline)));
    if (!status.has_value())
        throw TookTooLong(program.arguments[0] + ": killed after its time limit of " +
                          std::to_string(limit.count()) + " ms");
    finished.status = *status;
    return finished;
}

Finished run(const std::vector<std::string> &arguments, int inherited, std::chrono::milliseconds limit) {
    return run(Program{.arguments = arguments, .inherited = inherited, .in_own_group = true}, "", limit);
}

std::string find_program(const std::string &name, const std::string &package, const std::string &needed_by,
                         const std::vector<std::string> &directories) {
    for (const std::string &directory : directories)
        if (const std::string path = directory + "/" + name; ::access(path.c_str(), X_OK) == 0)
            return path;
    throw Error(ErrorTag::operation_failed, "",
                needed_by + " needs the program '" + name + "': install the package " + package);
}

std::string find_program(const std::string &name, const std::string &package, const std::string &needed_by) {
    std::vector<std::string> directories;
    const char *path = std::getenv("PATH");
    std::istringstream words(path != nullptr ? path : "");
    for (std::string word; std::getline(words, word, ':');)
        if (word.starts_with('/')) // root must not run programs from the working directory
            directories.push_back(word);
    directories.insert(directories.end(), {"/usr/sbin", "/usr/bin", "/sbin", "/bin"});
    return find_program(name, package, needed_by, directories);
}

} // namespace yfw
