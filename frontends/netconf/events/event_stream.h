// The event stream (RFC 5277): live events for subscribers, and recent ones kept for replay.
#ifndef YFW_FRONTENDS_NETCONF_EVENTS_EVENT_STREAM_H
#define YFW_FRONTENDS_NETCONF_EVENTS_EVENT_STREAM_H

#include <chrono>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace yfw::netconf {

using EventTime = std::chrono::time_point<std::chrono::system_clock, std::chrono::nanoseconds>;

// RFC 3339, UTC, to the microsecond, so that a replay can start at the exact time of an event.
std::string print_time(EventTime time);
// `text`: a date-and-time (RFC 6991). Nothing when the date or the time of day does not exist.
std::optional<EventTime> parse_time(const std::string &text);

struct Event {
    uint64_t number = 0; // from 1, in order of publication
    EventTime time;
    std::string module; // of the notification
    std::string name;
    std::string xml; // the event's element, with its namespace
};

using SharedEvent = std::shared_ptr<const Event>;

// The stream "NETCONF". Any thread may call any member; none waits for a device or a client.
class EventStream {
public:
    EventStream();

    void publish(std::string module, std::string name, std::string xml);

    // Called for each event from now on, in order, on the publishing thread; must neither block nor publish. An
    // empty function removes the listener.
    void on_event(std::function<void(const SharedEvent &)> listener);

    // Number of the last event; 0 before the first one.
    uint64_t last_number() const;

    // The kept events from this time on.
    std::vector<SharedEvent> since(EventTime time) const;

    EventTime created() const { return created_; }
    // The time of the last event that has been discarded.
    std::optional<EventTime> aged() const;

private:
    void forget_oldest();

    const EventTime created_;
    mutable std::mutex mutex_;
    std::function<void(const SharedEvent &)> listener_;
    std::deque<SharedEvent> kept_;
    size_t kept_bytes_ = 0;
    uint64_t last_number_ = 0;
    EventTime last_time_;
    std::optional<EventTime> aged_;
};

} // namespace yfw::netconf

#endif
