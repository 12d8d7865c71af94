#include "frontends/gnmi/transport/listen_address.h"

#include <algorithm>
#include <charconv>

#include <arpa/inet.h>

#include "base/error.h"

namespace yfw::gnmi {
namespace {

constexpr std::string_view socket_prefix = "unix:";

bool is_port(const std::string &text) {
    int number = -1;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && number >= 0 && number <= 65535;
}

} // namespace

bool ListenAddress::is_local() const {
    in_addr four{};
    in6_addr six{};
    if (inet_pton(AF_INET, host.c_str(), &four) == 1)
        return ntohl(four.s_addr) >> 24 == 127;
    if (inet_pton(AF_INET6, host.c_str(), &six) == 1)
        return IN6_IS_ADDR_LOOPBACK(&six);
    return !socket.empty() || host == "localhost";
}

std::string ListenAddress::text() const {
    if (!socket.empty())
        return std::string(socket_prefix) + socket;
    return (host.find(':') != std::string::npos ? "[" + host + "]" : host) + ":" + port;
}

ListenAddress read_listen_address(const std::string &text, const std::string &option,
                                  const std::string &default_host) {
    ListenAddress address;
    if (text.starts_with(socket_prefix)) {
        address.socket = text.substr(socket_prefix.size());
        if (address.socket.empty())
            throw Error(ErrorTag::invalid_value, option, "expected unix:PATH, found \"" + text + "\"");
        return address;
    }
    const size_t colon = text.rfind(':');
    address.port = colon == std::string::npos ? text : text.substr(colon + 1);
    address.host = colon == std::string::npos ? "" : text.substr(0, colon);
    const bool is_bracketed =
        address.host.size() > 2 && address.host.front() == '[' && address.host.back() == ']';
    if (is_bracketed)
        address.host = address.host.substr(1, address.host.size() - 2);
    if (!is_port(address.port) || (!is_bracketed && address.host.find(':') != std::string::npos))
        throw Error(ErrorTag::invalid_value, option,
                    "expected [HOST:]PORT or unix:PATH, found \"" + text + "\"");
    if (address.host.empty())
        address.host = default_host.empty() ? "::" : default_host;
    return address;
}

} // namespace yfw::gnmi
