#include "frontends/pictures/graphviz.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <fcntl.h>
#include <spawn.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fmt/format.h>

namespace yfw::pictures {
namespace {

[[noreturn]] void fail(const std::string &what, int error) {
    throw std::runtime_error(what + ": " + std::strerror(error));
}

class File {
public:
    explicit File(int descriptor) : descriptor_(descriptor) {}
    ~File() {
        if (descriptor_ >= 0)
            ::close(descriptor_);
    }
    File(const File &) = delete;
    File &operator=(const File &) = delete;

    int descriptor() const { return descriptor_; }
    bool is_open() const { return descriptor_ >= 0; }
    int release() { return std::exchange(descriptor_, -1); }

private:
    int descriptor_;
};

bool write_all(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t written = ::write(descriptor, content.data(), content.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        content.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

// An anonymous file with this content, positioned at its start.
int memory_file(const std::string &content = "") {
    File file(::memfd_create("graphviz", MFD_CLOEXEC));
    if (!file.is_open() || !write_all(file.descriptor(), content) ||
        ::lseek(file.descriptor(), 0, SEEK_SET) < 0)
        fail("no room for Graphviz's files", errno);
    return file.release();
}

std::string content_of(const File &file) {
    std::string content;
    std::array<char, 1 << 16> buffer;
    off_t place = 0;
    for (;;) {
        const ssize_t count = ::pread(file.descriptor(), buffer.data(), buffer.size(), place);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            fail("Graphviz's output cannot be read", errno);
        if (count == 0)
            return content;
        content.append(buffer.data(), static_cast<size_t>(count));
        place += count;
    }
}

// While it exists, keeps SIGCHLD pending, so that a child's end can be waited for with a limit.
class ChildSignal {
public:
    ChildSignal() {
        struct sigaction normal {};
        normal.sa_handler = SIG_DFL;
        ::sigaction(SIGCHLD, &normal, &action_before_);
        sigemptyset(&signal_);
        sigaddset(&signal_, SIGCHLD);
        ::sigprocmask(SIG_BLOCK, &signal_, &mask_before_);
    }
    ~ChildSignal() {
        ::sigprocmask(SIG_SETMASK, &mask_before_, nullptr);
        ::sigaction(SIGCHLD, &action_before_, nullptr);
    }
    ChildSignal(const ChildSignal &) = delete;
    ChildSignal &operator=(const ChildSignal &) = delete;

    const sigset_t &mask_before() const { return mask_before_; }

    // Waits until a child may have ended or the limit has passed; returns false in the latter case.
    bool wait(std::chrono::nanoseconds limit) const {
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(limit);
        const timespec time{seconds.count(), (limit - seconds).count()};
        return ::sigtimedwait(&signal_, nullptr, &time) >= 0 || errno != EAGAIN;
    }

private:
    sigset_t signal_{};
    sigset_t mask_before_{};
    struct sigaction action_before_ {};
};

struct Streams {
    const File &input;
    const File &output;
    const File &errors;
};

pid_t start(const Graphviz &graphviz, const Streams &streams, const ChildSignal &signal) {
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, streams.input.descriptor(), STDIN_FILENO);
    posix_spawn_file_actions_adddup2(&actions, streams.output.descriptor(), STDOUT_FILENO);
    posix_spawn_file_actions_adddup2(&actions, streams.errors.descriptor(), STDERR_FILENO);
    posix_spawnattr_t attributes;
    posix_spawnattr_init(&attributes);
    posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    posix_spawnattr_setsigmask(&attributes, &signal.mask_before());
    std::string name = graphviz.program, format = "-Tsvg";
    char *arguments[] = {name.data(), format.data(), nullptr};
    pid_t child = 0;
    const int error = ::posix_spawnp(&child, name.c_str(), &actions, &attributes, arguments, environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&actions);
    if (error == ENOENT)
        throw std::runtime_error("SVG is drawn by Graphviz, whose program '" + graphviz.program +
                                 "' is not there: install graphviz, or take --dot");
    if (error != 0)
        fail("Graphviz's program '" + graphviz.program + "' cannot be started", error);
    return child;
}

// Returns the exit status in waitpid's form.
int wait_for(pid_t child, const Graphviz &graphviz, const ChildSignal &signal) {
    const auto deadline = std::chrono::steady_clock::now() + graphviz.limit;
    int status = 0;
    while (::waitpid(child, &status, WNOHANG) == 0) {
        const auto left = deadline - std::chrono::steady_clock::now();
        if (left.count() > 0 && signal.wait(left))
            continue;
        ::kill(child, SIGKILL);
        ::waitpid(child, &status, 0);
        throw std::runtime_error(fmt::format("'{}' was ended after {} ms without a picture", graphviz.program,
                                             graphviz.limit.count()));
    }
    return status;
}

std::string reason(int status, const File &errors) {
    const std::string said = content_of(errors);
    if (const std::string line = said.substr(0, said.find('\n')); !line.empty())
        return line;
    return WIFSIGNALED(status) ? fmt::format("signal {}", WTERMSIG(status))
                               : fmt::format("exit status {}", WEXITSTATUS(status));
}

// A file next to another, deleted with this object unless it has replaced the other.
class Replacement {
public:
    explicit Replacement(const std::filesystem::path &file)
        : target_(file),
          path_(file.parent_path() / fmt::format(".{}.{}", file.filename().string(), ::getpid())),
          file_(::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666)) {
        if (!file_.is_open())
            fail(file.string() + ": cannot be written", errno);
    }
    ~Replacement() {
        if (!path_.empty())
            ::unlink(path_.c_str());
    }
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    void write(std::string_view content) {
        if (!write_all(file_.descriptor(), content) || ::fsync(file_.descriptor()) != 0 ||
            ::rename(path_.c_str(), target_.c_str()) != 0)
            fail(target_.string() + ": cannot be written", errno);
        path_.clear();
    }

private:
    std::filesystem::path target_;
    std::filesystem::path path_;
    File file_;
};

} // namespace

std::string make_svg(const std::string &graph, const Graphviz &graphviz) {
    const File input(memory_file(graph)), output(memory_file()), errors(memory_file());
    const ChildSignal signal;
    const pid_t child = start(graphviz, {input, output, errors}, signal);
    const int status = wait_for(child, graphviz, signal);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0)
        throw std::runtime_error("'" + graphviz.program + "' failed: " + reason(status, errors));
    std::string picture = content_of(output);
    if (picture.empty())
        throw std::runtime_error("'" + graphviz.program + "' gave no picture");
    return picture;
}

void write_file(const std::filesystem::path &file, const std::string &content) {
    std::error_code error;
    std::filesystem::path target =
        std::filesystem::canonical(file, error); // follows a link, so that its target is replaced
    if (error)
        target = file;
    else if (!std::filesystem::is_regular_file(target))
        throw std::runtime_error(file.string() + ": is not a file");
    Replacement(target).write(content);
}

} // namespace yfw::pictures
