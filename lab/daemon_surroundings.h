// Gives a daemon a private network, /run and session.
#ifndef YFW_LAB_DAEMON_SURROUNDINGS_H
#define YFW_LAB_DAEMON_SURROUNDINGS_H

#include <string>
#include <vector>

#include <sys/types.h>

namespace yfw::lab {

struct DaemonStart {
    std::vector<std::string> arguments; // starting with the program's path
    std::string network_namespace;      // the namespace's file
    std::string directory;              // the laboratory's, as a path without links
    int gate = -1;                      // a byte starts the program; end of file ends the process
    int releasing_end = -1;             // the other end of that pipe; only the parent may keep it open
    int log = -1;                       // standard output and error
};

// Creates the process, which waits at the gate. Throws std::runtime_error. Call while no other thread is
// running.
pid_t fork_daemon(const DaemonStart &start);

} // namespace yfw::lab

#endif
