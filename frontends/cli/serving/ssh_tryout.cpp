#include "frontends/cli/serving/ssh_tryout.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <thread>

#include <arpa/inet.h>
#include <fcntl.h>
#include <netinet/in.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/error.h"
#include "base/process.h"
#include "frontends/cli/options/current_user.h"

namespace yfw::cli {
namespace {

sockaddr_in loopback(uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

uint16_t free_port() {
    const Descriptor probe(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    if (bind(probe.get(), reinterpret_cast<sockaddr *>(&address), length) != 0 ||
        getsockname(probe.get(), reinterpret_cast<sockaddr *>(&address), &length) != 0)
        throw Error(ErrorTag::resource_denied, "127.0.0.1",
                    std::string("no free port: ") + std::strerror(errno));
    return ntohs(address.sin_port);
}

bool is_answered(uint16_t port) {
    const Descriptor probe(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    const sockaddr_in address = loopback(port);
    return connect(probe.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) == 0;
}

} // namespace

SshTryout::SshTryout(uint16_t port)
    : sshd_(find_program("sshd", "openssh-server")), port_(port != 0 ? port : free_port()) {
    make_keys();
    write_configuration();
}

SshTryout::~SshTryout() {
    if (daemon_ > 0) {
        kill(daemon_, SIGTERM);
        waitpid(daemon_, nullptr, 0);
    }
}

void SshTryout::make_keys() const {
    const std::string keygen = find_program("ssh-keygen", "openssh-client");
    for (const auto &[file, type] :
         {std::pair("host_ed25519", "ed25519"), {"host_ecdsa", "ecdsa"}, {"id", "ed25519"}}) {
        const Finished made =
            run({keygen, "-q", "-t", type, "-N", "", "-C", "yfw serve", "-f", (files_.path() / file).string()});
        if (made.status != 0)
            throw Error(ErrorTag::operation_failed, (files_.path() / file).string(), made.reason());
    }
    std::filesystem::copy_file(files_.path() / "id.pub", files_.path() / "authorized_keys");
}

void SshTryout::write_configuration() const {
    std::ofstream config(files_.path() / "sshd_config");
    config << "Port " << port_ << "\nListenAddress 127.0.0.1\n"
           << "HostKey " << (files_.path() / "host_ed25519").string() << '\n'
           << "HostKey " << (files_.path() / "host_ecdsa").string() << '\n'
           << "AuthorizedKeysFile " << (files_.path() / "authorized_keys").string() << '\n'
           << "PidFile none\nUsePAM no\nStrictModes no\nPasswordAuthentication "
              "no\nKbdInteractiveAuthentication no\n"
           << "PermitRootLogin prohibit-password\nAllowUsers " << current_user() << '\n'
           << "AllowTcpForwarding no\nX11Forwarding no\nPermitTTY no\n"
           << "Subsystem netconf " << std::filesystem::read_symlink("/proc/self/exe").string()
           << " netconf-stdio --socket " << socket().string() << '\n';
    if (!config.flush())
        throw Error(ErrorTag::operation_failed, (files_.path() / "sshd_config").string(), "cannot be written");
    if (geteuid() == 0)
        mkdir("/run/sshd", 0755); // sshd requires it; it exists where sshd already runs
}

void SshTryout::start() {
    const pid_t parent = getpid();
    daemon_ = fork();
    if (daemon_ < 0)
        throw Error(ErrorTag::resource_denied, "sshd", std::strerror(errno));
    if (daemon_ == 0) {
        prctl(PR_SET_PDEATHSIG, SIGTERM); // even if the server crashes
        if (getppid() != parent)
            _exit(127);
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        const std::string log = (files_.path() / "sshd.log").string();
        const std::string config = (files_.path() / "sshd_config").string();
        execl(sshd_.c_str(), sshd_.c_str(), "-D", "-f", config.c_str(), "-E", log.c_str(), nullptr);
        _exit(127);
    }
    wait_until_it_listens();
}

void SshTryout::wait_until_it_listens() const {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(10);
    while (!is_answered(port_)) {
        int status = 0;
        if (waitpid(daemon_, &status, WNOHANG) == daemon_ || std::chrono::steady_clock::now() > end) {
            std::ifstream log(files_.path() / "sshd.log");
            std::string reason;
            std::getline(log, reason);
            throw Error(ErrorTag::operation_failed, "sshd", "does not start: " + reason);
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

std::string SshTryout::instructions() const {
    const std::string key = (files_.path() / "id").string();
    const std::string port = std::to_string(port_);
    const std::string user = current_user();
    return "NETCONF on 127.0.0.1:" + port + ", user " + user + ", key " + key + "\n\n  ssh -p " + port +
           " -i " + key + " -o StrictHostKeyChecking=no -o UserKnownHostsFile=/dev/null -s " + user +
           "@127.0.0.1 netconf\n\n  from ncclient import manager\n  m = manager.connect(host=\"127.0.0.1\", "
           "port=" +
           port + ", username=\"" + user + "\",\n                      key_filename=\"" + key +
           "\", hostkey_verify=False)\n  print(m.get((\"subtree\", '<lldp "
           "xmlns=\"http://openconfig.net/yang/lldp\"/>')))"
           "\n\nCtrl-C ends it and removes the keys.\n";
}

} // namespace yfw::cli
