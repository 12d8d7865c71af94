#include "committing_process.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <system_error>

#include <sys/wait.h>
#include <unistd.h>

namespace yfw::commits::test {
namespace {

[[noreturn]] void run_child(const std::function<void(const CommittingProcess::Report &)> &body, int reports) {
    int status = 0;
    try {
        body([reports](int64_t number) {
            if (write(reports, &number, sizeof number) != sizeof number)
                _exit(2);
        });
    } catch (...) {
        status = 1;
    }
    _exit(status); // skips the parent's exit handlers
}

} // namespace

CommittingProcess::CommittingProcess(const std::function<void(const Report &report)> &body) {
    std::array<int, 2> ends{};
    if (pipe(ends.data()) != 0)
        throw std::system_error(errno, std::generic_category(), "pipe");
    child_ = fork();
    if (child_ < 0)
        throw std::system_error(errno, std::generic_category(), "fork");
    if (child_ == 0) {
        close(ends[0]);
        run_child(body, ends[1]);
    }
    close(ends[1]);
    reports_ = ends[0];
}

CommittingProcess::~CommittingProcess() {
    kill();
    wait();
    close(reports_);
}

void CommittingProcess::kill() {
    if (child_ > 0)
        ::kill(child_, SIGKILL);
}

int CommittingProcess::wait() {
    int status = 0;
    while (child_ > 0 && waitpid(child_, &status, 0) < 0 && errno == EINTR) {
    }
    child_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

std::vector<int64_t> CommittingProcess::reported() {
    std::vector<int64_t> numbers;
    for (int64_t number = 0; read(reports_, &number, sizeof number) == sizeof number;)
        numbers.push_back(number);
    return numbers;
}

} // namespace yfw::commits::test
