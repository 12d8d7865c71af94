#include "frontends/netconf/transport/session.h"

#include <algorithm>

#include <sys/time.h>

#include <event2/buffer.h>
#include <event2/bufferevent.h>
#include <event2/event.h>

#include "device/events/actor_text.h"
#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/messages/rpc_error.h"
#include "frontends/netconf/transport/netconf_server.h"

namespace yfw::netconf {
namespace {

// Reading stops when a client sends requests without reading replies, which bounds the memory it can use.
constexpr size_t most_waiting = 16;
constexpr size_t most_waiting_bytes = 1u << 20;
constexpr size_t most_unwritten = 1u << 20;
constexpr size_t longest_part = 1u << 20; // of a long reply, in octets
// A subscriber that stops reading is dropped. The limit exceeds the events that are kept; slow subscribers
// share the waiting events, except for the bytes already printed.
constexpr size_t most_notifications_bytes = 16u << 20;
constexpr size_t most_printed = 64u << 10;

timeval to_timeval(std::chrono::microseconds span) {
    return {static_cast<time_t>(span.count() / 1000000), static_cast<suseconds_t>(span.count() % 1000000)};
}

EventTime now() {
    return std::chrono::system_clock::now();
}

} // namespace

std::string_view to_string(EndReason reason) {
    switch (reason) {
    case EndReason::closed:
        return "closed";
    case EndReason::killed:
        return "killed";
    case EndReason::dropped:
        return "dropped";
    case EndReason::timeout:
        return "timeout";
    case EndReason::bad_hello:
        return "bad-hello";
    case EndReason::other:
        break;
    }
    return "other";
}

Session::Session(NetconfServer &server, event_base *base, int socket, Caller caller,
                 std::vector<std::string> groups)
    : server_(server), caller_(std::move(caller)), groups_(std::move(groups)),
      rules_version_(server.service_.rules_version()),
      stream_(bufferevent_socket_new(base, socket, BEV_OPT_CLOSE_ON_FREE)), reader_(server.options_.limits) {
    caller_.is_gone = is_gone_;
    bufferevent_setcb(stream_, on_read, on_written, on_event, this);
    hello_timer_ = evtimer_new(base, on_hello_overdue, this);
    idle_timer_ = evtimer_new(base, on_idle, this);
    const timeval bound = to_timeval(server.options_.hello_timeout);
    evtimer_add(hello_timer_, &bound);
    bufferevent_enable(stream_, EV_READ | EV_WRITE);
}

Session::~Session() {
    event_free(hello_timer_);
    event_free(idle_timer_);
    if (stop_timer_ != nullptr)
        event_free(stop_timer_);
    bufferevent_free(stream_);
}

// The rules may have been edited.
void Session::update_rules() {
    const uint64_t version = server_.service_.rules_version();
    if (version == rules_version_)
        return;
    rules_version_ = version;
    caller_.rules = server_.service_.rules_of(caller_.user, groups_);
}

Caller Session::caller() {
    update_rules();
    Caller now = caller_;
    now.is_subscribed = subscription_ != nullptr;
    now.speaks_base_1_1 = framing_ == Framing::chunked;
    return now;
}

void Session::greet() {
    write(server_hello(server_.server_.modules, caller_.session));
}

void Session::write(const std::string &message) {
    write_bytes(frame(framing_, message));
}

void Session::write_bytes(const std::string &bytes) {
    bufferevent_write(stream_, bytes.data(), bytes.size());
}

// A long reply stays in its file until the client reads it: the kernel sends it from there.
bool Session::write(Reply &reply) {
    if (!reply.content.has_file()) {
        write(reply.text());
        return true;
    }
    write_bytes(part_header(framing_, reply.head.size()) + reply.head);
    const size_t size = reply.content.size();
    const bool is_written = write_file(reply.content.take_file(), size);
    write_bytes(part_header(framing_, reply.tail.size()) + reply.tail + message_end(framing_));
    return is_written;
}

bool Session::write_file(Descriptor file, size_t size) {
    const std::unique_ptr<evbuffer_file_segment, void (*)(evbuffer_file_segment *)> segment(
        evbuffer_file_segment_new(file.get(), 0, static_cast<ev_off_t>(size), EVBUF_FS_CLOSE_ON_FREE),
        evbuffer_file_segment_free);
    if (segment == nullptr)
        return false;
    file.release();
    evbuffer *output = bufferevent_get_output(stream_);
    for (size_t at = 0; at < size; at += longest_part) {
        const size_t length = std::min(longest_part, size - at);
        write_bytes(part_header(framing_, length));
        if (evbuffer_add_file_segment(output, segment.get(), static_cast<ev_off_t>(at),
                                      static_cast<ev_off_t>(length)) != 0)
            return false;
    }
    return true;
}

void Session::on_read(bufferevent *, void *self) {
    static_cast<Session *>(self)->read();
}

void Session::on_written(bufferevent *, void *self) {
    auto &session = *static_cast<Session *>(self);
    if (session.closing_)
        return session.end(session.closes_as_);
    session.write_notifications();
    session.next();
}

void Session::on_event(bufferevent *, short what, void *self) {
    auto &session = *static_cast<Session *>(self);
    if ((what & BEV_EVENT_ERROR) != 0)
        return session.end(EndReason::dropped);
    if ((what & BEV_EVENT_EOF) != 0)
        session.no_more_comes();
}

// Requests already received are still answered: the client may have shut down only its sending direction.
void Session::no_more_comes() {
    ended_ = true;
    if (!greeted_)
        end(EndReason::dropped);
    else if (!closing_)
        next();
}

void Session::on_hello_overdue(int, short, void *self) {
    auto &session = *static_cast<Session *>(self);
    session.server_.monitoring_.bad_hello();
    session.broken("no <hello> came in time", EndReason::timeout);
}

// The timer starts anew with each message and each reply. Waiting for events is not idleness.
void Session::watch_idleness() {
    if (server_.options_.idle_timeout.count() == 0 || !greeted_)
        return;
    const timeval bound = to_timeval(server_.options_.idle_timeout);
    evtimer_add(idle_timer_, &bound);
}

void Session::on_idle(int, short, void *self) {
    auto &session = *static_cast<Session *>(self);
    if (session.busy_ || session.subscription_ != nullptr)
        return session.watch_idleness();
    session.broken("it was idle for " + std::to_string(session.server_.options_.idle_timeout.count()) +
                       " seconds",
                   EndReason::timeout);
}

void Session::feed(std::string_view bytes) {
    if (greeted_)
        return reader_.feed(bytes);
    reader_.feed(source_line_.without_line(bytes));
    if (source_line_.address().has_value() && caller_.host.empty()) {
        caller_.host = *source_line_.address();
        server_.monitoring_.session_comes_from(caller_.session, caller_.host);
    }
}

void Session::read() {
    evbuffer *input = bufferevent_get_input(stream_);
    const size_t length = evbuffer_get_length(input);
    if (!closing_)
        feed({reinterpret_cast<const char *>(evbuffer_pullup(input, -1)), length});
    evbuffer_drain(input, length);
    try {
        while (!closing_) {
            std::optional<std::string> message = reader_.next();
            if (!message.has_value())
                break;
            take(std::move(*message));
        }
    } catch (const FramingError &error) {
        return broken(error.what(), greeted_ ? EndReason::other : EndReason::bad_hello);
    }
    next();
}

void Session::take(std::string message) {
    if (!greeted_)
        return hello_came(message);
    watch_idleness();
    waiting_bytes_ += message.size();
    waiting_.push_back(std::move(message));
}

void Session::hello_came(const std::string &hello) {
    try {
        if (client_speaks_base_1_1(hello))
            framing_ = Framing::chunked;
    } catch (const RpcError &error) {
        server_.monitoring_.bad_hello();
        throw FramingError(error.what()); // the rest of the stream cannot be parsed
    }
    greeted_ = true;
    reader_.use(framing_);
    evtimer_del(hello_timer_);
    watch_idleness();
    log_line(described(caller_.actor()) + " begins");
    publish_session_start(server_.events_, caller_.actor());
}

void Session::next() {
    pause_when_full();
    if (ended_ && !busy_ && waiting_.empty() && notifications_.empty())
        return close_after_writing(EndReason::dropped);
    if (busy_ || closing_ || waiting_.empty() || is_full())
        return;
    busy_ = true;
    std::string message = std::move(waiting_.front());
    waiting_.pop_front();
    waiting_bytes_ -= message.size();
    server_.dispatch(*this, std::move(message));
}

bool Session::is_full() const {
    return evbuffer_get_length(bufferevent_get_output(stream_)) > most_unwritten;
}

void Session::pause_when_full() {
    const bool full = waiting_.size() > most_waiting || waiting_bytes_ > most_waiting_bytes;
    if (full)
        bufferevent_disable(stream_, EV_READ);
    else if (!closing_ && !ended_)
        bufferevent_enable(stream_, EV_READ);
}

void Session::reply(Reply &reply) {
    busy_ = false;
    watch_idleness();
    if (!reply.head.empty() && !write(reply))
        return broken("its reply cannot be sent", EndReason::other);
    if (reply.aftermath.subscription != nullptr)
        subscribe(reply.aftermath.subscription);
    if (reply.aftermath.close)
        close_after_writing(reply.is_bad ? EndReason::other : EndReason::closed);
    else
        next();
}

void Session::close_after_writing(EndReason reason) {
    closing_ = true;
    closes_as_ = reason;
    waiting_.clear();
    if (evbuffer_get_length(bufferevent_get_output(stream_)) == 0)
        end(reason);
}

// No error can be sent once the framing is broken (RFC 6242 section 4.2).
void Session::broken(const std::string &why, EndReason reason) {
    log_line(described(caller_.actor()) + " is closed: " + why);
    end(reason);
}

void Session::end(EndReason reason) {
    server_.end(caller_.session, reason, std::nullopt); // destroys this
}

// ---- notifications -------------------------------------------------------------------------------------

void Session::subscribe(std::shared_ptr<const Subscription> subscription) {
    if (closing_)
        return;
    subscription_ = std::move(subscription);
    told_ = server_.events_.last_number();
    if (subscription_->start().has_value())
        replay();
    if (subscription_->stop().has_value())
        stop_at(*subscription_->stop());
}

// Events published during the fetch are included, and are offered to tell() again, which skips them by told_.
void Session::replay() {
    for (const SharedEvent &event : server_.events_.since(*subscription_->start())) {
        told_ = std::max(told_, event->number);
        if (wants(*event) && event->time <= subscription_->stop().value_or(event->time))
            notify(event);
    }
    notify_now(replay_complete());
}

void Session::stop_at(EventTime time) {
    const auto left = std::chrono::ceil<std::chrono::microseconds>(time - now());
    if (left.count() <= 0)
        return end_subscription();
    stop_timer_ = evtimer_new(bufferevent_get_base(stream_), on_subscription_over, this);
    const timeval wait = to_timeval(left);
    evtimer_add(stop_timer_, &wait);
}

void Session::on_subscription_over(int, short, void *self) {
    auto &session = *static_cast<Session *>(self);
    event_free(session.stop_timer_);
    session.stop_timer_ = nullptr;
    session.end_subscription();
}

void Session::end_subscription() {
    subscription_.reset();
    notify_now(notification_complete());
}

void Session::tell(const SharedEvent &event) {
    if (subscription_ == nullptr || event->number <= told_)
        return;
    told_ = event->number;
    if (event->time > subscription_->stop().value_or(event->time) || !wants(*event))
        return;
    notify(event);
    if (notifications_bytes_ > most_notifications_bytes)
        broken("it does not read its notifications", EndReason::other);
}

bool Session::wants(const Event &event) {
    update_rules();
    const auto rules = caller_.rules;
    if (rules == nullptr || rules->may_be_told(event.module, event.name))
        return subscription_->wants(event);
    if (subscription_->wants(event))
        rules->denials().notifications++;
    return false;
}

void Session::notify_now(const std::string &event) {
    notify(std::make_shared<const Event>(Event{0, now(), "", "", event}));
}

void Session::notify(SharedEvent event) {
    if (closing_)
        return;
    notifications_bytes_ += event->xml.size();
    notifications_.push_back(std::move(event));
    server_.monitoring_.count(caller_.session, {0, 0, 0, 1});
    write_notifications();
}

void Session::write_notifications() {
    while (!notifications_.empty() && evbuffer_get_length(bufferevent_get_output(stream_)) <= most_printed) {
        const SharedEvent event = std::move(notifications_.front());
        notifications_.pop_front();
        notifications_bytes_ -= event->xml.size();
        write(print_notification(event->time, event->xml));
    }
}

} // namespace yfw::netconf
