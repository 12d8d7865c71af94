// The LLDP daemon of a router.
#ifndef YFW_LAB_DAEMON_H
#define YFW_LAB_DAEMON_H

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "base/descriptor.h"
#include "base/process.h"
#include "base/process_identity.h"
#include "lab/lab_directory.h"
#include "lab/topology_file.h"

namespace yfw::lab {

// What the daemon is configured with at its start, in lldpcli's language. `tx_interval` in seconds. The system
// name comes last: who reads it knows that all else was read.
std::string daemon_configuration(const Router &router, int tx_interval);

// The pattern of the interfaces that it works on: their names with * in place of the number.
std::string interface_pattern(const std::vector<std::string> &interfaces);

// A daemon that exists as a process and waits: it starts its work when it is released, and ends when this
// object goes, or this program dies, before that. So its identity can be written down before it does anything.
class WaitingDaemon {
public:
    // `interfaces`: the router's. Writes the configuration. Throws std::runtime_error.
    WaitingDaemon(const Place &place, const Router &router, const std::vector<std::string> &interfaces,
                  int tx_interval);

    const ProcessIdentity &process() const { return process_; }
    void release();

private:
    Descriptor gate_;
    ProcessIdentity process_;
};

// A daemon that was started, with the inode of its network namespace.
using StartedDaemon = std::pair<ProcessIdentity, ino_t>;

// Ends the daemons and what they started, first kindly. Waits some seconds at the most; throws
// std::runtime_error when a process is still there then.
void stop_daemons(const std::vector<StartedDaemon> &daemons);

// The last line of the daemon's log, empty when there is none.
std::string last_words(const Place &place, const std::string &router);

} // namespace yfw::lab

#endif
