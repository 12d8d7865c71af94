// When neighbors were discovered.
#ifndef YFW_SOURCES_LLDPD_DISCOVERIES_H
#define YFW_SOURCES_LLDPD_DISCOVERIES_H

#include <cstdint>
#include <map>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "sources/lldpd/lldpd_state.h"

namespace yfw::sources::lldpd {

// lldpd tells only when a neighbor's announcement last changed. A neighbor has been known at least since then;
// this remembers the earliest such moment for as long as the neighbor is there. Thread-safe.
class Discoveries {
public:
    // Sets the ages of all neighbors; forgets those that are gone.
    void date(std::vector<Port> &ports);

    // The same for one neighbor, or for one that is gone.
    void date(const std::string &interface, Neighbor &neighbor);
    void forget(const std::string &interface, const Neighbor &neighbor);

private:
    using Key = std::pair<std::string, std::string>; // interface and neighbor

    std::mutex mutex_;
    std::map<Key, uint64_t> discovered_at_; // seconds since the epoch
};

} // namespace yfw::sources::lldpd

#endif
