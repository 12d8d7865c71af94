#include "fake_daemon.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <system_error>

#include <poll.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

namespace yfw::sources::test {
namespace {

// How long it takes at the most until a thread sees that the test ends.
constexpr int glance_ms = 20;

sockaddr_un address_of(const std::string &path) {
    sockaddr_un address{};
    address.sun_family = AF_UNIX;
    std::strncpy(address.sun_path, path.c_str(), sizeof address.sun_path - 1);
    return address;
}

int checked(int result, const char *what) {
    if (result < 0)
        throw std::system_error(errno, std::generic_category(), what);
    return result;
}

const sockaddr *plain(const sockaddr_un &address) {
    return reinterpret_cast<const sockaddr *>(&address);
}

} // namespace

ListeningSocket::ListeningSocket(int backlog)
    : descriptor_(checked(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0), "socket")) {
    const sockaddr_un address = address_of(path());
    checked(bind(descriptor_, plain(address), sizeof address), "bind");
    checked(listen(descriptor_, backlog), "listen");
}

ListeningSocket::~ListeningSocket() {
    for (const int client : clients_)
        close(client);
    close(descriptor_);
}

void ListeningSocket::fill() {
    const sockaddr_un address = address_of(path());
    for (int result = 0; result == 0;) {
        clients_.push_back(checked(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0), "socket"));
        result = connect(clients_.back(), plain(address), sizeof address);
    }
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
        const int client = accept(socket_.descriptor(), nullptr, nullptr);
        if (client < 0)
            continue;
        behaviour_(Client(client, ends_));
        close(client);
    }
}

} // namespace yfw::sources::test
