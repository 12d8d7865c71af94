#include "frontends/netconf/events/event_stream.h"

#include <algorithm>
#include <ctime>

#include <libyang/libyang.h>

namespace yfw::netconf {
namespace {

constexpr size_t most_kept = 10000;
constexpr size_t most_kept_bytes = 4u << 20;

using Guard = std::lock_guard<std::mutex>;

// Fine enough for the time to identify an event.
EventTime now_in_microseconds() {
    return std::chrono::floor<std::chrono::microseconds>(std::chrono::system_clock::now());
}

// The clock counts nanoseconds, which reach to 2262, and no event predates 1970: clamp times outside that
// range.
EventTime clamped(std::chrono::seconds time) {
    constexpr std::chrono::seconds margin{1}; // for the fraction of a second
    const auto last = std::chrono::floor<std::chrono::seconds>(EventTime::max().time_since_epoch()) - margin;
    return EventTime(std::clamp(time, std::chrono::seconds(0), last));
}

} // namespace

std::string print_time(EventTime time) {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
    const std::time_t whole = std::chrono::system_clock::to_time_t(seconds);
    std::tm parts{};
    gmtime_r(&whole, &parts);
    char day_and_time[sizeof "2000-01-31T23:59:59"];
    std::strftime(day_and_time, sizeof day_and_time, "%Y-%m-%dT%H:%M:%S", &parts);
    std::string fraction =
        std::to_string(std::chrono::duration_cast<std::chrono::microseconds>(time - seconds).count());
    return day_and_time + ("." + std::string(6 - fraction.size(), '0') + fraction) + "Z";
}

std::optional<EventTime> parse_time(const std::string &text) {
    const auto number = [&text](size_t at, size_t digits) {
        return static_cast<unsigned>(std::stoul(text.substr(at, digits)));
    };
    const std::chrono::year_month_day day(std::chrono::year(static_cast<int>(number(0, 4))),
                                          std::chrono::month(number(5, 2)), std::chrono::day(number(8, 2)));
    const bool is_time = number(11, 2) < 24 && number(14, 2) < 60 && number(17, 2) <= 60; // 60 for leap seconds
    timespec read{};
    if (!day.ok() || !is_time || ly_time_str2ts(text.c_str(), &read) != LY_SUCCESS)
        return std::nullopt;
    return clamped(std::chrono::seconds(read.tv_sec)) + std::chrono::nanoseconds(read.tv_nsec);
}

EventStream::EventStream() : created_(now_in_microseconds()), last_time_(created_) {}

void EventStream::publish(std::string module, std::string name, std::string xml) {
    const Guard guard(mutex_);
    // Strictly increasing, even if the clock is coarse or was set back.
    last_time_ = std::max(now_in_microseconds(), last_time_ + std::chrono::microseconds(1));
    const auto event = std::make_shared<const Event>(
        Event{++last_number_, last_time_, std::move(module), std::move(name), std::move(xml)});
    kept_.push_back(event);
    kept_bytes_ += event->xml.size();
    forget_oldest();
    if (listener_)
        listener_(event);
}

void EventStream::forget_oldest() {
    while (kept_.size() > most_kept || (kept_bytes_ > most_kept_bytes && !kept_.empty())) {
        aged_ = kept_.front()->time;
        kept_bytes_ -= kept_.front()->xml.size();
        kept_.pop_front();
    }
}

void EventStream::on_event(std::function<void(const SharedEvent &)> listener) {
    const Guard guard(mutex_);
    listener_ = std::move(listener);
}

uint64_t EventStream::last_number() const {
    const Guard guard(mutex_);
    return last_number_;
}

std::vector<SharedEvent> EventStream::since(EventTime time) const {
    const Guard guard(mutex_);
    const auto first = std::partition_point(kept_.begin(), kept_.end(),
                                            [time](const SharedEvent &event) { return event->time < time; });
    return {first, kept_.end()};
}

std::optional<EventTime> EventStream::aged() const {
    const Guard guard(mutex_);
    return aged_;
}

} // namespace yfw::netconf
