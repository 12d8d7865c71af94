#include "frontends/cli/serving/ssh_tryout.h"

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <thread>

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/error.h"
#include "base/run_program.h"
#include "base/system_error.h"
#include "frontends/cli/options/current_user.h"

namespace yfw::cli {
namespace {

constexpr const char *needed_by = "serving over SSH";

// How long the daemon may take to start, and to end.
constexpr std::chrono::seconds patience{10};

sockaddr_in loopback(uint16_t port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    address.sin_port = htons(port);
    return address;
}

// Another process may take the port before the daemon does.
uint16_t free_port() {
    const Descriptor probe(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0));
    sockaddr_in address = loopback(0);
    socklen_t length = sizeof address;
    if (bind(probe.get(), reinterpret_cast<sockaddr *>(&address), length) != 0 ||
        getsockname(probe.get(), reinterpret_cast<sockaddr *>(&address), &length) != 0)
        throw Error(ErrorTag::resource_denied, "127.0.0.1", "no free port: " + system_error_text());
    return ntohs(address.sin_port);
}

constexpr int free_ports_to_try = 5;

std::string contents_of(const std::filesystem::path &file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

} // namespace

SshTryout::SshTryout(uint16_t port)
    : sshd_(find_program("sshd", "openssh-server", needed_by)), wanted_port_(port) {
    make_keys();
}

SshTryout::~SshTryout() {
    daemon_.end(patience);
}

void SshTryout::make_keys() const {
    const std::string keygen = find_program("ssh-keygen", "openssh-client", needed_by);
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
    const std::string netconf = std::filesystem::read_symlink("/proc/self/exe").string() +
                                " netconf-stdio --socket " + socket().string();
    std::ofstream config(files_.path() / "sshd_config");
    config << "Port " << port_ << "\nListenAddress 127.0.0.1\n"
           << "HostKey " << (files_.path() / "host_ed25519").string() << '\n'
           << "HostKey " << (files_.path() / "host_ecdsa").string() << '\n'
           << "AuthorizedKeysFile " << (files_.path() / "authorized_keys").string() << '\n'
           << "PidFile none\nUsePAM no\nStrictModes no\nPasswordAuthentication "
              "no\nKbdInteractiveAuthentication no\n"
           << "PermitRootLogin prohibit-password\nAllowUsers " << current_user() << '\n'
           << "AllowTcpForwarding no\nX11Forwarding no\nPermitTTY no\nLogLevel INFO\n"
           << "Subsystem netconf " << netconf << "\nForceCommand " << netconf << '\n'; // no shell
    if (!config.flush())
        throw Error(ErrorTag::operation_failed, (files_.path() / "sshd_config").string(), "cannot be written");
    if (geteuid() == 0)
        mkdir("/run/sshd", 0755); // sshd requires it; it exists where sshd already runs
}

void SshTryout::start() {
    for (int tried = 1;; tried++) {
        port_ = wanted_port_ != 0 ? wanted_port_ : free_port();
        write_configuration();
        const std::optional<std::string> failure = start_daemon();
        if (!failure.has_value())
            return;
        if (wanted_port_ != 0 || tried == free_ports_to_try)
            throw Error(ErrorTag::operation_failed, "sshd", "does not start: " + *failure);
    }
}

// Returns the reason if the daemon does not start; nothing if it does.
std::optional<std::string> SshTryout::start_daemon() {
    const std::filesystem::path log = files_.path() / "sshd.log";
    std::filesystem::remove(log);
    daemon_ = Process(
        Program{.arguments = {sshd_, "-D", "-f", (files_.path() / "sshd_config").string(), "-E", log.string()},
                .errors = STDERR_FILENO,
                .in_own_group = true, // Ctrl-C ends the server, which then ends it
                .ends_with_parent = true}); // even if the server crashes
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        const bool runs = daemon_.runs(); // checked first, so that the log has the daemon's last words
        const std::string said = contents_of(log);
        if (said.find("Server listening on 127.0.0.1 port ") != std::string::npos)
            return std::nullopt;
        if (!runs || std::chrono::steady_clock::now() > end)
            return said.substr(0, said.find_first_of("\r\n"));
        std::this_thread::sleep_for(std::chrono::milliseconds(20));
    }
}

void SshTryout::require_running() {
    if (!daemon_.runs())
        throw Error(ErrorTag::operation_failed, "sshd", "has ended, and with it the server");
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
