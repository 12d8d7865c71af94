// SIGHUP, SIGINT and SIGTERM as a readable descriptor.
#ifndef YFW_BASE_STOP_SIGNALS_H
#define YFW_BASE_STOP_SIGNALS_H

#include <csignal>

#include "base/descriptor.h"

namespace yfw {

// While an instance exists, the signals make descriptor() readable instead of ending the program. One that was
// ignored before, as SIGHUP is with nohup, stays ignored. Create it before any thread: threads inherit the blocked
// signals.
class StopSignals {
public:
    // Throws Error when out of descriptors.
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;

    int descriptor() const { return signals_.get(); }

private:
    sigset_t before_;
    Descriptor signals_;
};

} // namespace yfw

#endif
