// A private SSH server for trying out the NETCONF server.
#ifndef YFW_FRONTENDS_CLI_SERVING_SSH_TRYOUT_H
#define YFW_FRONTENDS_CLI_SERVING_SSH_TRYOUT_H

#include <filesystem>
#include <optional>
#include <string>

#include "base/private_directory.h"
#include "base/process.h"

namespace yfw::cli {

// An sshd on a loopback port, with its own host keys and one authorised key. Its subsystem "netconf" is this
// program connected to a socket. All its files are in one directory, which is removed with the object.
class SshTryout {
public:
    // `port` 0: any free port. Throws Error naming what is missing.
    explicit SshTryout(uint16_t port);
    ~SshTryout();
    SshTryout(const SshTryout &) = delete;
    SshTryout &operator=(const SshTryout &) = delete;

    // The socket for the NETCONF server to listen on.
    std::filesystem::path socket() const { return files_.path() / "netconf.sock"; }

    // Starts the daemon; call once the server listens on the socket. Throws Error when it does not start, for
    // example because the port is in use.
    void start();

    // Readable once the daemon has ended by itself.
    int end_descriptor() const { return daemon_.end_descriptor(); }
    // Throws Error if the daemon has ended by itself.
    void require_running();

    // Text for the user: how to connect.
    std::string instructions() const;

private:
    void make_keys() const;
    void write_configuration() const;
    std::optional<std::string> start_daemon();

    PrivateDirectory files_{"yfw-serve"};
    std::string sshd_;
    uint16_t wanted_port_; // 0: any free port
    uint16_t port_ = 0;
    Process daemon_;
};

} // namespace yfw::cli

#endif
