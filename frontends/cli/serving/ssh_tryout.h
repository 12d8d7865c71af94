// An SSH server of one's own, for trying the NETCONF server out.
#ifndef YFW_FRONTENDS_CLI_SERVING_SSH_TRYOUT_H
#define YFW_FRONTENDS_CLI_SERVING_SSH_TRYOUT_H

#include <filesystem>
#include <string>

#include <sys/types.h>

#include "base/private_directory.h"

namespace yfw::cli {

// An sshd on a loopback port, with host keys of its own and one authorised key, whose subsystem "netconf" is
// this program joined to a socket. Everything lies in one directory, which goes with the object.
class SshTryout {
public:
    // `port` 0: a free one. Throws Error that says what is missing.
    explicit SshTryout(uint16_t port);
    ~SshTryout();
    SshTryout(const SshTryout &) = delete;
    SshTryout &operator=(const SshTryout &) = delete;

    // The socket that the NETCONF server is to listen on.
    std::filesystem::path socket() const { return files_.path() / "netconf.sock"; }

    // Starts the daemon; to be called once the socket is listened on.
    void start();

    // How to connect, for the user.
    std::string instructions() const;

private:
    void make_keys() const;
    void write_configuration() const;
    void wait_until_it_listens() const;

    PrivateDirectory files_{"yfw-serve"};
    std::string sshd_;
    uint16_t port_;
    pid_t daemon_ = -1;
};

} // namespace yfw::cli

#endif
