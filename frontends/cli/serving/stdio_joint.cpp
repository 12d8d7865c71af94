#include "frontends/cli/serving/stdio_joint.h"

#include <cerrno>
#include <csignal>
#include <cstdlib>

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include "base/error.h"
#include "base/system_error.h"
#include "base/unix_socket.h"

namespace yfw::cli {
namespace {

Descriptor connect_to(const std::string &path) {
    Descriptor socket = connect_to_socket(path);
    if (!socket.is_open())
        throw Error(ErrorTag::operation_failed, path,
                    "cannot connect: " + system_error_text() + "; is the server running?");
    return socket;
}

// Moves the available bytes; false at the end of the stream or when its reader has gone.
bool move(int from, int to) {
    char buffer[65536];
    const ssize_t count = read(from, buffer, sizeof buffer);
    if (count < 0)
        return errno == EINTR;
    return count > 0 && write_all(to, {buffer, static_cast<size_t>(count)});
}

// Tells the server where sshd says the client comes from: "ADDRESS PORT ADDRESS PORT".
void tell_source(int server) {
    const char *connection = std::getenv("SSH_CONNECTION");
    const std::string text = connection != nullptr ? connection : "";
    const std::string address = text.substr(0, text.find(' '));
    if (!address.empty() && address.find('\n') == std::string::npos)
        write_all(server, "yfw-source " + address + "\n"); // on failure, the server is gone
}

} // namespace

void join_standard_streams(const std::string &path) {
    std::signal(SIGPIPE, SIG_IGN); // a vanished peer shows as a write error instead
    const Descriptor server = connect_to(path);
    tell_source(server.get());
    pollfd waited[2] = {{STDIN_FILENO, POLLIN, 0}, {server.get(), POLLIN, 0}};
    for (;;) {
        if (poll(waited, 2, -1) < 0 && errno != EINTR)
            break;
        if (waited[0].revents != 0 && !move(STDIN_FILENO, server.get())) {
            shutdown(server.get(), SHUT_WR);
            waited[0].fd = -1; // poll() ignores it
        }
        if (waited[1].revents != 0 && !move(server.get(), STDOUT_FILENO))
            break;
    }
}

} // namespace yfw::cli
