// Tells of changed files.
#ifndef YFW_DEVICE_FILE_WATCH_H
#define YFW_DEVICE_FILE_WATCH_H

#include <filesystem>
#include <functional>
#include <map>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "base/descriptor.h"
#include "base/wakeup.h"

namespace yfw::device {

// Runs a thread that waits until the system reports that a file was written, replaced or removed: one of the
// given ones, or any in a given directory, which may be replaced itself, or be reached by symbolic links that
// are changed. The destructor ends the thread and waits for it.
class FileWatch {
public:
    // Both functions are called on the watch's thread, `say`, which takes messages for the server's operator,
    // also on the caller's. Without places, it does nothing.
    FileWatch(const std::vector<std::filesystem::path> &places, std::function<void()> on_change,
              const std::function<void(const std::string &)> &say);
    ~FileWatch();
    FileWatch(const FileWatch &) = delete;
    FileWatch &operator=(const FileWatch &) = delete;

private:
    // Which names in a directory matter; with the empty one, all do.
    struct Watched {
        std::filesystem::path directory;
        std::set<std::string> names;
    };

    bool watch_directory(const std::filesystem::path &directory, const std::string &name);
    void watch_way_to(const std::filesystem::path &place);
    bool watch_place(const std::filesystem::path &place);
    void watch_places();
    void wait_for_changes();
    bool is_change(int watch, uint32_t what, const std::string &name) const;
    bool has_changed() const;

    std::vector<std::filesystem::path> places_;
    std::function<void()> on_change_;
    Descriptor changes_;
    std::map<int, Watched> watched_; // by inotify's number
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
