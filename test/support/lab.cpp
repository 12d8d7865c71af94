#include "support/lab.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <sstream>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <net/if.h>
#include <netpacket/packet.h>
#include <nlohmann/json.hpp>
#include <sched.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include "base/descriptor.h"
#include "base/run_program.h"
#include "lab/daemon.h"
#include "lab/daemon_questions.h"
#include "lab/network.h"
#include "lab/programs.h"
#include "support/eventually.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;

// The prefix of the test laboratories' names, followed by the number of the test's process.
constexpr const char *own_prefix = "yl";

// Runs a program, given by its path, and returns its output. Throws std::runtime_error when it fails.
std::string run_program(const std::string &program, const std::vector<std::string> &arguments) {
    std::vector<std::string> words{program};
    words.insert(words.end(), arguments.begin(), arguments.end());
    const Finished finished = yfw::run(words);
    if (finished.status != 0)
        throw std::runtime_error(program + ": " + finished.reason());
    return finished.output;
}

[[noreturn]] void fail_with_errno(const std::string &doing) {
    throw std::runtime_error(doing + ": " + std::strerror(errno));
}

void send_from(const std::string &name_space, const std::string &interface,
               const std::vector<std::string> &frames) {
    const Descriptor space(::open(lab::namespace_file(name_space).c_str(), O_RDONLY | O_CLOEXEC));
    if (::setns(space.get(), CLONE_NEWNET) != 0)
        fail_with_errno(name_space);
    const Descriptor socket(::socket(AF_PACKET, SOCK_RAW | SOCK_CLOEXEC, 0));
    sockaddr_ll address{};
    address.sll_family = AF_PACKET;
    address.sll_ifindex = static_cast<int>(::if_nametoindex(interface.c_str()));
    if (::bind(socket.get(), reinterpret_cast<const sockaddr *>(&address), sizeof address) != 0)
        fail_with_errno(interface);
    for (const std::string &frame : frames)
        if (::send(socket.get(), frame.data(), frame.size(), 0) != static_cast<ssize_t>(frame.size()))
            fail_with_errno("sending a frame from " + interface);
}

} // namespace

std::string lab_obstacle() {
    if (geteuid() != 0)
        return "a laboratory needs root";
    try {
        lab::lldpd_program();
        lab::lldpcli_program();
        lab::ip_program();
    } catch (const std::exception &error) {
        return error.what();
    }
    return "";
}

bool lab_is_required() {
    return std::getenv("CI") != nullptr || std::getenv("YFW_REQUIRE_LAB") != nullptr;
}

void remove_laboratories_of_dead_tests(const std::string &prefix) {
    std::error_code error;
    for (const auto &files : fs::directory_iterator(fs::temp_directory_path())) {
        if (!files.path().filename().string().starts_with("yfw-test-"))
            continue;
        for (fs::directory_iterator entry(files.path(), error), end; !error && entry != end;
             entry.increment(error)) {
            const std::string name = entry->path().filename().string();
            const std::string start = "lab-" + prefix;
            if (name.starts_with(start) && !fs::exists("/proc/" + name.substr(start.size())))
                run_yfw({{"lab", "down", "--name", name.substr(4), "--dir", files.path().string()}});
        }
    }
}

Laboratory::Laboratory(const std::string &topology)
    : Laboratory(lab::read_topology(nlohmann::json::parse(topology), "topology"), topology) {}

Laboratory::Laboratory(lab::Topology topology, const std::string &file)
    : topology_(std::move(topology)), place_{own_prefix + std::to_string(getpid()), files_.path()} {
    remove_laboratories_of_dead_tests(own_prefix);
    fs::permissions(files_.path(), fs::perms(0755)); // lldpd's user must be able to enter it
    setenv("XDG_STATE_HOME", (files_.path() / "state").c_str(), 1);
    std::vector<std::string> more{"--tx-interval", std::to_string(lab_interval)};
    if (!file.empty())
        more.insert(more.end(), {"--topology", files_.add("topology.json", file)});
    const Outcome outcome = run("up", more);
    if (outcome.status != 0) {
        run("down");
        throw std::runtime_error("no laboratory: " + outcome.errors);
    }
}

Laboratory::~Laboratory() {
    try {
        for (const auto &[router, daemon] : std::map(started_))
            kill_daemon(router);
        run("down");
    } catch (const std::exception &) { // the next test laboratory removes what is left
    }
}

