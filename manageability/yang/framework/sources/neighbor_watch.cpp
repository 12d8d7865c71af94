#include "sources/neighbor_watch.h"

#include <poll.h>

namespace yfw::sources {

bool stops_within(int stop, int milliseconds) {
    pollfd waited{stop, POLLIN, 0};
    return poll(&waited, 1, milliseconds) > 0;
}

} // namespace yfw::sources
