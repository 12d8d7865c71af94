#include "lab/daemon.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <functional>
#include <set>
#include <stdexcept>
#include <thread>

#include <fcntl.h>
#include <sys/wait.h>

#include "base/system_error.h"
#include "lab/daemon_surroundings.h"
#include "lab/network.h"
#include "lab/programs.h"

namespace yfw::lab {
namespace {

using Clock = std::chrono::steady_clock;

std::string quoted(const std::string &text) {
    const char quote = text.find('"') == std::string::npos ? '"' : '\'';
    return quote + text + quote;
}

// Bytes in lldpcli's notation: 00,80,c2.
std::string with_commas(const std::vector<unsigned char> &bytes) {
    std::string result;
    for (const unsigned char byte : bytes) {
        std::array<char, 4> digits;
        std::snprintf(digits.data(), digits.size(), "%02x", byte);
        result += (result.empty() ? "" : ",") + std::string(digits.data());
    }
    return result;
}

std::string command_of(const CustomTlv &tlv) {
    std::string command =
        "configure lldp custom-tlv add oui " + with_commas(tlv.oui) + " subtype " + std::to_string(tlv.subtype);
    if (!tlv.content.empty())
        command += " oui-info " + with_commas(tlv.content);
    return command + "\n";
}

void write_configuration(const std::filesystem::path &file, const std::string &text) {
    std::ofstream stream(file, std::ios::binary);
    if (!(stream << text).flush())
        throw std::runtime_error(file.string() + ": cannot be written");
}

Descriptor open_log(const std::filesystem::path &file) {
    Descriptor log(::open(file.c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0644));
    if (!log.is_open())
        throw std::runtime_error(file.string() + ": cannot be written: " + system_error_text());
    return log;
}

// What is still running of a daemon: its process, and the processes it started.
std::vector<ProcessIdentity> left_of(const StartedDaemon &daemon) {
    std::vector<ProcessIdentity> left;
    if (daemon.second != 0)
        left = processes_of_session(daemon.first.number, daemon.second);
    if (is_running(daemon.first) && std::find(left.begin(), left.end(), daemon.first) == left.end())
        left.push_back(daemon.first);
    ::waitpid(daemon.first.number, nullptr, WNOHANG); // reaps it if it is this program's child
    return left;
}

// Whether all daemons end before the limit; `visit` is called with each remaining process, at every check.
bool wait_for_end(const std::vector<StartedDaemon> &daemons, std::chrono::seconds limit,
                  const std::function<void(const ProcessIdentity &)> &visit) {
    constexpr std::chrono::milliseconds pause{20};
    for (const auto deadline = Clock::now() + limit; Clock::now() < deadline;) {
        bool gone = true;
        for (const StartedDaemon &daemon : daemons)
            for (const ProcessIdentity &process : left_of(daemon)) {
                gone = false;
                visit(process);
            }
        if (gone)
            return true;
        std::this_thread::sleep_for(pause);
    }
    return false;
}

} // namespace

std::string daemon_configuration(const Router &router, int tx_interval) {
    std::string text = "configure system description " + quoted(router.system_description) + "\n" +
                       "configure lldp portidsubtype ifname\n" + "configure lldp tx-interval " +
                       std::to_string(tx_interval) + "\n";
    std::string capabilities;
    for (const std::string &name : router.capabilities)
        capabilities += (capabilities.empty() ? "" : ",") + name;
    if (!capabilities.empty())
        text += "configure system capabilities enabled " + capabilities + "\n";
    for (const CustomTlv &tlv : router.custom_tlvs)
        text += command_of(tlv);
    return text + "configure system hostname " + quoted(router.system_name) + "\n";
}

std::string interface_pattern(const std::vector<std::string> &interfaces) {
    std::set<std::string> patterns;
    for (const std::string &name : interfaces) {
        const size_t stem = name.find_last_not_of("0123456789") + 1;
        patterns.insert(stem == name.size() ? name : name.substr(0, stem) + "*");
    }
    std::string result;
    for (const std::string &pattern : patterns)
        result += (result.empty() ? "" : ",") + pattern;
    return result;
}

WaitingDaemon::WaitingDaemon(const Place &place, const Router &router,
                             const std::vector<std::string> &interfaces, int tx_interval) {
    const std::string configuration = place.configuration(router.name).string();
    write_configuration(configuration, daemon_configuration(router, tx_interval));
    const Descriptor log = open_log(place.log(router.name));
    Pipe gate;
    gate_ = std::move(gate.write_end);
    DaemonStart start;
    // -d twice: run in the foreground and write nothing to the machine's own log.
    start.arguments = {lldpd_program(), "-d", "-d", "-u", place.socket(router.name).string(), "-O",
                       configuration};
    if (!interfaces.empty())
        start.arguments.insert(start.arguments.end(), {"-I", interface_pattern(interfaces)});
    start.network_namespace = namespace_file(place.namespace_of(router.name));
    start.directory = place.directory().string();
    start.gate = gate.read_end.get();
    start.releasing_end = gate_.get();
    start.log = log.get();
    const auto process = identity_of(fork_daemon(start));
    if (!process)
        throw std::runtime_error("the daemon of " + router.name + " ended before it could start");
    process_ = *process;
}

void WaitingDaemon::release() {
    if (::write(gate_.get(), "", 1) != 1)
        throw std::runtime_error("cannot start a daemon: " + system_error_text());
    gate_.close();
}

void stop_daemons(const std::vector<StartedDaemon> &daemons) {
    constexpr std::chrono::seconds kindly{3}, forced{5};
    for (const StartedDaemon &daemon : daemons)
        send_signal(daemon.first, SIGTERM);
    if (wait_for_end(daemons, kindly, [](const ProcessIdentity &) {}))
        return;
    if (!wait_for_end(daemons, forced, [](const ProcessIdentity &process) { send_signal(process, SIGKILL); }))
        throw std::runtime_error("a daemon is still running after SIGKILL");
}

std::string last_words(const Place &place, const std::string &router) {
    std::ifstream stream(place.log(router));
    std::string last;
    for (std::string line; std::getline(stream, line);)
        if (!line.empty())
            last = line;
    return last;
}

} // namespace yfw::lab
