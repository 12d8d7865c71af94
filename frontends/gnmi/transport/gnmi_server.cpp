#include "frontends/gnmi/transport/gnmi_server.h"

#include <chrono>
#include <cstdlib>

#include <grpc/support/log.h>
#include <grpcpp/server.h>
#include <grpcpp/server_builder.h>

#include "base/error.h"
#include "base/unix_socket.h"
#include "base/worker_pool.h"
#include "device/confirmation_timer.h"
#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/transport/authentication.h"
#include "frontends/gnmi/transport/request_log.h"
#include "frontends/gnmi/transport/service_door.h"

namespace yfw::gnmi {
namespace {

// How long requests may take to be answered once the server ends.
constexpr std::chrono::milliseconds patience{500};

std::shared_ptr<grpc::ServerCredentials> listening_credentials(const ServerOptions &options) {
    if (options.tls.has_value()) {
        check_files(*options.tls);
        return credentials_of(*options.tls);
    }
    if (!options.address.is_local())
        throw Error(ErrorTag::invalid_value, "--insecure",
                    "plaintext is only served on a loopback address or a Unix socket, not on " +
                        options.address.text());
    return grpc::InsecureServerCredentials();
}

// A socket that another server answers on is taken; gRPC would replace it.
void refuse_taken_socket(const ListenAddress &address) {
    if (!address.socket.empty() && connect_to_socket(address.socket).is_open())
        throw Error(ErrorTag::in_use, address.text(), "another server listens there");
}

// What goes wrong is told by our own messages. With its variable, gRPC writes its log to standard error.
void keep_grpc_quiet() {
    if (std::getenv("GRPC_VERBOSITY") == nullptr)
        gpr_set_log_function([](gpr_log_func_args *) {});
}

} // namespace

struct GnmiServer::Parts {
    Parts(const ServerOptions &options, device::Service &service,
          const std::function<void(const std::string &)> &say)
        : target(service), authentication(service, options.groups, options.is_password_of),
          publisher(target, say), log(say), workers(options.threads),
          door(target, authentication, publisher, log, workers), timer(service, say) {
        refuse_taken_socket(options.address);
        keep_grpc_quiet();
        grpc::ServerBuilder builder;
        builder.AddChannelArgument(GRPC_ARG_ALLOW_REUSEPORT, 0); // or a second server would share the port
        builder.AddListeningPort(options.address.text(), listening_credentials(options), &port);
        builder.RegisterService(&door);
        server = builder.BuildAndStart();
        if (server == nullptr)
            throw Error(ErrorTag::in_use, options.address.text(),
                        "cannot listen there: the address is in use, or not one of this machine");
    }

    ~Parts() {
        if (server != nullptr)
            server->Shutdown(std::chrono::system_clock::now() + patience);
    }

    Target target;
    Authentication authentication;
    Publisher publisher;
    RequestLog log;
    WorkerPool workers; // its jobs use all of the above
    ServiceDoor door;
    device::ConfirmationTimer timer;
    int port = 0;
    std::unique_ptr<grpc::Server> server; // destroyed first
};

GnmiServer::GnmiServer(const ServerOptions &options, device::Service &service,
                       const std::function<void(const std::string &)> &say)
    : parts_(std::make_unique<Parts>(options, service, say)) {}

GnmiServer::~GnmiServer() = default;

int GnmiServer::port() const {
    return parts_->port;
}

} // namespace yfw::gnmi