Outcome Laboratory::run(const std::string &command, const std::vector<std::string> &more) const {
    std::vector<std::string> words{"lab", command, "--name", place_.name, "--dir", place_.base.string()};
    words.insert(words.end(), more.begin(), more.end());
    return run_yfw({.arguments = words});
}

nlohmann::json Laboratory::ask(const std::string &router, const std::vector<std::string> &words) const {
    std::vector<std::string> arguments{"-u", socket(router), "-f", "json0", "show"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    return nlohmann::json::parse(run_program(lab::lldpcli_program(), arguments));
}

std::vector<nlohmann::json> Laboratory::neighbors(const std::string &router,
                                                  const std::string &interface) const {
    const nlohmann::json told = ask(router, {"neighbors", "details"});
    std::vector<nlohmann::json> found;
    for (const nlohmann::json &neighbor : told.at("lldp").at(0).value("interface", nlohmann::json::array()))
        if (neighbor.at("name") == interface)
            found.push_back(neighbor);
    return found;
}

std::vector<std::string> Laboratory::names_heard(const std::string &router,
                                                 const std::string &interface) const {
    std::vector<std::string> names;
    const nlohmann::json::json_pointer name("/chassis/0/name/0/value");
    for (const nlohmann::json &neighbor : neighbors(router, interface))
        names.push_back(neighbor.value(name, ""));
    std::sort(names.begin(), names.end());
    return names;
}

void Laboratory::configure(const std::string &router, const std::vector<std::string> &words) const {
    std::vector<std::string> arguments{"-u", socket(router), "configure"};
    arguments.insert(arguments.end(), words.begin(), words.end());
    run_program(lab::lldpcli_program(), arguments);
}

void Laboratory::ip(const std::string &router, const std::vector<std::string> &words) const {
    std::vector<std::string> arguments{"-n", place_.namespace_of(router)};
    arguments.insert(arguments.end(), words.begin(), words.end());
    run_program(lab::ip_program(), arguments);
}

// In a thread of its own, since the namespace is the thread's.
void Laboratory::send(const std::string &router, const std::string &interface,
                      const std::vector<std::string> &frames) const {
    std::exception_ptr trouble;
    std::thread([&] {
        try {
            send_from(place_.namespace_of(router), interface, frames);
        } catch (...) {
            trouble = std::current_exception();
        }
    }).join();
    if (trouble)
        std::rethrow_exception(trouble);
}

std::vector<pid_t> Laboratory::processes(const std::string &router) const {
    std::istringstream numbers(run_program(lab::ip_program(), {"netns", "pids", place_.namespace_of(router)}));
    std::vector<pid_t> found;
    for (pid_t number = 0; numbers >> number;)
        found.push_back(number);
    return found;
}

void Laboratory::signal(const std::string &router, int number) const {
    for (const pid_t process : processes(router))
        kill(process, number);
}

void Laboratory::kill_daemon(const std::string &router) {
    const auto own = started_.find(router);
    const bool gone = eventually([&] {
        signal(router, SIGKILL);
        if (own != started_.end())
            waitpid(own->second, nullptr, WNOHANG);
        return processes(router).empty();
    });
    if (!gone)
        throw std::runtime_error("the daemon of " + router + " does not end");
    if (own != started_.end())
        started_.erase(own);
}

void Laboratory::start_daemon(const std::string &router) {
    const auto found = std::find_if(topology_.routers.begin(), topology_.routers.end(),
                                    [&](const lab::Router &each) { return each.name == router; });
    // A daemon gives up when its predecessor's socket is still in use.
    const auto start = [&] {
        lab::WaitingDaemon daemon(place_, *found, topology_.interfaces_of(router), lab_interval);
        started_[router] = daemon.process().number;
        daemon.release();
    };
    start();
    const bool answers = eventually([&] {
        if (waitpid(started_[router], nullptr, WNOHANG) == started_[router])
            start();
        return lab::configured_name(socket(router)) == found->system_name;
    });
    if (!answers)
        throw std::runtime_error("the daemon of " + router + " does not answer");
}

void Laboratory::stop_daemon(const std::string &router) const {
    signal(router, SIGSTOP);
}

void Laboratory::continue_daemon(const std::string &router) const {
    signal(router, SIGCONT);
}

} // namespace yfw::test
