// The neighbor changes that an lldpd announces.
#ifndef YFW_SOURCES_LLDPD_LLDPD_WATCH_H
#define YFW_SOURCES_LLDPD_LLDPD_WATCH_H

#include <map>
#include <string>
#include <tuple>

#include "sources/lldpd/lldpd_state.h"
#include "sources/neighbor_watch.h"

namespace yfw::sources::lldpd {

// When the daemon comes back after an outage, the changes made in the meantime are reported.
class LldpdWatch final : public NeighborWatch {
public:
    explicit LldpdWatch(std::string socket) : socket_(std::move(socket)) {}

    void run(const ly_ctx *context, int stop, const Listener &listener) override;

private:
    // Interface, chassis id and port id: what identifies a neighbor (IEEE Std 802.1AB clause 9.2.7.7.1).
    using Key = std::tuple<std::string, std::string, std::string>;
    using Neighbors = std::map<Key, Neighbor>;

    // Returns when stopped; throws when the daemon has gone away.
    void watch_until_lost(int stop);
    Neighbors read_all() const;
    void tell_difference(const Neighbors &now);
    void changed(NeighborChange change, const std::string &interface, const Neighbor &neighbor);
    void tell(NeighborChange change, const std::string &interface, const Neighbor &neighbor) const;

    std::string socket_;
    Neighbors known_;
    bool established_ = false; // the first reading has filled known_
    const ly_ctx *context_ = nullptr;
    const Listener *listener_ = nullptr;
};

} // namespace yfw::sources::lldpd

#endif
