// Unix stream sockets.
#ifndef YFW_BASE_UNIX_SOCKET_H
#define YFW_BASE_UNIX_SOCKET_H

#include <cstddef>
#include <filesystem>

#include <sys/un.h>

#include "base/descriptor.h"

namespace yfw {

// The longest path that a socket can have, in bytes (unix(7)).
constexpr size_t longest_socket_path = sizeof(sockaddr_un{}.sun_path) - 1;

// These functions throw Error when the path is longer. `flags`: 0 or SOCK_NONBLOCK. Sockets do not survive an
// exec.

// A connected socket. On failure it is not open, and errno is set.
Descriptor connect_to_socket(const std::filesystem::path &path, int flags = 0);

// A listening socket, created at the path. On failure it is not open, and errno is set.
Descriptor listen_on_socket(const std::filesystem::path &path, int backlog, int flags = 0);

// Whether a server accepts connections at the path.
bool is_answered(const std::filesystem::path &path);

} // namespace yfw

#endif
