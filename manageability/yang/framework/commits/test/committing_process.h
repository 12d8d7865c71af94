// A child process that commits, and reports its commits to the parent.
#ifndef COMMITS_TEST_COMMITTING_PROCESS_H
#define COMMITS_TEST_COMMITTING_PROCESS_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <vector>

#include "base/descriptor.h"
#include "base/process.h"

namespace yfw::commits::test {

// The child is killed with the object if it is still running.
class CommittingProcess {
public:
    // Called by the child for every commit that the store has confirmed.
    using Report = std::function<void(int64_t number)>;

    // Runs `body` in a child process. It exits with 0 when the body returns and with 1 when it throws.
    explicit CommittingProcess(const std::function<void(const Report &report)> &body);

    void kill() { process_.kill(); }

    // Waits for the end, two minutes at the most. The exit status, or 128 and the signal that ended it; -1 when
    // it still runs.
    int wait() { return process_.wait(std::chrono::minutes(2)).value_or(-1); }

    // Everything the child has reported; call once, after wait().
    std::vector<int64_t> reported();

private:
    Process process_;
    Descriptor reports_;
};

} // namespace yfw::commits::test

#endif
