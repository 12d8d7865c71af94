#include "base/process_identity.h"

#include <charconv>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <csignal>
#include <sys/stat.h>
#include <sys/syscall.h>

#include "base/descriptor.h"

namespace yfw {
namespace {

// Reads as much as it can: a process's files vanish with it, even between open and read.
std::string content_of(const std::string &file) {
    const std::ifstream stream(file, std::ios::binary);
    std::ostringstream content;
    content << stream.rdbuf();
    return content.str();
}

struct Stat {
    char state = 'X';
    pid_t session = 0;
    unsigned long long start = 0;
};

// The program name in parentheses may contain any character, so fields are counted from its end.
std::optional<Stat> stat_of(pid_t number) {
    const std::string text = content_of("/proc/" + std::to_string(number) + "/stat");
    const size_t name_end = text.rfind(')');
    if (name_end == std::string::npos)
        return std::nullopt;
    std::istringstream fields(text.substr(name_end + 1));
    Stat stat;
    std::string skipped;
    fields >> stat.state >> skipped >> skipped >> stat.session;
    constexpr int fields_between = 15; // of session (6) and starttime (22)
    for (int i = 0; i < fields_between; ++i)
        fields >> skipped;
    fields >> stat.start;
    return fields ? std::optional(stat) : std::nullopt;
}

bool runs(const Stat &stat) {
    return stat.state != 'Z' && stat.state != 'X';
}

} // namespace

std::optional<ProcessIdentity> identity_of(pid_t number) {
    const auto stat = stat_of(number);
    if (!stat || !runs(*stat))
        return std::nullopt;
    return ProcessIdentity{number, stat->start};
}

bool is_running(const ProcessIdentity &process) {
    return identity_of(process.number) == process;
}

void send_signal(const ProcessIdentity &process, int signal) {
    // Opened before the process is inspected, so that it refers to the inspected process even if that exits and
    // its number is reused.
    const Descriptor handle(static_cast<int>(::syscall(SYS_pidfd_open, process.number, 0)));
    if (handle.is_open() && is_running(process))
        ::syscall(SYS_pidfd_send_signal, handle.get(), signal, nullptr, 0);
}

std::vector<ProcessIdentity> processes_of_session(pid_t session, ino_t network_namespace) {
    std::vector<ProcessIdentity> result;
    for (const auto &entry : std::filesystem::directory_iterator("/proc")) {
        const std::string name = entry.path().filename().string();
        pid_t number = 0;
        const auto [stop, error] = std::from_chars(name.data(), name.data() + name.size(), number);
        if (error != std::errc() || stop != name.data() + name.size())
            continue;
        const auto stat = stat_of(number);
        struct stat network {};
        if (stat && runs(*stat) && stat->session == session &&
            ::stat((entry.path() / "ns/net").c_str(), &network) == 0 && network.st_ino == network_namespace)
            result.push_back({number, stat->start});
    }
    return result;
}

std::string boot_identity() {
    const std::string text = content_of("/proc/sys/kernel/random/boot_id");
    return text.substr(0, text.find('\n'));
}

} // namespace yfw
