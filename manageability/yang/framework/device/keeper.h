// Restores the configuration of a device that may restart.
#ifndef YFW_DEVICE_KEEPER_H
#define YFW_DEVICE_KEEPER_H

#include <functional>
#include <string>
#include <thread>

#include "base/wakeup.h"
#include "device/managed_device.h"

namespace yfw::device {

// Runs a thread that reapplies the last commit when the device was restarted, and forwards the neighbor changes
// that the device reports. Does nothing for a device that does not report changes. Borrows the device, whose
// watch it occupies. The destructor ends the thread and waits for it.
class Keeper {
public:
    // The functions are called on the keeper's thread only; `say` takes messages for the server's operator.
    // `on_back`: the device can be reached again, and its neighbors may be others.
    Keeper(
        ManagedDevice &device, std::function<void(sources::NeighborEvent)> on_neighbor,
        std::function<void(const std::string &)> say, std::function<void()> on_back = [] {});
    ~Keeper();
    Keeper(const Keeper &) = delete;
    Keeper &operator=(const Keeper &) = delete;

private:
    void keep();
    void restore();
    void pass_on(sources::NeighborEvent event);

    ManagedDevice &device_;
    std::function<void(sources::NeighborEvent)> on_neighbor_;
    std::function<void(const std::string &)> say_;
    std::function<void()> on_back_;
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
