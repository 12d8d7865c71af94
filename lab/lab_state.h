// What a laboratory has created, in a file that is written before each thing is created.
#ifndef YFW_LAB_LAB_STATE_H
#define YFW_LAB_LAB_STATE_H

#include <optional>
#include <string>
#include <vector>

#include "base/process_identity.h"
#include "lab/lab_directory.h"
#include "lab/topology_file.h"

namespace yfw::lab {

struct NamespaceRecord {
    std::string name;
    ino_t inode = 0; // 0: about to be created, or the command ended before recording it
};

struct DaemonRecord {
    std::string router;
    ProcessIdentity process;
};

struct LabState {
    bool complete = false; // `up` has finished
    std::string boot;
    int tx_interval = 2; // seconds
    Topology topology;
    std::vector<NamespaceRecord> namespaces;
    std::vector<DaemonRecord> daemons;

    const DaemonRecord *daemon_of(const std::string &router) const;
    // Whether the router's daemon is running; false for processes of an earlier boot.
    bool runs(const std::string &router) const;
};

// Replaces the old file atomically. Throws std::runtime_error.
void save(const LabState &state, const Place &place);

// Nothing when there is no file. Throws Error for a file that cannot be read.
std::optional<LabState> load(const Place &place);

} // namespace yfw::lab

#endif
