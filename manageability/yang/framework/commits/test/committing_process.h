// A child process that makes commits and reports them to its parent.
#ifndef COMMITS_TEST_COMMITTING_PROCESS_H
#define COMMITS_TEST_COMMITTING_PROCESS_H

#include <cstdint>
#include <functional>
#include <vector>

#include <sys/types.h>

namespace yfw::commits::test {

// Kills the child, if still running, on destruction.
class CommittingProcess {
public:
    // The child calls this for every commit that was reported as stored.
    using Report = std::function<void(int64_t number)>;

    // Runs `body` in a child process, which exits with 0 when it returns and 1 when it throws.
    explicit CommittingProcess(const std::function<void(const Report &report)> &body);
    ~CommittingProcess();
    CommittingProcess(const CommittingProcess &) = delete;
    CommittingProcess &operator=(const CommittingProcess &) = delete;

    void kill();

    // Waits for the child. Returns its exit status, or 128 plus the signal that killed it.
    int wait();

    // Everything the child reported; call once, after wait().
    std::vector<int64_t> reported();

private:
    pid_t child_ = -1;
    int reports_ = -1;
};

} // namespace yfw::commits::test

#endif
