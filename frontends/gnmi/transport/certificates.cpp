#include "frontends/gnmi/transport/certificates.h"

#include <memory>

#include <grpcpp/security/tls_certificate_provider.h>
#include <grpcpp/security/tls_credentials_options.h>
#include <openssl/err.h>
#include <openssl/ssl.h>
#include <unistd.h>

#include "base/error.h"
#include "base/system_error.h"

namespace yfw::gnmi {
namespace {

constexpr unsigned seconds_between_looks = 1;

[[noreturn]] void refuse(const char *option, const std::filesystem::path &file, const std::string &what) {
    const char *reason = ERR_reason_error_string(ERR_peek_last_error());
    ERR_clear_error();
    throw Error(ErrorTag::invalid_value, option,
                file.string() + " " + what + (reason != nullptr ? std::string(": ") + reason : ""));
}

void require_readable(const char *option, const std::filesystem::path &file) {
    if (::access(file.c_str(), R_OK) != 0)
        throw Error(ErrorTag::invalid_value, option, file.string() + ": " + system_error_text());
}

} // namespace

void check_files(const TlsFiles &files) {
    require_readable("--cert", files.certificate);
    require_readable("--key", files.key);
    if (!files.client_ca.empty())
        require_readable("--client-ca", files.client_ca);
    const std::unique_ptr<SSL_CTX, void (*)(SSL_CTX *)> context(SSL_CTX_new(TLS_server_method()), SSL_CTX_free);
    ERR_clear_error();
    if (SSL_CTX_use_certificate_chain_file(context.get(), files.certificate.c_str()) != 1)
        refuse("--cert", files.certificate, "is not a certificate in PEM");
    if (SSL_CTX_use_PrivateKey_file(context.get(), files.key.c_str(), SSL_FILETYPE_PEM) != 1 ||
        SSL_CTX_check_private_key(context.get()) != 1)
        refuse("--key", files.key, "is not the key of the certificate " + files.certificate.string());
    if (!files.client_ca.empty() &&
        SSL_CTX_load_verify_locations(context.get(), files.client_ca.c_str(), nullptr) != 1)
        refuse("--client-ca", files.client_ca, "has no certificates in PEM");
}

std::shared_ptr<grpc::ServerCredentials> credentials_of(const TlsFiles &files) {
    namespace tls = grpc::experimental;
    const bool is_mutual = !files.client_ca.empty();
    const auto provider = std::make_shared<tls::FileWatcherCertificateProvider>(
        files.key.string(), files.certificate.string(), files.client_ca.string(), seconds_between_looks);
    tls::TlsServerCredentialsOptions options(provider);
    options.watch_identity_key_cert_pairs();
    if (is_mutual)
        options.watch_root_certs();
    options.set_cert_request_type(is_mutual ? GRPC_SSL_REQUEST_AND_REQUIRE_CLIENT_CERTIFICATE_AND_VERIFY
                                            : GRPC_SSL_DONT_REQUEST_CLIENT_CERTIFICATE);
    return tls::TlsServerCredentials(options);
}

} // namespace yfw::gnmi
