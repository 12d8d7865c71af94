#include "device/confirmation_timer.h"

#include <algorithm>
#include <csignal>

#include "base/error.h"

namespace yfw::device {

ConfirmationTimer::ConfirmationTimer(Service &service, std::function<void(const std::string &)> say)
    : service_(service), say_(std::move(say)) {
    sigset_t all; // signals are for the main thread
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { wait(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    service_.events().add(*this);
}

ConfirmationTimer::~ConfirmationTimer() {
    service_.events().remove(*this);
    {
        const std::lock_guard<std::mutex> guard(mutex_);
        ends_ = true;
    }
    changed_.notify_all();
    thread_.join();
}

// The datastores set their deadline only after this event, so it is computed, and looked up when it has come.
void ConfirmationTimer::changed(const events::ConfirmedCommit &commit) {
    if (!commit.timeout.has_value())
        return;
    const std::lock_guard<std::mutex> guard(mutex_);
    next_look_ = std::min(next_look_, std::chrono::steady_clock::now() + *commit.timeout);
    changed_.notify_all();
}

void ConfirmationTimer::wait() {
    std::unique_lock<std::mutex> lock(mutex_);
    while (!ends_) {
        if (next_look_ == std::chrono::steady_clock::time_point::max())
            changed_.wait(lock);
        else
            changed_.wait_until(lock, next_look_);
        if (ends_ || std::chrono::steady_clock::now() < next_look_)
            continue;
        next_look_ = std::chrono::steady_clock::time_point::max();
        lock.unlock();
        take_back();
        const auto deadline = service_.datastores().deadline();
        lock.lock();
        if (deadline.has_value())
            next_look_ = std::min(next_look_, *deadline + std::chrono::milliseconds(1));
    }
}

void ConfirmationTimer::take_back() {
    try {
        service_.datastores().take_back_when_due();
    } catch (const Error &error) {
        say_(std::string("warning: an unconfirmed commit cannot be rolled back: ") + error.what());
    }
}

} // namespace yfw::device
