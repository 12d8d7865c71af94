// Keeps a device that may be restarted at its configuration.
#ifndef YFW_FRONTENDS_CLI_TARGET_KEEPER_H
#define YFW_FRONTENDS_CLI_TARGET_KEEPER_H

#include <thread>

#include "frontends/cli/session.h"

namespace yfw::cli {

// While it lives, a thread of its own gives the device its last commit again whenever it was away. Does nothing
// for a device that tells no changes. Borrows the session.
class TargetKeeper {
public:
    explicit TargetKeeper(Session &session);
    ~TargetKeeper();
    TargetKeeper(const TargetKeeper &) = delete;
    TargetKeeper &operator=(const TargetKeeper &) = delete;

private:
    void keep();
    void restore();

    Session &session_;
    int stop_;
    std::thread thread_;
};

} // namespace yfw::cli

#endif
