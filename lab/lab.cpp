#include "lab/lab.h"

#include <chrono>
#include <stdexcept>
#include <thread>
#include <utility>

#include <sys/stat.h>
#include <unistd.h>

#include "base/error.h"
#include "base/unix_socket.h"
#include "lab/daemon.h"
#include "lab/daemon_questions.h"
#include "lab/interruption.h"
#include "lab/lab_state.h"
#include "lab/network.h"
#include "lab/programs.h"
#include "lab/removal.h"

namespace yfw::lab {
namespace {

namespace fs = std::filesystem;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{30};
constexpr std::chrono::milliseconds pause_between_looks{100};

// lldpd's own user must be able to read the files written here, whatever the caller's umask.
class OpenMask {
public:
    OpenMask() : before_(::umask(022)) {}
    ~OpenMask() { ::umask(before_); }
    OpenMask(const OpenMask &) = delete;
    OpenMask &operator=(const OpenMask &) = delete;

private:
    mode_t before_;
};

void require_root() {
    if (::geteuid() != 0)
        throw Error(ErrorTag::resource_denied, "",
                    "the laboratory needs root for its network namespaces: run it with sudo");
}

void check_sockets(const Place &place, const Topology &topology) {
    for (const Router &router : topology.routers)
        if (const fs::path socket = place.socket(router.name); socket.string().size() > longest_socket_path)
            throw Error(ErrorTag::invalid_value, socket.string(),
                        "expected a socket path of at most " + std::to_string(longest_socket_path) +
                            " bytes: use a shorter directory");
}

void refuse_what_is_up(const Place &place) {
    const std::optional<LabState> state = load(place);
    if (state && state->complete)
        throw Error(ErrorTag::data_exists, place.directory().string(),
                    "laboratory " + place.name +
                        " is already up: see yfw lab status, or remove it with yfw lab down");
}

// Creates a laboratory step by step. Everything is recorded before it is created.
class Construction {
public:
    Construction(Place place, const Topology &topology, int tx_interval, int lock, Progress progress)
        : place_(std::move(place)), network_(place_, lock), progress_(std::move(progress)) {
        state_.boot = boot_identity();
        state_.tx_interval = tx_interval;
        state_.topology = topology;
    }

    void run() {
        save(state_, place_);
        make_namespaces();
        make_network();
        for (const Router &router : state_.topology.routers)
            start_daemon(router);
        for (const Router &router : state_.topology.routers)
            wait_for(router);
        switch_on();
        wake_silent_ports();
        state_.complete = true;
        save(state_, place_);
    }

private:
    void step(const std::string &line) {
        Interruption::check();
        progress_(line);
    }

    void make_namespaces() {
        for (const Router &router : state_.topology.routers)
            make_namespace(place_.namespace_of(router.name));
        for (const Segment &segment : state_.topology.segments)
            make_namespace(place_.namespace_of(segment.name));
    }

    void make_namespace(const std::string &name) {
        step("creating the namespace " + name);
        if (fs::exists(namespace_file(name)))
            throw Error(
                ErrorTag::data_exists, name,
                "a network namespace with this name already exists and is not this laboratory's: remove it "
                "with ip netns del, or use another --name");
        state_.namespaces.push_back({name, 0});
        save(state_, place_);
        network_.make_namespace(name);
        state_.namespaces.back().inode = inode_of_namespace(name);
        save(state_, place_);
    }

    // Everything created here is in the namespaces and is removed with them.
    void make_network() {
        for (const Link &link : state_.topology.links) {
            step("connecting " + link.first.router + " " + link.first.interface + " and " + link.second.router +
                 " " + link.second.interface);
            network_.connect(link);
        }
        for (const Segment &segment : state_.topology.segments) {
            step("connecting the segment " + segment.name);
            network_.connect(segment);
        }
        for (const Router &router : state_.topology.routers)
            network_.add_addresses(router);
    }

    void start_daemon(const Router &router) {
        step("starting the daemon of " + router.name);
        WaitingDaemon daemon(place_, router, state_.topology.interfaces_of(router.name), state_.tx_interval);
        state_.daemons.push_back({router.name, daemon.process()});
        save(state_, place_);
        daemon.release();
    }

