// Keeps a device that may be restarted at its configuration.
#ifndef YFW_DEVICE_KEEPER_H
#define YFW_DEVICE_KEEPER_H

#include <functional>
#include <string>
#include <thread>

#include "device/managed_device.h"

namespace yfw::device {

// While it lives, a thread of its own gives the device its last commit again whenever it was away, and passes
// on the changes of neighbors that the device tells. Does nothing for a device that tells no changes. Borrows
// the device.
class Keeper {
public:
    // Both are called by that thread; `say` with what whoever runs the server has to know.
    Keeper(ManagedDevice &device, std::function<void(sources::NeighborEvent)> on_neighbor,
           std::function<void(const std::string &)> say);
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
    int stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
