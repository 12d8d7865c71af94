// Reads the device for all streams.
#ifndef YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_PUBLISHER_H
#define YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_PUBLISHER_H

#include <condition_variable>
#include <functional>
#include <list>
#include <memory>
#include <mutex>
#include <thread>

#include "device/events/hub.h"
#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/subscriptions/feed.h"

namespace yfw::gnmi {

// Runs a thread that waits for the device's events and for samples that are due, reads the device once for all
// streams that want the same, and tells them. Idle, it costs nothing. Borrows the target. Any thread may call
// any member; the destructor ends the thread and waits for it, and comes after the last reader.
class Publisher final : private events::Observer {
public:
    Publisher(const Target &target, std::function<void(const std::string &)> say);
    ~Publisher() override;
    Publisher(const Publisher &) = delete;
    Publisher &operator=(const Publisher &) = delete;

    // What a reader is told first, and the feed that it is in from then on; nothing is missed between the two.
    // Throws Error when the device cannot be read. The reader is borrowed until leave() has returned.
    std::vector<std::shared_ptr<const Snapshot>> join(Subscriber &reader, const std::vector<FeedKind> &kinds);
    void leave(Subscriber &reader);

    // One reading of several parts. Throws Error.
    std::vector<std::shared_ptr<const Snapshot>> read(const std::vector<FeedKind> &kinds);

    // How often the device has been read, for tests.
    size_t readings() const;

private:
    class Readings;

    void changed(const events::ConfigurationChange &) override { mark_changed(); }
    void changed(const events::ConfirmedCommit &) override {}
    void state_changed() override { mark_changed(); }
    void mark_changed();

    void run();
    void publish(bool has_changed);
    std::optional<Clock::time_point> next_due() const;

    const Target &target_;
    std::function<void(const std::string &)> say_;

    mutable std::mutex mutex_; // guards the feeds, and is held while the device is read for them
    std::list<Feed> feeds_;
    size_t readings_ = 0;

    std::mutex wake_mutex_; // guards what follows; never held while anything else is done
    std::condition_variable wake_;
    bool has_changed_ = false;
    bool is_rescheduled_ = false;
    bool ends_ = false;
    std::thread thread_;
};

} // namespace yfw::gnmi

#endif
