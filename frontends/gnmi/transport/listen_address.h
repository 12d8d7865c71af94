// Where a server listens.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_LISTEN_ADDRESS_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_LISTEN_ADDRESS_H

#include <string>

namespace yfw::gnmi {

struct ListenAddress {
    std::string host;   // without brackets; empty for a Unix socket
    std::string port;   // likewise
    std::string socket; // the path of a Unix socket

    // Whether only processes of this machine can reach it.
    bool is_local() const;
    // As gRPC writes it.
    std::string text() const;
};

// Reads "[HOST:]PORT", with an IPv6 address in brackets, or "unix:PATH". Without a host, all addresses of the
// machine are meant, and `default_host` if it is given. Throws Error, invalid-value, about `option`.
ListenAddress read_listen_address(const std::string &text, const std::string &option,
                                  const std::string &default_host = "");

} // namespace yfw::gnmi

#endif
