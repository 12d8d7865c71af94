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
// remains afterwards is left alone until it changes. Borrows the service. The destructor ends the thread and
// waits for it.
class DriftKeeper {
public:
    using PutRight = std::function<void(const std::vector<std::string> &paths)>;

    // Both are called on that thread. `say` takes messages for the server's operator; `on_put_right` the paths
    // of the leaves, see Drift, that the device has again as they are configured.
    DriftKeeper(Service &service, std::chrono::milliseconds interval,
                std::function<void(const std::string &)> say, PutRight on_put_right);
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
    PutRight on_put_right_;
    std::vector<Drift> left_; // what applying the commit did not change
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
