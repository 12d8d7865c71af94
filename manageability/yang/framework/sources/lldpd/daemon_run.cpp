#include "sources/lldpd/daemon_run.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>

#include "base/error.h"
#include "base/process_identity.h"
#include "base/unix_socket.h"

namespace yfw::sources::lldpd {
namespace {

bool somebody_listens(const std::string &socket) {
    try {
        // A daemon that is slow to accept its clients lets a queue of them fill.
        return connect_to_socket(socket, SOCK_NONBLOCK).is_open() || errno == EAGAIN;
    } catch (const Error &) {
        return false;
    }
}

std::string text_of(const struct statx_timestamp &time) {
    return std::to_string(time.tv_sec) + "." + std::to_string(time.tv_nsec);
}

} // namespace

// Every run of lldpd makes its socket's file anew, so the file identifies the run. The process at the other end
// does not: SO_PEERCRED names the process that began to listen, which has ended by the time lldpd is in the
// background. Only the owner could change a time of modification, and not every file system has one of birth.
std::optional<std::string> daemon_run(const std::string &socket) {
    struct statx file {};
    if (!somebody_listens(socket) ||
        statx(AT_FDCWD, socket.c_str(), 0, STATX_INO | STATX_MTIME | STATX_BTIME, &file) != 0)
        return std::nullopt;
    const bool has_birth = (file.stx_mask & STATX_BTIME) != 0;
    return boot_identity() + "/" + std::to_string(file.stx_ino) + "/" +
           text_of(has_birth ? file.stx_btime : file.stx_mtime);
}

} // namespace yfw::sources::lldpd
