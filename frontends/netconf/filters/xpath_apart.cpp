#include <array>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <cstring>
#include <semaphore>

#include <poll.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/process.h"
#include "frontends/netconf/filters/xpath_evaluation.h"

namespace yfw::netconf {
namespace {

constexpr std::ptrdiff_t most_at_once = 2;
constexpr rlim_t most_processor_seconds = 2;
// How long to wait for the child; generous, since the machine may be busy.
constexpr std::chrono::seconds longest_wait{30};
// How soon it is noticed that nobody wants the result any more.
constexpr int milliseconds_between_looks = 50;

bool write_result(int to, const XPathResult &result) {
    const std::array<uint32_t, 3> head{static_cast<uint32_t>(result.status),
                                       static_cast<uint32_t>(result.selected.size()),
                                       static_cast<uint32_t>(result.why.size())};
    const auto bytes_of = [](const auto &numbers) {
        return std::string_view(reinterpret_cast<const char *>(numbers.data()),
                                numbers.size() * sizeof numbers[0]);
    };
    return write_all(to, bytes_of(head)) && write_all(to, bytes_of(result.selected)) &&
           write_all(to, result.why);
}

// Incomplete when the child takes too long, or ends before it has written its whole result, and when the result
// is unwanted.
std::string read_until_closed(int from, const std::atomic<bool> *is_unwanted) {
    std::string bytes;
    pollfd ready{from, POLLIN, 0};
    const auto end = std::chrono::steady_clock::now() + longest_wait;
    while (std::chrono::steady_clock::now() < end && (is_unwanted == nullptr || !is_unwanted->load())) {
        const int count = poll(&ready, 1, milliseconds_between_looks);
        if (count < 0 || (count > 0 && !append_from(from, bytes)))
            break;
    }
    return bytes;
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
                             const Prefixes &prefixes, const XPathBudget &budget,
                             const std::atomic<bool> *is_unwanted) {
    Pipe pipe;
    Process apart = Process::copy([&] {
        dup2(pipe.write_end.get(), STDIN_FILENO);
        close_range(STDERR_FILENO + 1, ~0U, 0);
        limit_this_process();
        return write_result(STDIN_FILENO, evaluate_xpath(document, expression, prefixes, budget)) ? 0 : 1;
    });
    pipe.write_end.close();
    const std::string said = read_until_closed(pipe.read_end.get(), is_unwanted);
    apart.kill(); // in case it is still running: its result is no longer wanted
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
                                 const Prefixes &prefixes, const XPathBudget &budget,
                                 const std::atomic<bool> *is_unwanted) {
    const Turn turn;
    if (!turn.is_ours())
        return {XPathStatus::busy, {}, {}};
    return evaluate_in_copy(document, expression, prefixes, budget, is_unwanted);
}

} // namespace yfw::netconf
