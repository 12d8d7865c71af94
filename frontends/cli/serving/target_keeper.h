// Keeps a device that may be restarted at its configuration.
#ifndef YFW_FRONTENDS_CLI_SERVING_TARGET_KEEPER_H
#define YFW_FRONTENDS_CLI_SERVING_TARGET_KEEPER_H

#include <functional>
#include <thread>

#include "frontends/cli/options/session.h"

namespace yfw::cli {

// While it lives, a thread of its own gives the device its last commit again whenever it was away, and passes
// on the changes of neighbors that the device tells. Does nothing for a device that tells no changes. Borrows
// the session.
class TargetKeeper {
public:
    TargetKeeper(Session &session, std::function<void(sources::NeighborEvent)> on_neighbor);
    ~TargetKeeper();
    TargetKeeper(const TargetKeeper &) = delete;
    TargetKeeper &operator=(const TargetKeeper &) = delete;

private:
    void keep();
    void restore();
    void pass_on(sources::NeighborEvent event);

    Session &session_;
    std::function<void(sources::NeighborEvent)> on_neighbor_;
    int stop_;
    std::thread thread_;
};

} // namespace yfw::cli

#endif
