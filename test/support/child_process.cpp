#include "support/child_process.h"

#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "support/program_process.h"

namespace yfw::test {
namespace {

using Clock = std::chrono::steady_clock;
constexpr std::chrono::minutes longest_run{2};

void check(int error, const char *what) {
    if (error != 0)
        throw std::system_error(error, std::generic_category(), what);
}

class Descriptor {
public:
    explicit Descriptor(int fd = -1) : fd_(fd) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    void reset(int fd) {
        close();
        fd_ = fd;
    }
    void close() {
        if (fd_ >= 0)
            ::close(fd_);
        fd_ = -1;
    }
    int get() const { return fd_; }

private:
    int fd_;
};

struct Pipe {
    Descriptor read_end;
    Descriptor write_end;

    Pipe() {
        std::array<int, 2> ends{};
        if (pipe2(ends.data(), O_CLOEXEC) != 0)
            check(errno, "pipe2");
        read_end.reset(ends[0]);
        write_end.reset(ends[1]);
    }
};

bool is_setting_of(const char *entry, const char *name) {
    const std::size_t length = std::strlen(name);
    return std::strncmp(entry, name, length) == 0 && entry[length] == '=';
}

// The test's own environment with the zone of the invocation and plain messages.
std::vector<std::string> environment(const Invocation &invocation) {
    std::vector<std::string> result{"TZ=" + invocation.timezone, "LC_ALL=C"};
    for (char **entry = environ; *entry != nullptr; ++entry)
        if (!is_setting_of(*entry, "TZ") && !is_setting_of(*entry, "LC_ALL"))
            result.emplace_back(*entry);
    return result;
}

// The third pipe is held open by the child for as long as it lives: its end is the child's end.
constexpr int life_descriptor = 3;

struct Streams {
    Pipe output;
    Pipe errors;
    Pipe life;

    void close_write_ends() {
        output.write_end.close();
        errors.write_end.close();
        life.write_end.close();
    }
};

pid_t start(const Invocation &invocation, Streams &streams) {
    FileActions actions;
    actions.open(STDIN_FILENO, "/dev/null", O_WRONLY);
    if (invocation.output_device.empty())
        actions.duplicate(streams.output.write_end.get(), STDOUT_FILENO);
    else
        actions.open(STDOUT_FILENO, invocation.output_device, O_WRONLY);
    actions.duplicate(streams.errors.write_end.get(), STDERR_FILENO);
    actions.duplicate(streams.life.write_end.get(), life_descriptor);
    if (!invocation.working_directory.empty())
        actions.change_directory(invocation.working_directory);
    return start_program(invocation.arguments, actions, environment(invocation));
}

// Appends what can be read now; false at the end of the stream.
bool append(int fd, std::string &text) {
    std::array<char, 65536> buffer{};
    const ssize_t count = read(fd, buffer.data(), buffer.size());
    if (count > 0)
        text.append(buffer.data(), static_cast<std::size_t>(count));
    return count > 0 || (count < 0 && errno == EINTR);
}

// Reads until the child is gone and its output is read to the end; false when it took too long.
bool collect(Streams &streams, Outcome &outcome) {
    std::string nothing;
    std::array<pollfd, 3> open{{{streams.output.read_end.get(), POLLIN, 0},
                                {streams.errors.read_end.get(), POLLIN, 0},
                                {streams.life.read_end.get(), POLLIN, 0}}};
    const std::array<std::string *, 3> texts{&outcome.output, &outcome.errors, &nothing};
    const auto deadline = Clock::now() + longest_run;
    for (std::size_t left = open.size(); left > 0;) {
        const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        if (rest.count() <= 0)
            return false;
        if (poll(open.data(), open.size(), static_cast<int>(rest.count())) < 0 && errno != EINTR)
            check(errno, "poll");
        for (std::size_t i = 0; i < open.size(); ++i) {
            if (open[i].fd < 0 || open[i].revents == 0 || append(open[i].fd, *texts[i]))
                continue;
            open[i].fd = -1; // poll passes over it
            --left;
        }
    }
    return true;
}

} // namespace

Outcome run_yfw(const Invocation &invocation) {
    Streams streams;
    const pid_t child = start(invocation, streams);
    streams.close_write_ends();
    Outcome outcome;
    const bool ended = collect(streams, outcome);
    if (!ended)
        kill(child, SIGKILL);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!ended)
        throw std::runtime_error("the program was still running after two minutes and was killed");
    outcome.status = exit_status_of(status);
    return outcome;
}

} // namespace yfw::test
