#include <array>
#include <cerrno>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <semaphore>
#include <system_error>

#include <fcntl.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include "frontends/netconf/filters/xpath_evaluation.h"

namespace yfw::netconf {
namespace {

constexpr std::ptrdiff_t most_at_once = 2;
constexpr rlim_t most_processor_seconds = 2;
// How long to wait for the child; generous, since the machine may be busy.
constexpr int most_milliseconds = 30000;

// Owns one end of a pipe.
class End {
public:
    explicit End(int descriptor) : descriptor_(descriptor) {}
    ~End() { close_now(); }
    End(const End &) = delete;
    End &operator=(const End &) = delete;

    int get() const { return descriptor_; }
    void close_now() {
        if (descriptor_ >= 0)
            close(descriptor_);
        descriptor_ = -1;
    }

private:
    int descriptor_;
};

bool write_all(int to, const void *what, size_t size) {
    const char *at = static_cast<const char *>(what);
    while (size > 0) {
        const ssize_t written = write(to, at, size);
        if (written < 0)
            return false;
        at += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

bool write_result(int to, const XPathResult &result) {
    const std::array<uint32_t, 3> head{static_cast<uint32_t>(result.status),
                                       static_cast<uint32_t>(result.selected.size()),
                                       static_cast<uint32_t>(result.why.size())};
    return write_all(to, head.data(), sizeof head) &&
           write_all(to, result.selected.data(), result.selected.size() * sizeof result.selected[0]) &&
           write_all(to, result.why.data(), result.why.size());
}

// Nothing when the child ended before writing its whole result.
std::string read_until_closed(int from) {
    std::string bytes;
    std::array<char, 65536> part{};
    pollfd ready{from, POLLIN, 0};
    while (poll(&ready, 1, most_milliseconds) > 0) {
        const ssize_t count = read(from, part.data(), part.size());
        if (count == 0)
            return bytes;
        if (count < 0)
            break;
        bytes.append(part.data(), static_cast<size_t>(count));
    }
    return "";
}

XPathResult result_from(const std::string &bytes) {
    std::array<uint32_t, 3> head{};
    const XPathResult cut_off{XPathStatus::beyond_budget, {}, {}};
    if (bytes.size() < sizeof head)
        return cut_off;
    std::memcpy(head.data(), bytes.data(), sizeof head);
    XPathResult result{static_cast<XPathStatus>(head[0]), std::vector<uint32_t>(head[1]), {}};
    const size_t selected = head[1] * sizeof(uint32_t);
    if (bytes.size() != sizeof head + selected + head[2])
        return cut_off;
    if (selected > 0)
        std::memcpy(result.selected.data(), bytes.data() + sizeof head, selected);
    result.why = bytes.substr(sizeof head + selected);
    return result;
}

// The child inherits the blocked signals of the forking thread, so the limit has to kill with a signal that
// cannot be blocked.
void limit_this_process() {
    prctl(PR_SET_PDEATHSIG, SIGKILL); // nobody would wait for the child any more
    const rlimit processor{most_processor_seconds, most_processor_seconds};
    setrlimit(RLIMIT_CPU, &processor);
    const rlimit none{0, 0};
    setrlimit(RLIMIT_CORE, &none);
}

// The child has only this thread and a copy of the memory, so the document need not be sent to it. It closes
// the sessions' descriptors at once, so that a peer's hang-up is not delayed.
XPathResult evaluate_in_copy(const XPathDocument &document, const std::string &expression,
                             const Prefixes &prefixes, const XPathBudget &budget) {
    std::array<int, 2> pipe_ends{};
    if (pipe2(pipe_ends.data(), O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    End reading(pipe_ends[0]);
    End writing(pipe_ends[1]);
    const pid_t child = fork();
    if (child < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child == 0) {
        dup2(writing.get(), STDIN_FILENO);
        close_range(STDERR_FILENO + 1, ~0U, 0);
        limit_this_process();
        const bool told = write_result(STDIN_FILENO, evaluate_xpath(document, expression, prefixes, budget));
        _exit(told ? 0 : 1);
    }
    writing.close_now();
    const std::string said = read_until_closed(reading.get());
    kill(child, SIGKILL); // in case it is still running: its result is no longer wanted
    while (waitpid(child, nullptr, 0) < 0 && errno == EINTR) {
    }
    return result_from(said);
}

// A worker thread waits for each evaluation; the limit leaves the others to cheaper requests.
std::counting_semaphore<> evaluations_left{most_at_once};

class Turn {
public:
    Turn() : is_ours_(evaluations_left.try_acquire()) {}
    ~Turn() {
        if (is_ours_)
            evaluations_left.release();
    }
    Turn(const Turn &) = delete;
    Turn &operator=(const Turn &) = delete;

    bool is_ours() const { return is_ours_; }

private:
    bool is_ours_;
};

} // namespace

XPathResult evaluate_xpath_apart(const XPathDocument &document, const std::string &expression,
                                 const Prefixes &prefixes, const XPathBudget &budget) {
    const Turn turn;
    if (!turn.is_ours())
        return {XPathStatus::busy, {}, {}};
    return evaluate_in_copy(document, expression, prefixes, budget);
}

} // namespace yfw::netconf
