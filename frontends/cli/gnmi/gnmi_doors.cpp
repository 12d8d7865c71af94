#include "frontends/cli/gnmi/gnmi_doors.h"

#include <optional>
#include <string>

#include <unistd.h>

#include "base/error.h"
#include "base/say.h"
#include "frontends/cli/gnmi/tls_tryout.h"
#include "frontends/cli/options/current_user.h"
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

class TlsDoor final : public GnmiDoor {
public:
    TlsDoor(const GnmiOptions &options, access::AccessGroups groups, device::Service &service) {
        gnmi::ServerOptions server_options;
        server_options.address = address_of(options);
        if (is_tryout(options)) {
            tryout_.emplace(current_user());
            server_options.tls = gnmi::TlsFiles{tryout_->certificate(), tryout_->key(), tryout_->authority()};
            groups.owner = geteuid(); // whom the certificate names
        } else if (!options.is_insecure) {
            server_options.tls = gnmi::TlsFiles{options.certificate, options.key, options.client_ca};
        }
        server_options.groups = groups;
        server_ = std::make_unique<gnmi::GnmiServer>(server_options, service, say);
        gnmi::ListenAddress listening = server_options.address;
        if (listening.socket.empty())
            listening.port = std::to_string(server_->port());
        instructions_ =
            tryout_.has_value() && listening.socket.empty()
                ? tryout_->instructions(listening.host, server_->port())
                : "gNMI on " + listening.text() + (options.is_insecure ? ", in plaintext" : "") + "\n";
    }

    const std::string &instructions() const override { return instructions_; }

private:
    std::optional<TlsTryout> tryout_;
    std::unique_ptr<gnmi::GnmiServer> server_;
    std::string instructions_;
};

} // namespace

std::unique_ptr<GnmiDoor> TlsDoors::open(const GnmiOptions &options, access::AccessGroups groups,
                                         device::Service &service) const {
    return std::make_unique<TlsDoor>(options, groups, service);
}

void TlsDoors::check(const GnmiOptions &options) const {
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
