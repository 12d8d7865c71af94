#include "frontends/cli/serving/gnmi_door.h"

#include <optional>

#include <unistd.h>

#include "base/error.h"
#include "base/say.h"
#include "frontends/cli/options/current_user.h"
#include "frontends/cli/serving/tls_tryout.h"
#include "frontends/gnmi/transport/gnmi_server.h"

namespace yfw::cli {
namespace {

constexpr const char *loopback_host = "127.0.0.1";

bool is_tryout(const GnmiOptions &options) {
    return options.certificate.empty() && !options.is_insecure;
}

gnmi::ListenAddress address_of(const GnmiOptions &options) {
    const bool is_private = options.certificate.empty(); // of this machine only, unless it says otherwise
    return gnmi::read_listen_address(options.address.empty() ? "0" : options.address, "--gnmi",
                                     is_private ? loopback_host : "");
}

} // namespace

struct GnmiDoor::Parts {
    Parts(const GnmiOptions &options, access::AccessGroups groups, device::Service &service) {
        gnmi::ServerOptions server_options;
        server_options.address = address_of(options);
        if (is_tryout(options)) {
            tryout.emplace(current_user());
            server_options.tls = gnmi::TlsFiles{tryout->certificate(), tryout->key(), tryout->authority()};
            groups.owner = geteuid(); // whom the certificate names
        } else if (!options.is_insecure) {
            server_options.tls = gnmi::TlsFiles{options.certificate, options.key, options.client_ca};
        }
        server_options.groups = groups;
        server = std::make_unique<gnmi::GnmiServer>(server_options, service, say);
        gnmi::ListenAddress listening = server_options.address;
        if (listening.socket.empty())
            listening.port = std::to_string(server->port());
        instructions =
            tryout.has_value() && listening.socket.empty()
                ? tryout->instructions(listening.host, server->port())
                : "gNMI on " + listening.text() + (options.is_insecure ? ", in plaintext" : "") + "\n";
    }

    std::optional<TlsTryout> tryout;
    std::unique_ptr<gnmi::GnmiServer> server;
    std::string instructions;
};

GnmiDoor::GnmiDoor(const GnmiOptions &options, access::AccessGroups groups, device::Service &service)
    : parts_(std::make_unique<Parts>(options, std::move(groups), service)) {}

GnmiDoor::~GnmiDoor() = default;

const std::string &GnmiDoor::instructions() const {
    return parts_->instructions;
}

void GnmiDoor::check(const GnmiOptions &options) {
    if (!options.is_wanted)
        return;
    const gnmi::ListenAddress address = address_of(options);
    if (options.certificate.empty() != options.key.empty())
        throw Error(ErrorTag::invalid_value, options.key.empty() ? "--key" : "--cert",
                    "is missing: a certificate and its key are given together");
    if (!options.client_ca.empty() && options.certificate.empty())
        throw Error(ErrorTag::invalid_value, "--client-ca", "needs the server's --cert and --key");
    if (options.is_insecure && !options.certificate.empty())
        throw Error(ErrorTag::invalid_value, "--insecure", "contradicts --cert");
    if (options.is_insecure && !address.is_local())
        throw Error(ErrorTag::invalid_value, "--insecure",
                    "plaintext is only served on a loopback address or a Unix socket, not on " +
                        address.text());
    if (is_tryout(options) && !address.is_local())
        throw Error(ErrorTag::invalid_value, "--gnmi",
                    "without --cert and --key only a loopback address can be served, not " + address.text());
}

} // namespace yfw::cli
