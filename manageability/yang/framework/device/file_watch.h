// Tells of changed files.
#ifndef YFW_DEVICE_FILE_WATCH_H
#define YFW_DEVICE_FILE_WATCH_H

#include <filesystem>
#include <functional>
#include <string>
#include <thread>
#include <vector>

#include "base/descriptor.h"
#include "base/wakeup.h"

namespace yfw::device {

// Runs a thread that waits until the system reports that a file was written, replaced or removed: one of the
// given ones, or any in a given directory. The destructor ends the thread and waits for it.
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
    void watch();
    bool has_changed() const;

    std::function<void()> on_change_;
    std::vector<std::filesystem::path> names_; // of single files; empty: all files count
    Descriptor changes_;
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
