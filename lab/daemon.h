// The LLDP daemon of a router.
#ifndef YFW_LAB_DAEMON_H
#define YFW_LAB_DAEMON_H

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/descriptor.h"
#include "base/process_identity.h"
#include "lab/lab_directory.h"
#include "lab/topology_file.h"

namespace yfw::lab {

// The daemon's configuration at start-up, in lldpcli's language. `tx_interval` in seconds. The system name
// comes last: once it can be read, everything else has been applied.
std::string daemon_configuration(const Router &router, int tx_interval);

// The pattern for the daemon's interfaces: their names with * in place of the number.
std::string interface_pattern(const std::vector<std::string> &interfaces);

// A daemon whose process exists and waits, so that its identity can be recorded before it does anything. The
// daemon starts when released; the process ends if this object is destroyed or this program dies before that.
class WaitingDaemon {
public:
    // `interfaces`: the router's. Writes the configuration file. Throws std::runtime_error.
    WaitingDaemon(const Place &place, const Router &router, const std::vector<std::string> &interfaces,
                  int tx_interval);

    const ProcessIdentity &process() const { return process_; }
    void release();

private:
    Descriptor gate_;
    ProcessIdentity process_;
};

// A running daemon, with the inode of its network namespace.
using StartedDaemon = std::pair<ProcessIdentity, ino_t>;

// Ends the daemons and the processes that they started, with SIGTERM and then SIGKILL. Waits a few seconds at
// most; throws std::runtime_error when a process is still running after that.
void stop_daemons(const std::vector<StartedDaemon> &daemons);

// The last line of the daemon's log; empty when there is none.
std::string last_words(const Place &place, const std::string &router);

} // namespace yfw::lab

#endif
