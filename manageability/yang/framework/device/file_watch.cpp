#include "device/file_watch.h"

#include <array>
#include <csignal>
#include <cstring>
#include <utility>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "base/system_error.h"

namespace yfw::device {
namespace {

namespace fs = std::filesystem;

constexpr uint32_t changes = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_CREATE | IN_ONLYDIR;

// A file that is being written is no news until its writer closes it. Nobody closes a link.
bool is_closed(const fs::path &created) {
    std::error_code gone;
    const fs::file_status status = fs::symlink_status(created, gone);
    return fs::is_symlink(status) || fs::is_directory(status) || fs::hard_link_count(created, gone) > 1;
}

} // namespace

FileWatch::FileWatch(const std::vector<fs::path> &places, std::function<void()> on_change,
                     const std::function<void(const std::string &)> &say)
    : on_change_(std::move(on_change)), changes_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    for (const fs::path &place : places) {
        places_.push_back(fs::absolute(place).lexically_normal());
        if (!changes_.is_open() || !watch_place(places_.back()))
            say("warning: changes of " + place.string() + " cause no events: " + system_error_text());
    }
    if (places.empty() || !changes_.is_open())
        return;
    sigset_t all; // signals are for the main thread
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { wait_for_changes(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

FileWatch::~FileWatch() {
    stop_.wake();
    if (thread_.joinable())
        thread_.join();
}

// An empty name: any. False with errno if the directory cannot be watched.
bool FileWatch::watch_directory(const fs::path &directory, const std::string &name) {
    const int watch = inotify_add_watch(changes_.get(), directory.c_str(), changes);
    if (watch < 0)
        return false;
    Watched &watched = watched_[watch];
    watched.directory = directory;
    watched.names.insert(name);
    return true;
}

// Each of the directories above it may be replaced or moved, as far as this user may see that.
void FileWatch::watch_way_to(const fs::path &place) {
    for (fs::path at = place; at.has_relative_path(); at = at.parent_path())
        if (at.has_filename())
            watch_directory(at.parent_path(), at.filename());
}

bool FileWatch::watch_place(const fs::path &place) {
    std::error_code error;
    const bool is_directory = fs::is_directory(place, error);
    watch_way_to(place);
    watch_way_to(fs::canonical(place, error));
    for (fs::directory_iterator file(place, error), end; !error && file != end; file.increment(error))
        if (std::error_code dangling; file->is_symlink(dangling))
            watch_way_to(fs::canonical(file->path(), dangling));
    return is_directory ? watch_directory(place, "") : watch_directory(place.parent_path(), place.filename());
}

// Directories that are watched already stay so.
void FileWatch::watch_places() {
    const std::map<int, Watched> before = std::exchange(watched_, {});
    for (const fs::path &place : places_)
        watch_place(place);
    for (const auto &[watch, watched] : before)
        if (!watched_.contains(watch))
            inotify_rm_watch(changes_.get(), watch);
}

bool FileWatch::is_change(int watch, uint32_t what, const std::string &name) const {
    if ((what & IN_Q_OVERFLOW) != 0)
        return true;
    const auto found = watched_.find(watch);
    if (found == watched_.end())
        return false;
    const auto &[directory, names] = found->second;
    if (!names.contains("") && !names.contains(name))
        return false;
    return (what & IN_CREATE) == 0 || is_closed(directory / name);
}

// Reads all that is reported.
bool FileWatch::has_changed() const {
    alignas(inotify_event) std::array<char, 16384> bytes{};
    bool is_any = false;
    for (ssize_t length; (length = read(changes_.get(), bytes.data(), bytes.size())) > 0;) {
        for (ssize_t at = 0; at < length;) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            const std::string name = event.len > 0 ? bytes.data() + at + sizeof event : "";
            is_any = is_any || is_change(event.wd, event.mask, name);
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    return is_any;
}

void FileWatch::wait_for_changes() {
    pollfd waited[2] = {{stop_.descriptor(), POLLIN, 0}, {changes_.get(), POLLIN, 0}};
    while (poll(waited, 2, -1) < 0 || waited[0].revents == 0)
        if (has_changed()) {
            watch_places();
            on_change_();
        }
}

} // namespace yfw::device
