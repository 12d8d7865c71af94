// How a daemon gets a network, a /run and a session of its own.
#ifndef YFW_LAB_DAEMON_SURROUNDINGS_H
#define YFW_LAB_DAEMON_SURROUNDINGS_H

#include <string>
#include <vector>

#include <sys/types.h>

namespace yfw::lab {

struct DaemonStart {
    std::vector<std::string> arguments; // the program's path first
    std::string network_namespace;      // the file of the namespace
    std::string directory;              // the laboratory's, without links in its path
    int gate = -1;                      // one byte here starts the program; its end ends the process
    int releasing_end = -1;             // of the same pipe, which only the parent may keep
    int log = -1;                       // standard output and error
};

// Makes the process, which waits at the gate. Throws std::runtime_error. To be called while no other thread
// runs.
pid_t fork_daemon(const DaemonStart &start);

} // namespace yfw::lab

#endif
