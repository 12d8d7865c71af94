// Tells of commits that other processes make.
#ifndef YFW_DEVICE_COMMIT_WATCH_H
#define YFW_DEVICE_COMMIT_WATCH_H

#include <functional>
#include <string>
#include <thread>

#include "base/descriptor.h"
#include "base/wakeup.h"
#include "device/service.h"

namespace yfw::device {

// Runs a thread that waits until the system reports a change of the service's store, and has the datastores
// tell their observers of new commits. Borrows the service. The destructor ends the thread and waits for it.
class CommitWatch {
public:
    // `say`: takes messages for the server's operator, also on the watch's thread. Where the system cannot
    // report changes, it says so and does nothing.
    CommitWatch(Service &service, std::function<void(const std::string &)> say);
    ~CommitWatch();
    CommitWatch(const CommitWatch &) = delete;
    CommitWatch &operator=(const CommitWatch &) = delete;

private:
    void watch();
    void look();
    bool has_store_changed() const;

    Service &service_;
    std::function<void(const std::string &)> say_;
    std::string store_; // the file's name
    Descriptor changes_;
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::device

#endif
