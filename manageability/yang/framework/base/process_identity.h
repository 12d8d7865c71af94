// Identifies processes even when their numbers are reused.
#ifndef YFW_BASE_PROCESS_IDENTITY_H
#define YFW_BASE_PROCESS_IDENTITY_H

#include <optional>
#include <string>
#include <vector>

#include <sys/types.h>

namespace yfw {

struct ProcessIdentity {
    pid_t number = 0;
    unsigned long long start = 0; // clock ticks after boot, from /proc/PID/stat

    bool operator==(const ProcessIdentity &) const = default;
};

// The identity of the process that has this number now; nothing when it does not exist or is a zombie.
std::optional<ProcessIdentity> identity_of(pid_t number);

bool is_running(const ProcessIdentity &process);

// Sends the signal to exactly this process; does nothing when it has gone.
void send_signal(const ProcessIdentity &process, int signal);

// All processes in this session and in the network namespace with this inode.
std::vector<ProcessIdentity> processes_of_session(pid_t session, ino_t network_namespace);

// Identifies this boot of the machine; process numbers and start times are meaningless across boots.
std::string boot_identity();

} // namespace yfw

#endif
