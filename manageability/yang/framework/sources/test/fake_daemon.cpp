#include "fake_daemon.h"

#include <array>
#include <cerrno>
#include <system_error>

#include <poll.h>
#include <sys/socket.h>

#include "base/unix_socket.h"

namespace yfw::sources::test {
namespace {

// The longest time until a thread notices that the test ends.
constexpr int glance_ms = 20;

Descriptor checked(Descriptor socket, const char *what) {
    if (!socket.is_open())
        throw std::system_error(errno, std::generic_category(), what);
    return socket;
}

} // namespace

ListeningSocket::ListeningSocket(int backlog) : socket_(checked(listen_on_socket(path(), backlog), "listen")) {}

void ListeningSocket::fill() {
    do
        clients_.push_back(connect_to_socket(path(), SOCK_NONBLOCK));
    while (clients_.back().is_open());
}

bool Client::ready(short events) const {
    while (!ends_) {
        pollfd open{descriptor_, events, 0};
        if (poll(&open, 1, glance_ms) > 0)
            return true;
    }
    return false;
}

std::string Client::receive(size_t count) const {
    std::string received;
    std::array<char, 4096> buffer{};
    while (received.size() < count && ready(POLLIN)) {
        const ssize_t got = recv(descriptor_, buffer.data(), buffer.size(), 0);
        if (got <= 0)
            break;
        received.append(buffer.data(), static_cast<size_t>(got));
    }
    return received;
}

bool Client::send(const std::string &bytes) const {
    for (size_t sent = 0; sent < bytes.size();) {
        if (!ready(POLLOUT))
            return false;
        const ssize_t went =
            ::send(descriptor_, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL | MSG_DONTWAIT);
        if (went < 0)
            return false;
        sent += static_cast<size_t>(went);
    }
    return true;
}

void Client::wait() const {
    while (!receive(1).empty()) {
    }
}

bool Client::pause() const {
    poll(nullptr, 0, glance_ms);
    return !ends_;
}

FakeDaemon::FakeDaemon(std::function<void(const Client &)> behaviour)
    : behaviour_(std::move(behaviour)), thread_([this] { serve(); }) {}

FakeDaemon::~FakeDaemon() {
    ends_ = true;
    thread_.join();
}

void FakeDaemon::serve() {
    while (!ends_) {
        pollfd open{socket_.descriptor(), POLLIN, 0};
        if (poll(&open, 1, glance_ms) <= 0)
            continue;
        const Descriptor client(accept(socket_.descriptor(), nullptr, nullptr));
        if (client.is_open())
            behaviour_(Client(client.get(), ends_));
    }
}

} // namespace yfw::sources::test
