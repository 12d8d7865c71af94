#include "lab/daemon_surroundings.h"

#include <cerrno>
#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <linux/close_range.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/process.h"
#include "base/system_error.h"

namespace yfw::lab {
namespace {

constexpr int failed = 127;

// By now, standard error is the daemon's log.
[[noreturn]] void give_up(const char *what) {
    std::fprintf(stderr, "%s: %s\n", what, system_error_text().c_str());
    std::fflush(stderr);
    ::_exit(failed);
}

void reset_signals() {
    for (int number = 1; number < NSIG; ++number)
        ::signal(number, SIG_DFL);
    sigset_t none;
    sigemptyset(&none);
    ::sigprocmask(SIG_SETMASK, &none, nullptr);
}

void wait_at(int gate) {
    char byte = 0;
    ssize_t count = 0;
    while ((count = ::read(gate, &byte, 1)) < 0 && errno == EINTR) {
    }
    if (count != 1)
        ::_exit(0);
}

void enter_network(const DaemonStart &start) {
    const int file = ::open(start.network_namespace.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0 || ::setns(file, CLONE_NEWNET) != 0)
        give_up(start.network_namespace.c_str());
    ::close(file);
}

void make_directories(const std::string &path) {
    for (size_t end = path.find('/', 1); end != std::string::npos; end = path.find('/', end + 1))
        ::mkdir(path.substr(0, end).c_str(), 0755);
    ::mkdir(path.c_str(), 0755);
}

// The daemon uses a fixed directory in /run. A private /run lets several daemons run side by side without
// touching the machine's own, and leaves nothing behind. The mounts are slaves, so that an unmount outside also
// takes effect here and the daemon keeps no other namespace alive. /sys is mounted anew because it shows the
// network namespace in which it was mounted.
void enter_private_mounts(const DaemonStart &start) {
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("", "/", "none", MS_SLAVE | MS_REC, nullptr) != 0)
        give_up("private mounts");
    ::umount2("/sys", MNT_DETACH);
    if (::mount("sysfs", "/sys", "sysfs", 0, nullptr) != 0)
        give_up("/sys");
    const int directory = ::open(start.directory.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0)
        give_up(start.directory.c_str());
    if (::mount("tmpfs", "/run", "tmpfs", 0, "mode=0755,size=1m") != 0)
        give_up("/run");
    if (start.directory.starts_with("/run/")) {
        make_directories(start.directory);
        const std::string here = "/proc/self/fd/" + std::to_string(directory);
        if (::mount(here.c_str(), start.directory.c_str(), nullptr, MS_BIND, nullptr) != 0)
            give_up(start.directory.c_str());
    }
    ::close(directory);
}

[[noreturn]] void become_daemon(const DaemonStart &start) {
    // The daemon must not inherit the caller's open files: a script waiting for the end of a pipe would wait
    // for the daemon.
    if (::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC) != 0)
        give_up("descriptors");
    ::close(start.releasing_end); // otherwise the gate would stay open when the parent dies
    ::setsid();
    reset_signals();
    wait_at(start.gate);
    ::dup2(::open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    ::dup2(start.log, STDOUT_FILENO);
    ::dup2(start.log, STDERR_FILENO);
    enter_network(start);
    enter_private_mounts(start);
    if (::chdir("/") != 0)
        give_up("/");
    std::vector<std::string> copies = start.arguments;
    std::vector<char *> pointers;
    for (std::string &copy : copies)
        pointers.push_back(copy.data());
    pointers.push_back(nullptr);
    ::execv(pointers[0], pointers.data());
    give_up(pointers[0]);
}

} // namespace

pid_t fork_daemon(const DaemonStart &start) {
    return Process::copy([&start]() -> int { become_daemon(start); }).release();
}

} // namespace yfw::lab
