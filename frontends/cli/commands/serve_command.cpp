#include "frontends/cli/commands/serve_command.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iostream>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <grp.h>
#include <malloc.h>
#include <pwd.h>
#include <sys/resource.h>
#include <unistd.h>

#include "base/any_readable.h"
#include "base/error.h"
#include "base/say.h"
#include "base/stop_signals.h"
#include "device/commit_watch.h"
#include "device/drift_keeper.h"
#include "device/file_watch.h"
#include "device/keeper.h"
#include "device/neighbor_report.h"
#include "frontends/cli/options/device_options.h"
#include "frontends/cli/options/module_places.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/cli/options/option_checks.h"
#include "frontends/cli/output/print.h"
#include "frontends/cli/serving/gnmi_door.h"
#include "frontends/cli/serving/gnmi_program.h"
#include "frontends/cli/serving/ssh_tryout.h"
#include "frontends/cli/serving/stdio_joint.h"
#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/filters/defaults.h"
#include "frontends/netconf/transport/netconf_server.h"

namespace yfw::cli {
namespace {

constexpr const char *serve_help = R"(
Without --socket, it starts a private sshd on a loopback port with fresh keys, prints how to connect, and removes
everything at the end. With --socket, it serves the system's sshd, whose configuration needs the line
  Subsystem netconf /usr/bin/yfw netconf-stdio
With --gnmi, it serves gNMI beside NETCONF; without --cert, with throw-away certificates on a loopback port.

Examples:
  yfw serve
  yfw serve --device lldpd: --port 8300
  yfw serve --device lldpd: --socket /run/yfw/netconf.sock --writers netadmin --readers netops
  yfw serve --gnmi
  yfw serve --device lldpd: --gnmi 9339 --cert server.pem --key server.key --client-ca clients.pem
)";

constexpr const char *default_socket = "/run/yfw/netconf.sock";

struct ServeOptions {
    netconf::ServerOptions server;
    GnmiOptions gnmi;
    std::string socket;
    std::string nacm;
    std::string recovery_user;
    uint16_t port = 0;
    int hello_timeout = 30; // seconds
    int idle_timeout = 0;   // seconds; 0: none
    bool keep_applied = false;
    int drift_interval = 10; // seconds
    uint64_t largest_chunk = netconf::FrameLimits{}.chunk;
    uint64_t largest_message = netconf::FrameLimits{}.message;
};

void publish(netconf::EventStream &events, const netconf::ProtocolModules &modules,
             const device::NeighborReport &report) {
    netconf::publish_change(events, modules, std::string(device::to_string(report.change)), report.keys(),
                            netconf::print_data(report.answer.get()));
}

// The rules of the file; nothing when no file is given. Their paths may name nodes of the modules that clients
// are offered. Throws Error for an invalid file.
std::optional<access::Nacm> access_rules(const yang::ModuleFiles &files,
                                         const netconf::ProtocolModules &modules, const std::string &file) {
    if (file.empty())
        return std::nullopt;
    std::vector<std::string> names;
    for (const netconf::ModuleName &module : modules.modules())
        if (module.offered)
            names.push_back(module.name);
    return access::Nacm(file, files, names);
}

// Where the data of a recorded device is; nowhere for another one.
std::vector<std::filesystem::path> recorded_files(const DeviceOptions &options) {
    if (!options.native_files.empty())
        return options.native_files;
    std::error_code error;
    return std::filesystem::is_directory(options.device, error) ? std::vector{options.device}
                                                                : std::vector<std::filesystem::path>();
}

// Calls `ready` when clients can connect; serves until the descriptor that it returns becomes readable.
void serve_device(const DeviceOptions &options, const netconf::ServerOptions &server_options,
                  const ServeOptions &serve, const GnmiDoors *doors, const std::function<int()> &ready) {
    netconf::NetconfServer::require_unanswered(server_options.socket); // the likeliest reason first
    NamedDevice named(options, sources::Use::serving);
    std::vector<std::filesystem::path> directories = {options.openconfig_models, options.native_models};
    for (const std::filesystem::path &imports : import_directories(options.openconfig_models))
        directories.push_back(imports);
    const yang::ModuleFiles files(directories);
    const netconf::ProtocolModules modules(files, named.device.mapping(), !serve.nacm.empty(),
                                           named.schemas.deviations());
    device::Service service(named.device, access_rules(files, modules, serve.nacm), serve.recovery_user);
    netconf::EventStream events;
    netconf::NetconfServer server(server_options, service, modules, events);
    const device::NeighborReporter reporter(named.device);
    const auto on_neighbor = [&](sources::NeighborEvent event) {
        service.events().tell_state_change();
        if (const auto report = reporter.report(std::move(event)))
            publish(events, modules, *report);
    };
    if (named.device.restore_after_restart())
        say("the device was restarted, or a commit to it was interrupted; it has its configuration again");
    const device::CommitWatch commit_watch(service, say);
    const auto on_change = [&service] { service.events().tell_state_change(); };
    const device::Keeper keeper(named.device, on_neighbor, say, on_change);
    const device::FileWatch file_watch(recorded_files(options), on_change, say);
    std::optional<device::DriftKeeper> drift_keeper;
    if (serve.keep_applied && named.device.is_applied_to())
        drift_keeper.emplace(
            service, std::chrono::seconds(serve.drift_interval), say,
            [&](const std::vector<std::string> &paths) { netconf::publish_reapplied(events, modules, paths); });
    std::unique_ptr<GnmiDoor> gnmi;
    if (serve.gnmi.is_wanted)
        gnmi = doors->open(serve.gnmi, server_options.groups, service);
    const int end = ready();
    if (gnmi != nullptr) {
        std::cout << gnmi->instructions();
        finish_output();
    }
    server.run(end);
    gnmi.reset();
    service.end();
}

// Each session takes a descriptor, and the usual limit is 1024.
void permit_many_descriptors() {
    constexpr rlim_t enough = 65536;
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur >= enough)
        return;
    limit.rlim_cur = std::min(limit.rlim_max, enough);
    setrlimit(RLIMIT_NOFILE, &limit); // on failure, fewer sessions fit
}

