#include "frontends/cli/gnmi/tls_tryout.h"

#include <cstdio>
#include <memory>

#include <fcntl.h>
#include <openssl/err.h>
#include <openssl/evp.h>
#include <openssl/pem.h>
#include <openssl/rand.h>
#include <openssl/x509v3.h>

#include "base/error.h"

namespace yfw::cli {
namespace {

constexpr long valid_seconds = 30L * 24 * 3600;

struct Free {
    void operator()(EVP_PKEY *key) const { EVP_PKEY_free(key); }
    void operator()(X509 *certificate) const { X509_free(certificate); }
    void operator()(X509_EXTENSION *extension) const { X509_EXTENSION_free(extension); }
    void operator()(BIO *bio) const { BIO_free(bio); }
};
using Key = std::unique_ptr<EVP_PKEY, Free>;
using Certificate = std::unique_ptr<X509, Free>;

void require(bool done, const std::string &what) {
    if (!done)
        throw Error(ErrorTag::operation_failed, what,
                    ERR_reason_error_string(ERR_peek_last_error()) != nullptr
                        ? ERR_reason_error_string(ERR_peek_last_error())
                        : "cannot be made");
}

// Whom a certificate is for, and who signs it.
struct Subject {
    std::string name;         // the common name
    const char *alternatives; // NULL for none
    const char *usage;        // NULL for an authority
};
struct Signer {
    EVP_PKEY *key;
    X509 *certificate; // NULL: the certificate signs itself
};

void add_extension(X509 *to, X509 *signer, int kind, const char *value) {
    X509V3_CTX context{};
    X509V3_set_ctx_nodb(&context);
    X509V3_set_ctx(&context, signer, to, nullptr, nullptr, 0);
    const std::unique_ptr<X509_EXTENSION, Free> extension(X509V3_EXT_conf_nid(nullptr, &context, kind, value));
    require(extension != nullptr && X509_add_ext(to, extension.get(), -1) == 1, "certificate");
}

void set_serial(X509 *certificate) {
    uint64_t number = 0;
    require(RAND_bytes(reinterpret_cast<unsigned char *>(&number), sizeof number) == 1, "serial number");
    ASN1_INTEGER_set_uint64(X509_get_serialNumber(certificate), number >> 1);
}

Certificate signed_certificate(const Subject &subject, EVP_PKEY *key, const Signer &signer) {
    Certificate made(X509_new());
    X509_set_version(made.get(), X509_VERSION_3);
    set_serial(made.get());
    X509_gmtime_adj(X509_getm_notBefore(made.get()), -60); // clocks differ a little
    X509_gmtime_adj(X509_getm_notAfter(made.get()), valid_seconds);
    X509_NAME_add_entry_by_txt(X509_get_subject_name(made.get()), "CN", MBSTRING_UTF8,
                               reinterpret_cast<const unsigned char *>(subject.name.c_str()), -1, -1, 0);
    X509 *const issuer = signer.certificate != nullptr ? signer.certificate : made.get();
    X509_set_issuer_name(made.get(), X509_get_subject_name(issuer));
    X509_set_pubkey(made.get(), key);
    const bool is_authority = subject.usage == nullptr;
    add_extension(made.get(), issuer, NID_basic_constraints,
                  is_authority ? "critical,CA:TRUE" : "critical,CA:FALSE");
    add_extension(made.get(), issuer, NID_key_usage,
                  is_authority ? "critical,keyCertSign,cRLSign" : "critical,digitalSignature");
    add_extension(made.get(), issuer, NID_subject_key_identifier, "hash");
    if (!is_authority)
        add_extension(made.get(), issuer, NID_ext_key_usage, subject.usage);
    if (subject.alternatives != nullptr)
        add_extension(made.get(), issuer, NID_subject_alt_name, subject.alternatives);
    require(X509_sign(made.get(), signer.key, EVP_sha256()) != 0, "certificate");
    return made;
}

Key new_key() {
    Key key(EVP_EC_gen("P-256"));
    require(key != nullptr, "key");
    return key;
}

// Only its owner may read a key, from the beginning on.
template <class Write> void write_pem(const std::filesystem::path &file, Write &&write) {
    const int descriptor = open(file.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    std::FILE *stream = descriptor >= 0 ? fdopen(descriptor, "w") : nullptr;
    require(stream != nullptr, file.string());
    const std::unique_ptr<BIO, Free> bio(BIO_new_fp(stream, BIO_CLOSE));
    require(write(bio.get()) == 1 && BIO_flush(bio.get()) == 1, file.string());
}

void write_key(const std::filesystem::path &file, const Key &key) {
    write_pem(file, [&key](BIO *to) {
        return PEM_write_bio_PrivateKey(to, key.get(), nullptr, nullptr, 0, nullptr, nullptr);
    });
}

void write_certificate(const std::filesystem::path &file, const Certificate &certificate) {
    write_pem(file, [&certificate](BIO *to) { return PEM_write_bio_X509(to, certificate.get()); });
}

} // namespace

TlsTryout::TlsTryout(const std::string &user) : user_(user) {
    ERR_clear_error();
    const Key authority_key = new_key(); // nobody needs it again: it is not written
    const Certificate authority_certificate = signed_certificate(
        {"yfw serve, throw-away", nullptr, nullptr}, authority_key.get(), {authority_key.get(), nullptr});
    write_certificate(authority(), authority_certificate);
    const Signer signer{authority_key.get(), authority_certificate.get()};
    const Key server_key = new_key();
    write_key(key(), server_key);
    write_certificate(certificate(),
                      signed_certificate({"localhost", "DNS:localhost,IP:127.0.0.1,IP:::1", "serverAuth"},
                                         server_key.get(), signer));
    const Key client_key = new_key();
    write_key(files_.path() / "client.key", client_key);
    write_certificate(files_.path() / "client.pem",
                      signed_certificate({user, nullptr, "clientAuth"}, client_key.get(), signer));
}

std::string TlsTryout::instructions(const std::string &host, int port) const {
    const std::string at = files_.path().string();
    const std::string number = std::to_string(port);
    const bool is_ipv6 = host.find(':') != std::string::npos;
    const std::string address = (is_ipv6 ? "[" + host + "]" : host) + ":" + number;
    return "gNMI on " + address + ", user " + user_ + ", certificates in " + at + "\n\n  gnmic -a " + address +
           " --tls-ca " + at + "/ca.pem --tls-cert " + at + "/client.pem --tls-key " + at +
           "/client.key get --path /lldp\n\nfrom pygnmi.client import gNMIclient\nwith "
           "gNMIclient(target=(\"" +
           host + "\", " + number + "), path_root=\"" + at + "/ca.pem\",\n                path_cert=\"" + at +
           "/client.pem\", path_key=\"" + at +
           "/client.key\") as client:\n    print(client.get(path=[\"/lldp\"]))\n\n";
}

} // namespace yfw::cli
