#include "device/commit_watch.h"

#include <array>
#include <cstring>
#include <filesystem>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "base/error.h"
#include "base/system_error.h"

namespace yfw::device {
namespace {

namespace fs = std::filesystem;

// A writer closes the lock after its commit. One that does not know the lock closes SQLite's log.
constexpr uint32_t changes = IN_CLOSE_WRITE | IN_MODIFY | IN_CREATE | IN_MOVED_TO | IN_ONLYDIR;

// Behind links, where SQLite and the lock have their files.
fs::path real_path(const fs::path &store) {
    std::error_code error;
    const fs::path real = fs::weakly_canonical(store, error);
    return error ? store : real;
}

fs::path directory_of(const fs::path &file) {
    return file.has_parent_path() ? file.parent_path() : fs::path(".");
}

} // namespace

CommitWatch::CommitWatch(Service &service, std::function<void(const std::string &)> say)
    : service_(service), say_(std::move(say)), changes_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    const fs::path store = real_path(service_.device().store());
    store_ = store.filename().string();
    if (!changes_.is_open() || inotify_add_watch(changes_.get(), directory_of(store).c_str(), changes) < 0) {
        say_("warning: commits of other processes cause no events: " + store.string() + ": " +
             system_error_text());
        return;
    }
    thread_ = std::thread([this] { watch(); });
}

CommitWatch::~CommitWatch() {
    stop_.wake();
    if (thread_.joinable())
        thread_.join();
}

// Reads all that is reported. Our own writes to the lock are no news.
bool CommitWatch::has_store_changed() const {
    alignas(inotify_event) std::array<char, 16384> bytes{};
    bool has_changed = false;
    for (ssize_t length; (length = read(changes_.get(), bytes.data(), bytes.size())) > 0;) {
        for (ssize_t at = 0; at < length;) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            const std::string name = event.len > 0 ? bytes.data() + at + sizeof event : "";
            const bool is_turn_over = name == store_ + ".lock" && (event.mask & IN_CLOSE_WRITE) != 0;
            has_changed = has_changed || is_turn_over || name == store_ || name == store_ + "-wal" ||
                          (event.mask & IN_Q_OVERFLOW) != 0;
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    return has_changed;
}

void CommitWatch::look() {
    try {
        service_.datastores().tell_of_others_commits();
    } catch (const Error &error) {
        say_(std::string("warning: the store cannot be read: ") + error.what());
    }
}

void CommitWatch::watch() {
    look(); // at what happened before the watch began
    pollfd waited[2] = {{stop_.descriptor(), POLLIN, 0}, {changes_.get(), POLLIN, 0}};
    while (poll(waited, 2, -1) < 0 || waited[0].revents == 0)
        if (has_store_changed())
            look();
}

} // namespace yfw::device
