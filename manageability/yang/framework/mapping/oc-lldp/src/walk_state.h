// The per-request state of the OpenConfig walkers.
#ifndef OCLLDP_WALK_STATE_H
#define OCLLDP_WALK_STATE_H

#include <optional>

#include "frame.h"

namespace oclldp {

// Stands in each walker's call. Where the framework gives a request, its context holds the state. Otherwise the
// outermost walker's call does, so the walkers below it share the state and nothing outlives the walk.
class walk_state {
public:
    explicit walk_state(yfw_map_ctx ctx);
    ~walk_state();
    walk_state(const walk_state &) = delete;
    walk_state &operator=(const walk_state &) = delete;

    // The state of the walk that runs with `ctx`; valid until its outermost walker returns.
    static yfw_req_ctx &of(yfw_map_ctx ctx);

private:
    yfw_map_ctx ctx_;
    walk_state *outer_;
    std::optional<yfw_req_ctx> own_;

    static walk_state *innermost_; // of those that hold a state of their own
};

} // namespace oclldp

#endif
