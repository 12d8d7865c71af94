#include "base/unix_socket.h"

#include <cerrno>
#include <cstring>

#include <sys/socket.h>

#include "base/error.h"

namespace yfw {
namespace {

sockaddr_un address_of(const std::filesystem::path &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    if (path.native().size() > longest_socket_path)
        throw Error(ErrorTag::invalid_value, path.string(), "the socket's path is too long");
    std::memcpy(address.sun_path, path.c_str(), path.native().size() + 1);
    return address;
}

Descriptor stream_socket(int flags) {
    return Descriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | flags, 0));
}

// Closes the socket after a failed call, and keeps errno.
Descriptor unless_failed(Descriptor socket, int result) {
    if (result == 0)
        return socket;
    const int reason = errno;
    socket.close();
    errno = reason;
    return socket;
}

} // namespace

Descriptor connect_to_socket(const std::filesystem::path &path, int flags) {
    const sockaddr_un address = address_of(path);
    Descriptor socket = stream_socket(flags);
    if (!socket.is_open())
        return socket;
    const int result = ::connect(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    return unless_failed(std::move(socket), result);
}

Descriptor listen_on_socket(const std::filesystem::path &path, int backlog, int flags) {
    const sockaddr_un address = address_of(path);
    Descriptor socket = stream_socket(flags);
    if (!socket.is_open())
        return socket;
    int result = ::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address);
    if (result == 0)
        result = ::listen(socket.get(), backlog);
    return unless_failed(std::move(socket), result);
}

bool is_answered(const std::filesystem::path &path) {
    return connect_to_socket(path).is_open();
}

} // namespace yfw
