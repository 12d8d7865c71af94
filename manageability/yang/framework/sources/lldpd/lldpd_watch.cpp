#include "sources/lldpd/lldpd_watch.h"

#include "base/error.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/reader.h"

namespace yfw::sources::lldpd {
namespace {

constexpr int milliseconds_between_attempts = 500;

struct Heard {
    NeighborChange change;
    std::string interface;
    Neighbor neighbor;
};

NeighborChange change_of(lldpctl_change_t type) {
    switch (type) {
    case lldpctl_c_deleted:
        return NeighborChange::removed;
    case lldpctl_c_added:
        return NeighborChange::added;
    case lldpctl_c_updated:
        break;
    }
    return NeighborChange::updated;
}

// Called by lldpd's library; listeners are notified after the library call has returned.
void hear(lldpctl_change_t type, lldpctl_atom_t *interface, lldpctl_atom_t *neighbor, void *to) {
    const char *name = lldpctl_atom_get_str(interface, lldpctl_k_interface_name);
    if (name != nullptr && speaks_lldp(neighbor))
        static_cast<std::vector<Heard> *>(to)->push_back({change_of(type), name, read_neighbor(neighbor)});
}

} // namespace

void LldpdWatch::tell(NeighborChange change, const std::string &interface, const Neighbor &neighbor) const {
    listener_->event({change, neighbor_data(context_, interface, neighbor)});
}

LldpdWatch::Neighbors LldpdWatch::read_all() const {
    Neighbors neighbors;
    const Connection connection(socket_);
    for (Port &port : read_state(connection).ports)
        for (Neighbor &neighbor : port.neighbors)
            neighbors.emplace(Key{port.name, neighbor.chassis.id, neighbor.port_id}, std::move(neighbor));
    return neighbors;
}

void LldpdWatch::tell_difference(const Neighbors &now) {
    for (const auto &[key, neighbor] : known_)
        if (!now.contains(key))
            tell(NeighborChange::removed, std::get<0>(key), neighbor);
    for (const auto &[key, neighbor] : now)
        if (!known_.contains(key))
            tell(NeighborChange::added, std::get<0>(key), neighbor);
    known_ = now;
}

// The subscription starts before the first reading, so that no change is lost between the two; a neighbor seen
// by both is reported as added only once.
void LldpdWatch::changed(NeighborChange change, const std::string &interface, const Neighbor &neighbor) {
    const Key key{interface, neighbor.chassis.id, neighbor.port_id};
    const auto known = known_.find(key);
    if (change == NeighborChange::removed) {
        if (known != known_.end())
            tell(change, interface, known->second);
        known_.erase(key);
        return;
    }
    // A neighbor with a new device id is a new entry.
    const bool renamed = known != known_.end() && device_id(known->second) != device_id(neighbor);
    if (renamed)
        tell(NeighborChange::removed, interface, known->second);
    const bool is_new = known == known_.end() || renamed;
    tell(is_new ? NeighborChange::added : NeighborChange::updated, interface, neighbor);
    known_[key] = neighbor;
}

void LldpdWatch::watch_until_lost(int stop) {
    Connection subscription(socket_);
    std::vector<Heard> heard;
    if (lldpctl_watch_callback2(subscription.handle(), hear, &heard) != 0)
        subscription.fail("subscribing to changes");
    if (established_)
        tell_difference(read_all());
    else
        known_ = read_all();
    established_ = true;
    subscription.interrupt_by(stop);
    subscription.wait_without_bound();
    for (;;) {
        const int status = lldpctl_watch(subscription.handle());
        for (const Heard &one : heard)
            changed(one.change, one.interface, one.neighbor);
        heard.clear();
        if (subscription.interrupted())
            return;
        if (status < 0)
            subscription.fail("waiting for changes");
    }
}

void LldpdWatch::run(const ly_ctx *context, int stop, const Listener &listener) {
    context_ = context;
    listener_ = &listener;
    bool lost = false;
    while (!stops_within(stop, lost ? milliseconds_between_attempts : 0)) {
        try {
            if (lost) {
                read_settings(Connection(socket_)); // throws while the daemon is away
                listener.back();
                lost = false;
            }
            watch_until_lost(stop);
        } catch (const Error &error) {
            if (!established_)
                throw;
            if (!lost)
                listener.lost(error.path() + ": " + error.what());
            lost = true;
        }
    }
}

} // namespace yfw::sources::lldpd
