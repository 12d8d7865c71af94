// The gNMI server.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_GNMI_SERVER_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_GNMI_SERVER_H

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "device/access/groups.h"
#include "device/service.h"
#include "frontends/gnmi/transport/certificates.h"
#include "frontends/gnmi/transport/listen_address.h"
#include "frontends/gnmi/transport/password_check.h"

namespace yfw::gnmi {

struct ServerOptions {
    ListenAddress address;
    std::optional<TlsFiles> tls; // nothing: plaintext, on a local address only
    access::AccessGroups groups;
    size_t threads = 6; // workers; at least WorkerPool::fewest_threads
    PasswordCheck is_password_of = yfw::gnmi::is_password_of;
};

// Serves from its construction to its destruction, on threads of its own. Borrows the service.
class GnmiServer {
public:
    // `say`: takes messages for the server's operator, on any thread. Throws Error when the address is taken,
    // the files of TLS cannot be used, or plaintext would leave this machine.
    GnmiServer(const ServerOptions &options, device::Service &service,
               const std::function<void(const std::string &)> &say);
    // Ends all streams and waits for what is being answered.
    ~GnmiServer();
    GnmiServer(const GnmiServer &) = delete;
    GnmiServer &operator=(const GnmiServer &) = delete;

    // The port that it listens on, when any free one was asked for; 0 for a Unix socket.
    int port() const;

private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace yfw::gnmi

#endif
