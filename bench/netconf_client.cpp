#include "netconf_client.h"

#include <array>
#include <stdexcept>

#include <sys/socket.h>
#include <sys/time.h>

#include "base/system_error.h"
#include "base/unix_socket.h"

namespace yfw::bench {
namespace {

using netconf::Framing;

constexpr const char *hello =
    "<hello xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\"><capabilities>"
    "<capability>urn:ietf:params:netconf:base:1.0</capability>"
    "<capability>urn:ietf:params:netconf:base:1.1</capability></capabilities></hello>";

// Large enough for the biggest answers.
constexpr netconf::FrameLimits limits{4294967295, uint64_t{4} << 30};

constexpr timeval patience{60, 0};

[[noreturn]] void fail(const std::string &what) {
    throw std::runtime_error(what + ": " + system_error_text());
}

Descriptor connected(const std::filesystem::path &path) {
    Descriptor socket = connect_to_socket(path);
    if (!socket.is_open())
        fail(path.string());
    setsockopt(socket.get(), SOL_SOCKET, SO_RCVTIMEO, &patience, sizeof patience);
    return socket;
}

} // namespace

NetconfClient::NetconfClient(const std::filesystem::path &socket)
    : socket_(connected(socket)), reader_(limits) {
    send(Framing::end_of_message, hello);
    receive();
    reader_.use(Framing::chunked);
}

void NetconfClient::send(Framing framing, const std::string &message) {
    const std::string bytes = netconf::frame(framing, message);
    for (size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = ::send(socket_.get(), bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count < 0)
            fail("cannot send");
        sent += static_cast<size_t>(count);
    }
}

bool NetconfClient::receive_more() {
    std::array<char, 65536> bytes;
    const ssize_t count = recv(socket_.get(), bytes.data(), bytes.size(), 0);
    if (count < 0)
        fail("no answer");
    reader_.feed({bytes.data(), static_cast<size_t>(count)});
    return count > 0;
}

std::string NetconfClient::receive() {
    for (;;) {
        if (std::optional<std::string> message = reader_.next())
            return std::move(*message);
        if (!receive_more())
            throw std::runtime_error("the server closed the session");
    }
}

std::string NetconfClient::ask(const std::string &operation) {
    send(Framing::chunked,
         "<rpc message-id=\"1\" xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" + operation + "</rpc>");
    std::string reply = receive();
    if (reply.find("<rpc-error>") != std::string::npos)
        throw std::runtime_error(reply.substr(0, 1000));
    return reply;
}

void NetconfClient::close_session() {
    ask("<close-session/>");
    while (receive_more()) {
    }
}

} // namespace yfw::bench
