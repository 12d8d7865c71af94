// Neighbors as they come and go.
#ifndef YFW_SOURCES_NEIGHBOR_WATCH_H
#define YFW_SOURCES_NEIGHBOR_WATCH_H

#include <functional>
#include <string>

#include "yang/data_tree.h"

namespace yfw::sources {

enum class NeighborChange { added, updated, removed };

struct NeighborEvent {
    NeighborChange change = NeighborChange::added;
    yang::DataTree data; // native operational data of this neighbor alone
};

// A stream of changes of a device's neighbors.
class NeighborWatch {
public:
    virtual ~NeighborWatch() = default;

    struct Listener {
        std::function<void(NeighborEvent)> event;
        // The device cannot be reached any more, and why; the watch goes on trying.
        std::function<void(const std::string &)> lost;
        // It is back; it may have forgotten what it was configured with.
        std::function<void()> back;
    };

    // Calls the listener until `stop`, a descriptor, becomes readable. Throws Error when the device
    // cannot be reached in the first place. Data is made in `context`.
    virtual void run(const ly_ctx *context, int stop, const Listener &listener) = 0;
};

// Whether the descriptor becomes readable within the time.
bool stops_within(int stop, int milliseconds);

} // namespace yfw::sources

#endif
