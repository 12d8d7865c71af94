#include "base/process.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>

#include "base/system_error.h"

namespace yfw {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int unknown_status = -1;

// Blocks signals meanwhile: until it executes the program, the child still has this process's handlers.
class BlockedSignals {
public:
    BlockedSignals() {
        sigset_t all;
        sigfillset(&all);
        ::pthread_sigmask(SIG_SETMASK, &all, &before_);
    }
    ~BlockedSignals() { ::pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
    BlockedSignals(const BlockedSignals &) = delete;
    BlockedSignals &operator=(const BlockedSignals &) = delete;

private:
    sigset_t before_{};
};

void reset_signals() {
    for (int number = 1; number < NSIG; ++number)
        ::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::pthread_sigmask(SIG_SETMASK, &none, nullptr);
}

std::vector<char *> pointers_to(std::vector<std::string> &texts) {
    std::vector<char *> pointers;
    for (std::string &text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

// Prepares everything beforehand: the child shares this process's memory and must leave it as it is. It must
// not allocate, either: it has no other thread that could release a lock.
class Start {
public:
    Start(const Program &program, int failure_end, pid_t parent)
        : program_(program), arguments_(program.arguments), environment_(program.environment),
          argument_pointers_(pointers_to(arguments_)), environment_pointers_(pointers_to(environment_)),
          failure_end_(failure_end), parent_(parent) {}

    // Runs in the child. Returns only on failure, which it has reported to the parent.
    int become_program() {
        failure_end_ = out_of_the_way(failure_end_);
        if (join_surroundings() && place_descriptors())
            execute();
        const int reason = errno;
        write_all(failure_end_, {reinterpret_cast<const char *>(&reason), sizeof reason});
        return EXIT_FAILURE;
    }

private:
    // Duplicates the descriptor above the numbers that the program's own descriptors get.
    static int out_of_the_way(int descriptor) {
        return ::fcntl(descriptor, F_DUPFD_CLOEXEC, first_other_descriptor);
    }

    bool join_surroundings() const {
        if (program_.in_own_group)
            ::setpgid(0, 0);
        if (program_.ends_with_parent) {
            ::prctl(PR_SET_PDEATHSIG, SIGTERM);
            if (::getppid() != parent_)
                ::_exit(EXIT_FAILURE);
        }
        reset_signals();
        return program_.directory.empty() || ::chdir(program_.directory.c_str()) == 0;
    }

    bool place_descriptors() const {
        const int nothing = ::open("/dev/null", O_RDWR | O_CLOEXEC);
        std::array<int, first_other_descriptor> wanted{program_.input, program_.output, program_.errors,
                                                       program_.inherited};
        for (size_t number = 0; number < wanted.size(); ++number) {
            const bool is_stream = number <= STDERR_FILENO;
            if (wanted[number] < 0 && !is_stream)
                continue;
            wanted[number] = out_of_the_way(wanted[number] < 0 ? nothing : wanted[number]);
            if (wanted[number] < 0)
                return false;
        }
        for (size_t number = 0; number < wanted.size(); ++number)
            if (wanted[number] >= 0 && ::dup2(wanted[number], static_cast<int>(number)) < 0)
                return false;
        return true;
    }

    void execute() {
        char **const environment = environment_.empty() ? environ : environment_pointers_.data();
        if (arguments_[0].find('/') != std::string::npos)
            ::execve(argument_pointers_[0], argument_pointers_.data(), environment);
        else
            ::execvpe(argument_pointers_[0], argument_pointers_.data(), environment);
    }

    static constexpr int first_other_descriptor = 4;

    const Program &program_;
    std::vector<std::string> arguments_;
    std::vector<std::string> environment_;
    std::vector<char *> argument_pointers_;
    std::vector<char *> environment_pointers_;
    int failure_end_;
    pid_t parent_;
};

// The child shares this process's memory until it becomes the program: copying the page tables of a large
// process, and freeing them, takes longer than many a program. Returns what fork() does.
pid_t started(Start &start) {
    const pid_t number = ::vfork();
    if (number == 0)
        ::_exit(start.become_program());
    return number;
}

pid_t require_created(pid_t number) {
    if (number < 0)
        throw std::runtime_error("cannot create a process: " + system_error_text());
    return number;
}

int status_from(int told) {
    return WIFEXITED(told) ? WEXITSTATUS(told) : 128 + WTERMSIG(told);
}

} // namespace

NotStarted::NotStarted(const std::string &program, int reason)
    : std::runtime_error(program + ": cannot be started: " + system_error_text(reason)), reason_(reason) {}

Process::Process(pid_t number)
    : number_(number), handle_(static_cast<int>(::syscall(SYS_pidfd_open, number, 0))) {
    if (handle_.is_open() || errno == ESRCH) // it has already ended without leaving a status
        return;
    const int reason = errno;
    kill();
    throw std::runtime_error("cannot create a process: " + system_error_text(reason));
}

Process Process::copy(const std::function<int()> &body) {
    const pid_t number = require_created(::fork());
    if (number > 0)
        return Process(number);
    int status = EXIT_FAILURE;
    try {
        status = body();
    } catch (...) { // the body reports its own failures
    }
    ::_exit(status); // skips the parent's exit handlers
}

Process::Process(const Program &program) {
    Pipe failure;
    Start start(program, failure.write_end.get(), ::getpid());
    {
        const BlockedSignals blocked;
        *this = Process(require_created(started(start)));
    }
    failure.write_end.close();
    std::string reason;
    while (append_from(failure.read_end.get(), reason)) {
    }
    if (reason.empty()) // exec closed the pipe
        return;
    kill();
    int error = 0;
    reason.copy(reinterpret_cast<char *>(&error), sizeof error);
    throw NotStarted(program.arguments[0], error);
}

Process::~Process() {
    kill();
}

Process &Process::operator=(Process &&other) noexcept {
    std::swap(number_, other.number_);
    std::swap(handle_, other.handle_);
    std::swap(status_, other.status_);
    return *this;
}

bool Process::runs() {
    if (number_ < 0 || status_.has_value())
        return false;
    int told = 0;
    const pid_t ended = ::waitpid(number_, &told, WNOHANG);
    if (ended == number_)
        status_ = status_from(told);
    else if (ended < 0 && errno == ECHILD)
        status_ = unknown_status;
    return !status_.has_value();
}

void Process::signal(int number) const {
    if (number_ > 0 && !status_.has_value())
        ::kill(number_, number);
}

std::optional<int> Process::wait(std::chrono::milliseconds limit) {
    const auto deadline = Clock::now() + limit;
    while (runs()) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
        if (left <= 0)
            return std::nullopt;
        pollfd end{handle_.get(), POLLIN, 0};
        ::poll(&end, 1, static_cast<int>(std::min<int64_t>(left, INT_MAX)));
    }
    return status_.value_or(unknown_status);
}

int Process::end(std::chrono::milliseconds patience) {
    signal(SIGTERM);
    wait(patience);
    return kill();
}

int Process::kill() {
    if (!runs())
        return status_.value_or(unknown_status);
    signal(SIGKILL);
    int told = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(number_, &told, 0)) < 0 && errno == EINTR) {
    }
    status_ = ended == number_ ? status_from(told) : unknown_status;
    return *status_;
}

pid_t Process::release() {
    handle_.close();
    return std::exchange(number_, -1);
}

} // namespace yfw