    void wait_for(const Router &router) {
        step("waiting for the daemon of " + router.name);
        const auto deadline = Clock::now() + patience;
        while (configured_name(place_.socket(router.name)) != router.system_name) {
            Interruption::check();
            const bool runs = state_.runs(router.name);
            if (!runs || Clock::now() >= deadline)
                throw std::runtime_error("the daemon of " + router.name +
                                         (runs ? " does not answer: " : " has ended: ") +
                                         last_words(place_, router.name));
            std::this_thread::sleep_for(pause_between_looks);
        }
    }

    // Called once the daemons are running: one that hears many neighbors while starting up stays silent on some
    // of its ports.
    void switch_on() {
        step("switching on the ports");
        for (const Router &router : state_.topology.routers)
            network_.switch_on(router);
    }

    std::vector<Port> silent_ports() const {
        std::vector<Port> silent;
        for (const Router &router : state_.topology.routers)
            for (const std::string &interface : silent_interfaces(place_.socket(router.name)))
                silent.push_back({router.name, interface});
        return silent;
    }

    // A daemon sends as soon as a port comes up. When hundreds come up at once it may miss one, so that port is
    // switched off and on again.
    void wake_silent_ports() {
        constexpr int attempts = 3;
        for (int attempt = 0; attempt < attempts; attempt++) {
            const auto deadline = Clock::now() + std::chrono::seconds(3);
            std::vector<Port> silent = silent_ports();
            while (!silent.empty() && Clock::now() < deadline) {
                Interruption::check();
                std::this_thread::sleep_for(pause_between_looks);
                silent = silent_ports();
            }
            if (silent.empty())
                return;
            step("waking " + std::to_string(silent.size()) + " silent ports");
            for (const Port &port : silent)
                network_.flap(port);
        }
    }

    Place place_;
    Network network_;
    Progress progress_;
    LabState state_;
};

// Called from an exception handler, which rethrows: reports its own failure and does not throw.
void remove_after_failure(const Place &place, LabDirectory &directory, const Progress &progress) {
    try {
        remove_all(place, directory, progress);
    } catch (const std::exception &error) {
        progress(std::string(error.what()) + "; yfw lab down removes what is left");
    }
}

} // namespace

void up(const Place &given, const Topology &topology, int tx_interval, const Progress &progress) {
    require_root();
    lldpd_program();
    lldpcli_program();
    ip_program();
    const Place place = checked(given);
    check_sockets(place, topology);
    if (place.base != Place().base)
        check_open_to_all(place.base);
    const OpenMask mask;
    const Interruption interruption;
    LabDirectory directory = LabDirectory::make(place);
    refuse_what_is_up(place);
    try {
        remove_made(place, directory, progress);
        Construction(place, topology, tx_interval, directory.lock(), progress).run();
    } catch (const Interrupted &) {
        remove_after_failure(place, directory, progress);
        throw std::runtime_error("interrupted");
    } catch (...) {
        remove_after_failure(place, directory, progress);
        throw;
    }
}

bool down(const Place &given, const Progress &progress) {
    require_root();
    const Place place = checked(given);
    const Interruption interruption; // a removal must not be interrupted halfway
    std::optional<LabDirectory> directory = LabDirectory::open(place);
    if (!directory)
        return false;
    remove_all(place, *directory, progress);
    return true;
}

Status status(const Place &given) {
    const Place place = checked(given);
    const std::optional<LabState> state = load(place);
    Status result;
    if (!state)
        return result;
    result.phase = state->complete ? Status::Phase::up : Status::Phase::incomplete;
    for (const Router &router : state->topology.routers)
        result.routers.push_back({router.name, place.socket(router.name), state->runs(router.name)});
    result.links = state->topology.links;
    result.segments = state->topology.segments;
    return result;
}

std::vector<LabRouter> running_lab(const std::string &name, const fs::path &base) {
    const Status found = status({name, base});
    if (found.phase == Status::Phase::none)
        throw Error(ErrorTag::data_missing, "", "laboratory " + name + " is not up: create it with yfw lab up");
    if (found.phase == Status::Phase::incomplete)
        throw Error(ErrorTag::data_missing, "",
                    "laboratory " + name +
                        " is not complete: wait for yfw lab up, or remove it with yfw lab down");
    std::vector<LabRouter> routers;
    for (const RouterStatus &router : found.routers)
        routers.push_back({router.name, router.socket});
    return routers;
}

} // namespace yfw::lab
