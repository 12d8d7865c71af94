// Events on their way from a device to its front ends.
#ifndef YFW_DEVICE_EVENTS_HUB_H
#define YFW_DEVICE_EVENTS_HUB_H

#include <mutex>
#include <vector>

#include "device/events/events.h"

namespace yfw::events {

// A front end that wants to be told. Called by the thread that causes the event; must not wait, nor cause
// another one.
class Observer {
public:
    virtual ~Observer() = default;
    virtual void changed(const ConfigurationChange &change) = 0;
    virtual void changed(const ConfirmedCommit &commit) = 0;
};

// Safe for several threads: observers are told of events in one order.
class Hub {
public:
    // Borrowed until it is taken out.
    void add(Observer &observer);
    void remove(Observer &observer);

    template <class Event> void tell(const Event &event) {
        const std::lock_guard<std::mutex> guard(mutex_);
        for (Observer *observer : observers_)
            observer->changed(event);
    }

private:
    std::mutex mutex_;
    std::vector<Observer *> observers_;
};

} // namespace yfw::events

#endif
