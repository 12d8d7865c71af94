#include "sources/lldpd/discoveries.h"

#include <algorithm>

#include "sources/lldpd/neighbor_ids.h"

namespace yfw::sources::lldpd {
namespace {

void set_age(Neighbor &neighbor, uint64_t discovered_at) {
    neighbor.age = *neighbor.last_update + (*neighbor.changed_at - discovered_at);
}

bool is_dated(const Neighbor &neighbor) {
    return neighbor.changed_at.has_value() && neighbor.last_update.has_value();
}

} // namespace

void Discoveries::date(std::vector<Port> &ports) {
    const std::lock_guard<std::mutex> lock(mutex_);
    std::map<Key, uint64_t> there;
    for (Port &port : ports)
        for (Neighbor &neighbor : port.neighbors) {
            if (!is_dated(neighbor))
                continue;
            Key key(port.name, msap(neighbor));
            const auto known = discovered_at_.find(key);
            const uint64_t since = known != discovered_at_.end() ? std::min(known->second, *neighbor.changed_at)
                                                                 : *neighbor.changed_at;
            set_age(neighbor, since);
            there.emplace(std::move(key), since);
        }
    discovered_at_ = std::move(there);
}

void Discoveries::date(const std::string &interface, Neighbor &neighbor) {
    if (!is_dated(neighbor))
        return;
    const std::lock_guard<std::mutex> lock(mutex_);
    uint64_t &since =
        discovered_at_.try_emplace({interface, msap(neighbor)}, *neighbor.changed_at).first->second;
    since = std::min(since, *neighbor.changed_at);
    set_age(neighbor, since);
}

void Discoveries::forget(const std::string &interface, const Neighbor &neighbor) {
    const std::lock_guard<std::mutex> lock(mutex_);
    discovered_at_.erase({interface, msap(neighbor)});
}

} // namespace yfw::sources::lldpd