// Each thread has an arena of its own, and keeps up to 64 MiB that it has freed there after a large answer,
// unless the threshold is set.
void return_freed_memory() {
    constexpr int kept = 256 * 1024;
    ::mallopt(M_TRIM_THRESHOLD, kept);
}

// Without its SSH server nobody could reach the server any more.
void serve_with_ssh(const DeviceOptions &device, const ServeOptions &options, netconf::ServerOptions server,
                    const GnmiDoors *gnmi, int stop) {
    SshTryout ssh(options.port);
    server.socket = ssh.socket();
    server.groups.owner = geteuid();
    std::optional<AnyReadable> end;
    serve_device(device, server, options, gnmi, [&] {
        ssh.start();
        std::cout << ssh.instructions();
        finish_output();
        return end.emplace(std::initializer_list<int>{stop, ssh.end_descriptor()}).descriptor();
    });
    ssh.require_running();
}

// A misspelt group would keep its users out without a word.
void require_group(const std::string &option, const std::string &group) {
    if (getgrnam(group.c_str()) == nullptr)
        throw Error(ErrorTag::invalid_value, option, "this machine has no group \"" + group + "\"");
}

// Nobody would be exempt from the access rules, where somebody was meant to be.
void require_user(const std::string &option, const std::string &user) {
    if (getpwnam(user.c_str()) == nullptr)
        throw Error(ErrorTag::invalid_value, option, "this machine has no user \"" + user + "\"");
}

void run_serve(const DeviceOptions &device, const ServeOptions &options, const GnmiDoors *gnmi) {
    if (options.gnmi.is_wanted && gnmi == nullptr)
        continue_with_gnmi();
    if (options.gnmi.is_wanted)
        gnmi->check(options.gnmi);
    const StopSignals stop;
    permit_many_descriptors();
    return_freed_memory();
    std::signal(SIGPIPE, SIG_IGN); // a vanished client shows as a write error instead
    netconf::ServerOptions server = options.server;
    server.hello_timeout = std::chrono::seconds(options.hello_timeout);
    server.idle_timeout = std::chrono::seconds(options.idle_timeout);
    server.limits = {options.largest_chunk, options.largest_message};
    if (!options.socket.empty()) {
        server.socket = options.socket;
        serve_device(device, server, options, gnmi, [&] {
            say("NETCONF on " + server.socket.string());
            return stop.descriptor();
        });
        return;
    }
    serve_with_ssh(device, options, server, gnmi, stop.descriptor());
}

} // namespace

