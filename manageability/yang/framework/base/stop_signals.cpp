#include "base/stop_signals.h"

#include <sys/signalfd.h>

#include "base/error.h"

namespace yfw {

StopSignals::StopSignals() {
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGHUP);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    sigprocmask(SIG_BLOCK, &signals, &before_);
    signals_ = Descriptor(signalfd(-1, &signals, SFD_CLOEXEC | SFD_NONBLOCK));
    if (!signals_.is_open())
        throw Error(ErrorTag::resource_denied, "", "no file descriptor left for signals");
}

StopSignals::~StopSignals() {
    // Consume handled signals: still pending, they would end the program once unblocked.
    signalfd_siginfo noted{};
    while (read(signals_.get(), &noted, sizeof noted) > 0) {
    }
    signals_.close();
    sigprocmask(SIG_SETMASK, &before_, nullptr);
}

} // namespace yfw
