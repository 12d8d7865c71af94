// The neighbor changes that an lldpd announces.
#ifndef YFW_SOURCES_LLDPD_LLDPD_WATCH_H
#define YFW_SOURCES_LLDPD_LLDPD_WATCH_H

#include <map>
#include <memory>
#include <string>

#include "sources/lldpd/discoveries.h"
#include "sources/lldpd/lldpd_state.h"
#include "sources/neighbor_watch.h"

namespace yfw::sources::lldpd {

// When the daemon comes back after an outage, the changes made in the meantime are reported.
class LldpdWatch final : public NeighborWatch {
public:
    // `discoveries` may be shared with whoever reads the daemon beside this watch.
    explicit LldpdWatch(std::string socket,
                        std::shared_ptr<Discoveries> discoveries = std::make_shared<Discoveries>())
        : socket_(std::move(socket)), discoveries_(std::move(discoveries)) {}

    void run(const ly_ctx *context, int stop, const Listener &listener) override;

private:
    // The neighbors of a port, by what identifies them.
    using Neighbors = std::map<std::string, Neighbor>;
    struct KnownNeighbor {
        std::string device_id;
        const Neighbor *neighbor;
    };
    using KnownNeighbors = std::map<std::string, KnownNeighbor>;

    // Returns when stopped; throws when the daemon has gone away.
    void watch_until_lost(int stop);
    std::map<std::string, Neighbors> read_all() const;
    void tell_difference(const std::map<std::string, Neighbors> &now);
    // Tells what became of a port's neighbors; `updated`: the one whose data has changed, or none.
    void tell_port(const std::string &interface, const Neighbors &before, const Neighbors &now,
                   const std::string &updated = "") const;
    void changed(NeighborChange change, const std::string &interface, Neighbor neighbor);
    void tell(NeighborChange change, const std::string &interface, const KnownNeighbor &known) const;

    static KnownNeighbors with_ids(const Neighbors &neighbors);

    std::string socket_;
    std::shared_ptr<Discoveries> discoveries_;
    std::map<std::string, Neighbors> known_; // by interface
    bool established_ = false;               // the first reading has filled known_
    const ly_ctx *context_ = nullptr;
    const Listener *listener_ = nullptr;
};

} // namespace yfw::sources::lldpd

#endif