namespace {

// `options` must outlive the command.
void add_gnmi_options(CLI::App &serve, GnmiOptions &options) {
    auto *gnmi = serve.add_option_function<std::string>(
        "--gnmi",
        [&options](const std::string &address) {
            options.is_wanted = true;
            options.address = address;
        },
        "Serve gNMI, too; default: on a free loopback port");
    gnmi->expected(0, 1)->option_text("[HOST:]PORT");
    const auto add = [&](const char *name, std::string &value, const char *help) {
        serve.add_option(name, value, help)->needs(gnmi)->option_text("FILE");
    };
    add("--cert", options.certificate, "gNMI: the server's certificate, PEM; read again when it changes");
    add("--key", options.key, "gNMI: its key, PEM");
    add("--client-ca", options.client_ca,
        "gNMI: who signs clients' certificates, PEM; every client needs one then");
    serve
        .add_flag("--insecure", options.is_insecure, "gNMI: plaintext, on a loopback address or unix:PATH only")
        ->needs(gnmi);
}

} // namespace

void add_serve(CLI::App &app, DeviceOptions &device, const GnmiDoors *gnmi) {
    const auto options = std::make_shared<ServeOptions>();
    CLI::App *serve = app.add_subcommand("serve", "Serve a device over NETCONF and gNMI");
    serve->footer(serve_help);
    auto *socket =
        serve->add_option("--socket", options->socket, "Unix socket to serve on, behind the system's sshd");
    socket->option_text("PATH");
    serve->add_option("--port", options->port, "Loopback port of the private sshd; default: a free one")
        ->check(number_range(0, 65535))
        ->option_text("PORT")
        ->excludes(socket);
    auto *readers =
        serve->add_option("--readers", options->server.groups.readers, "Group of users who may read")
            ->capture_default_str()
            ->option_text("GROUP");
    auto *writers =
        serve->add_option("--writers", options->server.groups.writers, "Group of users who may read and edit")
            ->capture_default_str()
            ->option_text("GROUP");
    serve
        ->add_option("--nacm", options->nacm,
                     "File of further access rules: a <nacm> document of ietf-netconf-acm")
        ->option_text("FILE");
    auto *recovery = serve->add_option("--recovery-user", options->recovery_user,
                                       "User to whom these rules do not apply, and who may edit them");
    recovery->option_text("USER");
    auto *keep = serve->add_flag("--keep-applied", options->keep_applied,
                                 "Apply the last commit again when the device is changed by other means");
    serve
        ->add_option("--drift-interval", options->drift_interval,
                     "How often to look whether it was; default 10")
        ->check(number_range(1, 86400))
        ->needs(keep)
        ->option_text("SECONDS");
    serve->add_option("--max-chunk", options->largest_chunk, "Longest chunk that is accepted; default: 10 MiB")
        ->check(number_range(1, 4294967295))
        ->option_text("BYTES");
    serve
        ->add_option("--hello-timeout", options->hello_timeout,
                     "How long a client may take to send its <hello>; default: 30")
        ->check(number_range(1, 3600))
        ->option_text("SECONDS");
    serve
        ->add_option("--idle-timeout", options->idle_timeout,
                     "End sessions that send nothing for so long and have no subscription; default: 0, never")
        ->check(number_range(0, 31536000))
        ->option_text("SECONDS");
    serve
        ->add_option("--max-sessions", options->server.most_sessions,
                     "How many sessions there may be at once; default: 0, no limit")
        ->check(number_range(0, 4294967295))
        ->option_text("NUMBER");
    serve
        ->add_option("--max-message", options->largest_message,
                     "Longest message that is accepted; default: 64 MiB")
        ->check(number_range(1, std::numeric_limits<int64_t>::max()))
        ->option_text("BYTES");
    add_gnmi_options(*serve, options->gnmi);
    add_device_options(*serve, device);
    serve->callback([&device, options, gnmi, readers, writers, recovery] {
        if (readers->count() > 0)
            require_group("--readers", options->server.groups.readers);
        if (writers->count() > 0)
            require_group("--writers", options->server.groups.writers);
        if (recovery->count() > 0)
            require_user("--recovery-user", options->recovery_user);
        run_serve(device, *options, gnmi);
    });

    CLI::App *stdio =
        app.add_subcommand("netconf-stdio", "Connect standard input and output to the server's socket");
    stdio->footer(
        "\nFor sshd:\n  Subsystem netconf /usr/bin/yfw netconf-stdio --socket /run/yfw/netconf.sock\n");
    const auto joined = std::make_shared<std::string>(default_socket);
    stdio->add_option("--socket", *joined, "The server's socket")->capture_default_str()->option_text("PATH");
    stdio->callback([joined] { join_standard_streams(*joined); });
}

} // namespace yfw::cli
