#include "base/process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <sstream>
#include <stdexcept>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>

#include "base/descriptor.h"
#include "base/error.h"

namespace yfw {
namespace {

using Clock = std::chrono::steady_clock;

struct Pipe {
    Descriptor read_end;
    Descriptor write_end;

    Pipe() {
        std::array<int, 2> ends{};
        if (::pipe2(ends.data(), O_CLOEXEC) != 0)
            throw std::runtime_error(std::string("no pipe can be made: ") + std::strerror(errno));
        read_end = Descriptor(ends[0]);
        write_end = Descriptor(ends[1]);
    }
};

// Resets signals to a new program's defaults, whatever this one has changed.
void set_attributes(posix_spawnattr_t &attributes) {
    sigset_t all, none;
    sigfillset(&all);
    sigemptyset(&none);
    posix_spawnattr_setflags(&attributes,
                             POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setpgroup(&attributes, 0);
    posix_spawnattr_setsigdefault(&attributes, &all);
    posix_spawnattr_setsigmask(&attributes, &none);
}

pid_t start(const std::vector<std::string> &arguments, const Pipe &output, const Pipe &errors, int inherited) {
    constexpr int kept = 3; // dup2 creates a copy without close-on-exec
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_adddup2(&actions, output.write_end.get(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, errors.write_end.get(), STDERR_FILENO);
    if (inherited >= 0)
        posix_spawn_file_actions_adddup2(&actions, inherited, kept);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    set_attributes(attributes);
    std::vector<std::string> copies = arguments;
    std::vector<char *> pointers;
    for (std::string &copy : copies)
        pointers.push_back(copy.data());
    pointers.push_back(nullptr);
    pid_t child = -1;
    const int error = ::posix_spawn(&child, pointers[0], &actions, &attributes, pointers.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error != 0)
        throw std::runtime_error(arguments[0] + ": cannot be started: " + std::strerror(error));
    return child;
}

// Appends the available bytes; false at the end of the stream.
bool append(int descriptor, std::string &text) {
    std::array<char, 1 << 16> buffer;
    const ssize_t count = ::read(descriptor, buffer.data(), buffer.size());
    if (count > 0)
        text.append(buffer.data(), static_cast<size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

// Reads both streams to their ends; false on timeout.
bool collect(const Pipe &output, const Pipe &errors, Finished &finished, Clock::time_point deadline) {
    std::array<pollfd, 2> open{{{output.read_end.get(), POLLIN, 0}, {errors.read_end.get(), POLLIN, 0}}};
    const std::array<std::string *, 2> texts{&finished.output, &finished.errors};
    while (open[0].fd >= 0 || open[1].fd >= 0) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return false;
        if (::poll(open.data(), open.size(), static_cast<int>(left)) < 0)
            continue; // interrupted by a signal: retry with the remaining time
        for (size_t i = 0; i < open.size(); ++i)
            if (open[i].fd >= 0 && open[i].revents != 0 && !append(open[i].fd, *texts[i]))
                open[i].fd = -1; // poll ignores it
    }
    return true;
}

} // namespace

std::string Finished::reason() const {
    if (const std::string line = errors.substr(0, errors.find('\n')); !line.empty())
        return line;
    return "exit status " + std::to_string(status);
}

Finished run(const std::vector<std::string> &arguments, int inherited, std::chrono::milliseconds limit) {
    Pipe output, errors;
    const pid_t child = start(arguments, output, errors, inherited);
    output.write_end.close();
    errors.write_end.close();
    Finished finished;
    const bool ended = collect(output, errors, finished, Clock::now() + limit);
    if (!ended)
        ::kill(child, SIGKILL);
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!ended)
        throw std::runtime_error(arguments[0] + ": was ended, it took longer than " +
                                 std::to_string(limit.count()) + " ms");
    finished.status = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
    return finished;
}

std::string find_program(const std::string &name, const std::string &package,
                         const std::vector<std::string> &directories) {
    for (const std::string &directory : directories)
        if (const std::string path = directory + "/" + name; ::access(path.c_str(), X_OK) == 0)
            return path;
    throw Error(ErrorTag::operation_failed, "",
                "the laboratory needs the program '" + name + "': install the package " + package);
}

std::string find_program(const std::string &name, const std::string &package) {
    std::vector<std::string> directories;
    const char *path = std::getenv("PATH");
    std::istringstream words(path != nullptr ? path : "");
    for (std::string word; std::getline(words, word, ':');)
        if (word.starts_with('/')) // root must not run programs from the working directory
            directories.push_back(word);
    directories.insert(directories.end(), {"/usr/sbin", "/usr/bin", "/sbin", "/bin"});
    return find_program(name, package, directories);
}

} // namespace yfw
