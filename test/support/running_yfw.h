// Runs the program in the background, for tests that read its output as it appears.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/process.h"
#include "support/files.h"

namespace yfw::test {

/// A running `yfw`. Killed with the object.
class RunningYfw {
public:
    explicit RunningYfw(const std::vector<std::string> &arguments);

    /// Waits for a complete line on standard output that contains all the words, after the line found last.
    /// Nothing when none appears in time or the program ends.
    std::optional<std::string> line_with(const std::vector<std::string> &words,
                                         std::chrono::milliseconds limit = std::chrono::seconds(20));
    /// Its standard output so far.
    std::string output();
    std::string errors();
    void signal(int number) const { process_.signal(number); }
    pid_t number() const { return process_.number(); }
    bool runs() { return process_.runs(); }
    /// The exit status, or 128 + the signal that killed it; nothing when it is still running after the limit.
    std::optional<int> wait(std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        return process_.wait(limit);
    }

private:
    TemporaryDirectory files_; // its standard output and error
    Process process_;
    size_t seen_ = 0; // bytes of the output up to the end of the line found last
};

} // namespace yfw::test
