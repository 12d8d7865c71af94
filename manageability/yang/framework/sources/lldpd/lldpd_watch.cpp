#include "sources/lldpd/lldpd_watch.h"

#include "base/error.h"
#include "sources/lldpd/native_data.h"
#include "sources/lldpd/neighbor_ids.h"
#include "sources/lldpd/reader.h"
#include "yang/yang_text.h"

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
    if (name != nullptr && yang::is_yang_text(name) && speaks_lldp(neighbor))
        static_cast<std::vector<Heard> *>(to)->push_back({change_of(type), name, read_neighbor(neighbor)});
}

} // namespace

void LldpdWatch::tell(NeighborChange change, const std::string &interface, const KnownNeighbor &known) const {
    listener_->event({change, neighbor_data(context_, interface, known.device_id, *known.neighbor)});
}

std::map<std::string, LldpdWatch::Neighbors> LldpdWatch::read_all() const {
    std::map<std::string, Neighbors> all;
    const Connection connection(socket_);
    State state = read_state(connection);
    discoveries_->date(state.ports);
    for (Port &port : state.ports)
        for (Neighbor &neighbor : port.neighbors)
            all[port.name].emplace(msap(neighbor), std::move(neighbor));
    return all;
}

LldpdWatch::KnownNeighbors LldpdWatch::with_ids(const Neighbors &neighbors) {
    std::vector<const Neighbor *> in_order;
    for (const auto &[key, neighbor] : neighbors)
        in_order.push_back(&neighbor);
    const std::vector<std::string> ids = device_ids(in_order);
    KnownNeighbors known;
    size_t at = 0;
    for (const auto &[key, neighbor] : neighbors)
        known.emplace(key, KnownNeighbor{ids[at++], &neighbor});
    return known;
}

// A neighbor with a new device id is a new entry. That may be one whose own data has not changed.
void LldpdWatch::tell_port(const std::string &interface, const Neighbors &before, const Neighbors &now,
                           const std::string &updated) const {
    const KnownNeighbors known = with_ids(before), there = with_ids(now);
    const auto is_in = [](const KnownNeighbors &all, const auto &one) {
        const auto found = all.find(one.first);
        return found != all.end() && found->second.device_id == one.second.device_id;
    };
    for (const auto &one : known)
        if (!is_in(there, one))
            tell(NeighborChange::removed, interface, one.second);
    for (const auto &one : there)
        if (!is_in(known, one))
            tell(NeighborChange::added, interface, one.second);
        else if (one.first == updated)
            tell(NeighborChange::updated, interface, one.second);
}

void LldpdWatch::tell_difference(const std::map<std::string, Neighbors> &now) {
    static const Neighbors none;
    for (const auto &[interface, neighbors] : known_)
        tell_port(interface, neighbors, now.contains(interface) ? now.at(interface) : none);
    for (const auto &[interface, neighbors] : now)
        if (!known_.contains(interface))
            tell_port(interface, none, neighbors);
    known_ = now;
}

// The subscription starts before the first reading, so that no change is lost between the two; a neighbor seen
// by both is reported as added only once.
void LldpdWatch::changed(NeighborChange change, const std::string &interface, Neighbor neighbor) {
    const std::string key = msap(neighbor);
    Neighbors now = known_[interface];
    if (change == NeighborChange::removed) {
        discoveries_->forget(interface, neighbor);
        now.erase(key);
    } else {
        discoveries_->date(interface, neighbor);
        now[key] = std::move(neighbor);
    }
    tell_port(interface, known_[interface], now, key);
    known_[interface] = std::move(now);
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
        for (Heard &one : heard)
            changed(one.change, one.interface, std::move(one.neighbor));
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
