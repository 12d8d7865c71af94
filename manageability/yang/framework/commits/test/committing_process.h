// A child process that commits, and tells its parent what it has committed.
#ifndef COMMITS_TEST_COMMITTING_PROCESS_H
#define COMMITS_TEST_COMMITTING_PROCESS_H

#include <cstdint>
#include <functional>
#include <vector>

#include <sys/types.h>

namespace yfw::commits::test {

// Ends the child, should it still run, with the object.
class CommittingProcess {
public:
    // Called by the child for every commit that it was told is kept.
    using Report = std::function<void(int64_t number)>;

    // Runs `body` in a child process. It exits with 0 when the body returns and with 1 when it throws.
    explicit CommittingProcess(const std::function<void(const Report &report)> &body);
    ~CommittingProcess();
    CommittingProcess(const CommittingProcess &) = delete;
    CommittingProcess &operator=(const CommittingProcess &) = delete;

    void kill();

    // Waits for the end. The exit status, or 128 and the signal that ended it.
    int wait();

    // What the child has reported until its end; to be called once, after wait().
    std::vector<int64_t> reported();

private:
    pid_t child_ = -1;
    int reports_ = -1;
};

} // namespace yfw::commits::test

#endif
