// What a laboratory has made, in a file that is written before each thing is made.
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
    ino_t inode = 0; // 0: about to be made, or made by a command that ended before it could say so
};

struct DaemonRecord {
    std::string router;
    ProcessIdentity process;
};

struct LabState {
    bool complete = false; // `up` came to its end
    std::string boot;
    int tx_interval = 2; // seconds
    Topology topology;
    std::vector<NamespaceRecord> namespaces;
    std::vector<DaemonRecord> daemons;

    const DaemonRecord *daemon_of(const std::string &router) const;
    // False for processes of an earlier boot.
    bool runs(const std::string &router) const;
};

// Takes the old file's place at once. Throws std::runtime_error.
void save(const LabState &state, const Place &place);

// Nothing when there is none. Throws Error for a file that cannot be read.
std::optional<LabState> load(const Place &place);

} // namespace yfw::lab

#endif
