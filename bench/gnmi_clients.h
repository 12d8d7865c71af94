// gNMI clients in a process of their own, so that the server's processor time can be told from theirs. For
// benchmarks only.
#ifndef YFW_BENCH_GNMI_CLIENTS_H
#define YFW_BENCH_GNMI_CLIENTS_H

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

#include <gnmi.grpc.pb.h>
#include <grpcpp/client_context.h>
#include <grpcpp/security/credentials.h>

namespace yfw::bench {

// A stub on a connection of its own.
std::unique_ptr<::gnmi::gNMI::Stub>
stub_of(const std::string &address,
        const std::shared_ptr<grpc::ChannelCredentials> &credentials = grpc::InsecureChannelCredentials());
// With credentials that the benchmark's server takes.
std::unique_ptr<grpc::ClientContext> call_context();

// This program again, as clients: main() hands over to clients_main() there.
class Clients {
public:
    static bool is_meant(int argc, char **argv);
    static int clients_main(int argc, char **argv);

    // Asks once for everything in PROTO.
    static Clients once(const std::string &address);
    // Subscribes to changes of everything, each client on one of so many connections, and ends after so many
    // changes.
    static Clients subscribers(const std::string &address, int count, int connections, int changes);

    // The next number that they tell: of `once` how many leaves there were; of `subscribers` 0 once all are in
    // sync, and then for each change the time at which the last one was told, in nanoseconds of the monotonic
    // clock.
    int64_t next();

private:
    explicit Clients(const std::string &arguments);

    std::unique_ptr<std::FILE, int (*)(std::FILE *)> output_;
};

} // namespace yfw::bench

#endif
