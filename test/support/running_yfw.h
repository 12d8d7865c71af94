// The program while it runs, for tests that read its lines.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "base/process.h"
#include "support/files.h"

namespace yfw::test {

/// `yfw` while it runs, its lines as they come. Killed with the object.
class RunningYfw {
public:
    explicit RunningYfw(const std::vector<std::string> &arguments);

    /// Waits for a whole line on standard output, after those that were found before, that holds all the words.
    /// Nothing when none came in time or the program ended.
    std::optional<std::string> line_with(const std::vector<std::string> &words,
                                         std::chrono::milliseconds limit = std::chrono::seconds(20));
    /// What it printed so far.
    std::string output();
    std::string errors();
    void signal(int number) const { process_.signal(number); }
    bool runs() { return process_.runs(); }
    /// The exit status, 128 + the signal that ended it; nothing when it still runs after the time.
    std::optional<int> wait(std::chrono::milliseconds limit = std::chrono::seconds(10)) {
        return process_.wait(limit);
    }

private:
    TemporaryDirectory files_; // its standard output and error
    Process process_;
    size_t seen_ = 0; // bytes of the output up to the end of the line found last
};

} // namespace yfw::test
