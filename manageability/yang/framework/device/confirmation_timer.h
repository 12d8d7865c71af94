// Rolls an unconfirmed commit back when its time is over.
#ifndef YFW_DEVICE_CONFIRMATION_TIMER_H
#define YFW_DEVICE_CONFIRMATION_TIMER_H

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "device/service.h"

namespace yfw::device {

// Runs a thread that waits for the deadline of the datastores, for front ends without an event loop. Several
// timers of one service do no harm. Borrows the service. The destructor ends the thread and waits for it.
class ConfirmationTimer final : private events::Observer {
public:
    // `say`: takes messages for the server's operator, also on the timer's thread.
    ConfirmationTimer(Service &service, std::function<void(const std::string &)> say);
    ~ConfirmationTimer() override;
    ConfirmationTimer(const ConfirmationTimer &) = delete;
    ConfirmationTimer &operator=(const ConfirmationTimer &) = delete;

private:
    void changed(const events::ConfigurationChange &) override {}
    void changed(const events::ConfirmedCommit &commit) override;
    void wait();
    void take_back();

    Service &service_;
    std::function<void(const std::string &)> say_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::chrono::steady_clock::time_point next_look_ = std::chrono::steady_clock::time_point::max();
    bool ends_ = false;
    std::thread thread_;
};

} // namespace yfw::device

#endif
