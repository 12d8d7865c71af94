// Distributes a device's events to its front ends.
#ifndef YFW_DEVICE_EVENTS_HUB_H
#define YFW_DEVICE_EVENTS_HUB_H

#include <mutex>
#include <vector>

#include "device/events/events.h"

namespace yfw::events {

// Implemented by front ends. Called on the thread that causes the event, one event at a time; must neither
// block, nor cause another event, nor call the hub.
class Observer {
public:
    virtual ~Observer() = default;
    virtual void changed(const ConfigurationChange &change) = 0;
    virtual void changed(const ConfirmedCommit &commit) = 0;
    virtual void state_changed() {}
};

// Any thread may call any member. All observers see events in the same order.
class Hub {
public:
    // Borrowed until removed; not called any more once remove() has returned.
    void add(Observer &observer);
    void remove(Observer &observer);

    template <class Event> void tell(const Event &event) {
        const std::lock_guard<std::mutex> guard(mutex_);
        for (Observer *observer : observers_)
            observer->changed(event);
    }

    // The device's state may have changed: a neighbor came, went or has other properties, or the device is
    // back.
    void tell_state_change() {
        const std::lock_guard<std::mutex> guard(mutex_);
        for (Observer *observer : observers_)
            observer->state_changed();
    }

private:
    std::mutex mutex_;
    std::vector<Observer *> observers_;
};

} // namespace yfw::events

#endif
