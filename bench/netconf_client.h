// As much of a NETCONF client as a benchmark needs: it frames, and reads no more of a reply than it has to.
#ifndef YFW_BENCH_NETCONF_CLIENT_H
#define YFW_BENCH_NETCONF_CLIENT_H

#include <filesystem>
#include <string>

#include "frontends/netconf/messages/framing.h"

namespace yfw::bench {

// A session of base:1.1. What goes wrong throws std::runtime_error: a benchmark of errors measures nothing.
class NetconfClient {
public:
    // Connects, and both hellos are exchanged.
    explicit NetconfClient(const std::filesystem::path &socket);
    ~NetconfClient();
    NetconfClient(const NetconfClient &) = delete;
    NetconfClient &operator=(const NetconfClient &) = delete;

    // The whole <rpc-reply>, which holds no error.
    std::string ask(const std::string &operation);

    // Returns when the server has closed the connection.
    void close_session();

private:
    void send(netconf::Framing framing, const std::string &message);
    std::string receive();
    // False when the server has closed the connection.
    bool receive_more();

    int socket_;
    netconf::FrameReader reader_;
};

} // namespace yfw::bench

#endif
