// Puts right what has been changed on a device by other means.
#ifndef YFW_DEVICE_DRIFT_KEEPER_H
#define YFW_DEVICE_DRIFT_KEEPER_H

#include <chrono>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/wakeup.h"
#include "device/service.h"

namespace yfw::device {

// Runs a thread that looks for drift at intervals and applies the last commit again when there is some. What
// remains afterwards is left alone until it changes. Observers of the service's events are told of a
// configuration change by the server that names the leaves. Borrows the service. The destructor ends the thread
// and waits for it.
class DriftKeeper {
public:
    // `say` takes messages for the server's operator; it is called on that thread.
    DriftKeeper(Service &service, std::chrono::milliseconds interval,
                std::function<void(const std::string &)> say);
    ~DriftKeeper();
    DriftKeeper(const DriftKeeper &) = delete;
    DriftKeeper &operator=(const DriftKeeper &) = delete;

private:
    void keep();
    void put_right();
    std::vector<Drift> reparable();

    Service &service_;
    std::chrono::milliseconds interval_;
    std::function<void(const std::string &)> say_;
    std::vector<Drift> left_; // what applying the commit did not change
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
