// What a command is doing, for commands that take long.
#ifndef YFW_FRONTENDS_CLI_OUTPUT_PROGRESS_H
#define YFW_FRONTENDS_CLI_OUTPUT_PROGRESS_H

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace yfw::cli {

// From a second after it was made until it ends, shows a line with the seconds on standard error if that is a
// terminal, and nothing elsewhere. It has a thread then, which takes no signals: no program may be started
// meanwhile that must not inherit one.
class Progress {
public:
    explicit Progress(std::string what);
    ~Progress();
    Progress(const Progress &) = delete;
    Progress &operator=(const Progress &) = delete;

    void now(std::string what);

private:
    void run();

    std::mutex lock_;
    std::condition_variable ended_;
    bool has_ended_ = false;
    std::string what_;
    const std::chrono::steady_clock::time_point begin_ = std::chrono::steady_clock::now();
    std::thread thread_;
};

} // namespace yfw::cli

#endif
