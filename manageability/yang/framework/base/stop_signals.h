// SIGINT and SIGTERM as a readable descriptor.
#ifndef YFW_BASE_STOP_SIGNALS_H
#define YFW_BASE_STOP_SIGNALS_H

#include <csignal>

namespace yfw {

// While it lives, SIGINT and SIGTERM make descriptor() readable instead of ending the program. Create it before
// any thread.
class StopSignals {
public:
    StopSignals();
    ~StopSignals();
    StopSignals(const StopSignals &) = delete;
    StopSignals &operator=(const StopSignals &) = delete;

    int descriptor() const { return descriptor_; }

private:
    sigset_t before_;
    int descriptor_;
};

} // namespace yfw

#endif
