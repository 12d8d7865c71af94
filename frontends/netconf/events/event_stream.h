// The events that subscribers are told (RFC 5277), and those of the past that are kept for later ones.
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

// RFC 3339, UTC, to the microsecond: an event can be asked for again by the time that it bears.
std::string print_time(EventTime time);
// `text`: in the form of a date-and-time (RFC 6991). Nothing when the calendar has no such day, or the day no
// such time.
std::optional<EventTime> parse_time(const std::string &text);

struct Event {
    uint64_t number = 0; // from 1, in the order in which they were published
    EventTime time;
    std::string module; // of the notification
    std::string name;
    std::string xml; // its element, with its namespace
};

using SharedEvent = std::shared_ptr<const Event>;

// The stream "NETCONF". Safe for several threads.
class EventStream {
public:
    EventStream();

    void publish(std::string module, std::string name, std::string xml);

    // Called for each event from now on, in their order, by the thread that publishes it; must not wait, nor
    // publish. An empty function ends that.
    void on_event(std::function<void(const SharedEvent &)> listener);

    // Of the last event; 0 before the first one.
    uint64_t last_number() const;

    // The events that are kept, from this time on.
    std::vector<SharedEvent> since(EventTime time) const;

    EventTime created() const { return created_; }
    // The time of the last event that is not kept any more.
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
