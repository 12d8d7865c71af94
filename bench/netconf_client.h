// A minimal NETCONF client for benchmarks: handles framing, and parses no more of a reply than necessary.
#ifndef YFW_BENCH_NETCONF_CLIENT_H
#define YFW_BENCH_NETCONF_CLIENT_H

#include <filesystem>
#include <string>

#include "base/descriptor.h"
#include "frontends/netconf/messages/framing.h"

namespace yfw::bench {

// A base:1.1 session. Throws std::runtime_error on any failure: a benchmark of errors measures nothing.
class NetconfClient {
public:
    // Connects and exchanges hellos.
    explicit NetconfClient(const std::filesystem::path &socket);

    // The whole <rpc-reply>; throws if it contains an error.
    std::string ask(const std::string &operation);

    // Returns when the server has closed the connection.
    void close_session();

private:
    void send(netconf::Framing framing, const std::string &message);
    std::string receive();
    // False when the server has closed the connection.
    bool receive_more();

    Descriptor socket_;
    netconf::FrameReader reader_;
};

} // namespace yfw::bench

#endif
