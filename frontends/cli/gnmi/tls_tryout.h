// Throw-away certificates for trying out the gNMI server.
#ifndef YFW_FRONTENDS_CLI_GNMI_TLS_TRYOUT_H
#define YFW_FRONTENDS_CLI_GNMI_TLS_TRYOUT_H

#include <filesystem>
#include <string>

#include "base/private_directory.h"

namespace yfw::cli {

// A certificate authority and one certificate each for the server and for a client, with their keys, all in one
// directory, which only this user can read and which is removed with the object.
class TlsTryout {
public:
    // `user`: whom the client's certificate names. Throws Error when the files cannot be made.
    explicit TlsTryout(const std::string &user);

    std::filesystem::path authority() const { return files_.path() / "ca.pem"; }
    std::filesystem::path certificate() const { return files_.path() / "server.pem"; }
    std::filesystem::path key() const { return files_.path() / "server.key"; }

    // Text for the user: how to connect to the server on this host and port.
    std::string instructions(const std::string &host, int port) const;

private:
    PrivateDirectory files_{"yfw-gnmi"};
    std::string user_;
};

} // namespace yfw::cli

#endif
