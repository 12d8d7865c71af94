#include "frontends/cli/output/progress.h"

#include <csignal>
#include <utility>

#include "base/status_line.h"

namespace yfw::cli {
namespace {

using namespace std::chrono_literals;

constexpr auto silence = 1s;
constexpr auto pause = 250ms;

} // namespace

Progress::Progress(std::string what) : what_(std::move(what)) {
    if (!has_status_line())
        return;
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { run(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

Progress::~Progress() {
    if (!thread_.joinable())
        return;
    {
        const std::lock_guard guard(lock_);
        has_ended_ = true;
    }
    ended_.notify_all();
    thread_.join();
    clear_status();
}

void Progress::now(std::string what) {
    const std::lock_guard guard(lock_);
    what_ = std::move(what);
}

void Progress::run() {
    std::unique_lock guard(lock_);
    const auto has_ended = [this] { return has_ended_; };
    for (auto wait = std::chrono::milliseconds(silence); !ended_.wait_for(guard, wait, has_ended);
         wait = pause) {
        const auto passed =
            std::chrono::duration_cast<std::chrono::seconds>(std::chrono::steady_clock::now() - begin_);
        show_status(what_ + " (" + std::to_string(passed.count()) + " s)");
    }
}

} // namespace yfw::cli
