#include "frontends/cli/serving/stdio_joint.h"

#include <cerrno>
#include <csignal>
#include <cstring>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include "base/error.h"

namespace yfw::cli {
namespace {

int connect_to(const std::string &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.size() >= sizeof address.sun_path)
        throw Error(ErrorTag::invalid_value, path, "the name of the socket is too long");
    std::memcpy(address.sun_path, path.c_str(), path.size() + 1);
    const int descriptor = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
    if (descriptor < 0 ||
        connect(descriptor, reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        throw Error(ErrorTag::operation_failed, path,
                    std::string("cannot connect: ") + std::strerror(errno) + "; is the server running?");
    return descriptor;
}

// Moves the available bytes; false at the end of the stream or when its reader has gone.
bool move(int from, int to) {
    char buffer[65536];
    const ssize_t count = read(from, buffer, sizeof buffer);
    if (count < 0)
        return errno == EINTR;
    for (ssize_t written = 0; written < count;) {
        const ssize_t part = write(to, buffer + written, static_cast<size_t>(count - written));
        if (part < 0 && errno != EINTR)
            return false;
        written += part > 0 ? part : 0;
    }
    return count > 0;
}

} // namespace

void join_standard_streams(const std::string &path) {
    std::signal(SIGPIPE, SIG_IGN); // a vanished peer shows as a write error instead
    const int descriptor = connect_to(path);
    pollfd waited[2] = {{STDIN_FILENO, POLLIN, 0}, {descriptor, POLLIN, 0}};
    for (;;) {
        if (poll(waited, 2, -1) < 0 && errno != EINTR)
            break;
        if (waited[0].revents != 0 && !move(STDIN_FILENO, descriptor)) {
            shutdown(descriptor, SHUT_WR);
            waited[0].fd = -1; // poll() ignores it
        }
        if (waited[1].revents != 0 && !move(descriptor, STDOUT_FILENO))
            break;
    }
    close(descriptor);
}

} // namespace yfw::cli
