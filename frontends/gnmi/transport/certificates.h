// The server's certificates.
#ifndef YFW_FRONTENDS_GNMI_TRANSPORT_CERTIFICATES_H
#define YFW_FRONTENDS_GNMI_TRANSPORT_CERTIFICATES_H

#include <filesystem>
#include <memory>

#include <grpcpp/security/server_credentials.h>

namespace yfw::gnmi {

// Files in PEM.
struct TlsFiles {
    std::filesystem::path certificate; // the server's, with those between it and its CA
    std::filesystem::path key;
    std::filesystem::path client_ca; // those who sign clients' certificates; empty: clients need none
};

// Throws Error, naming the option at fault, when the files cannot be used.
void check_files(const TlsFiles &files);

// TLS 1.2 or newer. With a client CA, a client without a certificate of it is turned away. Replaced files are
// in use for new connections within seconds.
std::shared_ptr<grpc::ServerCredentials> credentials_of(const TlsFiles &files);

} // namespace yfw::gnmi

#endif
