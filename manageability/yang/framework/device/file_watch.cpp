#include "device/file_watch.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstring>

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

#include "base/system_error.h"

namespace yfw::device {
namespace {

namespace fs = std::filesystem;

// A file that is being written is no news until its writer closes it.
constexpr uint32_t changes = IN_CLOSE_WRITE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_ONLYDIR;

} // namespace

FileWatch::FileWatch(const std::vector<fs::path> &places, std::function<void()> on_change,
                     const std::function<void(const std::string &)> &say)
    : on_change_(std::move(on_change)), changes_(inotify_init1(IN_CLOEXEC | IN_NONBLOCK)) {
    for (const fs::path &place : places) {
        std::error_code error;
        const bool is_directory = fs::is_directory(place, error);
        const fs::path directory = is_directory              ? place
                                   : place.has_parent_path() ? place.parent_path()
                                                             : fs::path(".");
        if (!is_directory)
            names_.push_back(place.filename());
        if (!changes_.is_open() || inotify_add_watch(changes_.get(), directory.c_str(), changes) < 0)
            say("warning: changes of " + place.string() + " cause no events: " + system_error_text());
    }
    if (places.empty() || !changes_.is_open())
        return;
    sigset_t all; // signals are for the main thread
    sigset_t before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    thread_ = std::thread([this] { watch(); });
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

FileWatch::~FileWatch() {
    stop_.wake();
    if (thread_.joinable())
        thread_.join();
}

// Reads all that is reported.
bool FileWatch::has_changed() const {
    alignas(inotify_event) std::array<char, 16384> bytes{};
    bool is_any = false;
    for (ssize_t length; (length = read(changes_.get(), bytes.data(), bytes.size())) > 0;) {
        for (ssize_t at = 0; at < length;) {
            inotify_event event{};
            std::memcpy(&event, bytes.data() + at, sizeof event);
            const fs::path name = event.len > 0 ? bytes.data() + at + sizeof event : "";
            is_any = is_any || names_.empty() || (event.mask & IN_Q_OVERFLOW) != 0 ||
                     std::find(names_.begin(), names_.end(), name) != names_.end();
            at += static_cast<ssize_t>(sizeof event + event.len);
        }
    }
    return is_any;
}

void FileWatch::watch() {
    pollfd waited[2] = {{stop_.descriptor(), POLLIN, 0}, {changes_.get(), POLLIN, 0}};
    while (poll(waited, 2, -1) < 0 || waited[0].revents == 0)
        if (has_changed())
            on_change_();
}

} // namespace yfw::device
