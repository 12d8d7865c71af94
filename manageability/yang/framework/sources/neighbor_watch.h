// Watches neighbors come and go.
#ifndef YFW_SOURCES_NEIGHBOR_WATCH_H
#define YFW_SOURCES_NEIGHBOR_WATCH_H

#include <functional>
#include <string>

#include "yang/data_tree.h"

namespace yfw::sources {

enum class NeighborChange { added, updated, removed };

struct NeighborEvent {
    NeighborChange change = NeighborChange::added;
    yang::DataTree data; // native operational data of this neighbor only
};

// A stream of changes to a device's neighbors.
class NeighborWatch {
public:
    virtual ~NeighborWatch() = default;

    struct Listener {
        std::function<void(NeighborEvent)> event;
        // The device has become unreachable, with the reason; the watch keeps trying.
        std::function<void(const std::string &)> lost;
        // The device is back; it may have lost its configuration.
        std::function<void()> back;
    };

    // Calls the listener, on the calling thread, until the descriptor `stop` becomes readable. Throws Error
    // when the device is unreachable at the start. Data is created in `context`. One call at a time.
    virtual void run(const ly_ctx *context, int stop, const Listener &listener) = 0;
};

// Whether the descriptor becomes readable within that time.
bool stops_within(int stop, int milliseconds);

} // namespace yfw::sources

#endif
