#include "sources/lldpd/connection.h"

#include <algorithm>
#include <cerrno>

#include <poll.h>
#include <sys/socket.h>

#include "base/error.h"
#include "base/system_error.h"
#include "base/unix_socket.h"

namespace yfw::sources::lldpd {
namespace {

void drop_message(int, const char *) {}

} // namespace

Connection::Connection(std::string socket, std::chrono::milliseconds bound)
    : Connection(std::move(socket), Descriptor(), bound) {}

Connection::Connection(std::string socket, Descriptor stream, std::chrono::milliseconds bound)
    : socket_(std::move(socket)), bound_(bound), stream_(std::move(stream)),
      handle_(lldpctl_new_name(socket_.c_str(), send, receive, this)) {
    lldpctl_log_callback(drop_message); // failures are reported once, by fail()
    if (handle_ == nullptr)
        throw std::bad_alloc();
}

Connection::~Connection() {
    lldpctl_release(handle_);
}

void Connection::fail(const std::string &doing) const {
    const std::string reason = trouble_.empty() ? std::string(lldpctl_last_strerror(handle_)) : trouble_;
    throw Error(ErrorTag::operation_failed, place(), doing + ": " + reason).by_device();
}

Atom Connection::expect(lldpctl_atom_t *atom, const std::string &doing) const {
    if (atom == nullptr)
        fail(doing);
    return Atom(atom);
}

// Called by lldpd's library, which no exception may cross.
bool Connection::connect() {
    if (stream_.is_open())
        return true;
    try {
        stream_ = connect_to_socket(socket_, SOCK_NONBLOCK);
        if (!stream_.is_open())
            trouble_ = "cannot connect: " + system_error_text() + "; is lldpd running?";
    } catch (const Error &error) {
        trouble_ = error.what();
    }
    return stream_.is_open();
}

int Connection::milliseconds_left() const {
    if (!bounded_)
        return -1;
    const auto left = answer_by_ - std::chrono::steady_clock::now();
    return static_cast<int>(std::max<int64_t>(
        0, std::chrono::duration_cast<std::chrono::milliseconds>(left + std::chrono::milliseconds(1)).count()));
}

void Connection::note_timeout() {
    interrupted_ = false;
    trouble_ = "no answer within " + std::to_string(bound_.count()) + " ms";
}

bool Connection::wait_for(short events) {
    pollfd waited[2] = {{stream_.get(), events, 0}, {interrupt_, POLLIN, 0}};
    const int ready = poll(waited, interrupt_ >= 0 ? 2 : 1, milliseconds_left());
    interrupted_ = interrupt_ >= 0 && ready > 0 && waited[1].revents != 0;
    if (ready == 0)
        note_timeout();
    return !interrupted_ && (ready > 0 || (ready < 0 && errno == EINTR));
}

ssize_t Connection::send(lldpctl_conn_t *, const uint8_t *data, size_t length, void *self) {
    auto &connection = *static_cast<Connection *>(self);
    if (!connection.connect())
        return LLDPCTL_ERR_CANNOT_CONNECT;
    connection.answer_by_ = std::chrono::steady_clock::now() + connection.bound_;
    size_t sent = 0;
    while (sent < length) {
        const ssize_t count =
            ::send(connection.stream_.get(), data + sent, length - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (count >= 0) {
            sent += static_cast<size_t>(count);
        } else if (errno == EAGAIN || errno == EINTR) {
            if (!connection.wait_for(POLLOUT))
                return LLDPCTL_ERR_CALLBACK_FAILURE;
        } else {
            connection.trouble_ = "lldpd went away: " + system_error_text();
            return LLDPCTL_ERR_CALLBACK_FAILURE;
        }
    }
    return static_cast<ssize_t>(length);
}

ssize_t Connection::receive(lldpctl_conn_t *, const uint8_t *data, size_t length, void *self) {
    auto &connection = *static_cast<Connection *>(self);
    if (!connection.connect())
        return LLDPCTL_ERR_CANNOT_CONNECT;
    // The library passes the buffer to be filled as const.
    void *buffer = const_cast<uint8_t *>(data);
    for (;;) {
        // An answer that trickles in is subject to the same limit as one that never arrives.
        if (connection.milliseconds_left() == 0) {
            connection.note_timeout();
            return LLDPCTL_ERR_CALLBACK_FAILURE;
        }
        const ssize_t count = ::recv(connection.stream_.get(), buffer, length, MSG_DONTWAIT);
        if (count > 0)
            return count;
        if (count == 0) {
            connection.trouble_ = "lldpd closed the connection";
            return LLDPCTL_ERR_EOF;
        }
        if (errno != EAGAIN && errno != EINTR) {
            connection.trouble_ = "lldpd went away: " + system_error_text();
            return LLDPCTL_ERR_CALLBACK_FAILURE;
        }
        if (!connection.wait_for(POLLIN))
            return connection.interrupted_ ? LLDPCTL_ERR_WOULDBLOCK : LLDPCTL_ERR_CALLBACK_FAILURE;
    }
}

} // namespace yfw::sources::lldpd
