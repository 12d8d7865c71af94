#include "frontends/netconf/session.h"

#include <sys/time.h>

#include <event2/buffer.h>
#include <event2/bufferevent.h>
#include <event2/event.h>

#include "frontends/netconf/netconf_server.h"
#include "frontends/netconf/rpc_error.h"

namespace yfw::netconf {
namespace {

// A client that asks without reading is not read from any more, so that it costs no more memory than this.
constexpr size_t most_waiting = 16;
constexpr size_t most_waiting_bytes = 1u << 20;
constexpr size_t most_unwritten = 1u << 20;

} // namespace

Session::Session(NetconfServer &server, event_base *base, int socket, Caller caller)
    : server_(server), caller_(std::move(caller)),
      stream_(bufferevent_socket_new(base, socket, BEV_OPT_CLOSE_ON_FREE)), reader_(server.options_.limits) {
    bufferevent_setcb(stream_, on_read, on_written, on_event, this);
    hello_timer_ = evtimer_new(base, on_hello_overdue, this);
    const timeval bound{static_cast<time_t>(server.options_.hello_timeout.count()), 0};
    evtimer_add(hello_timer_, &bound);
    bufferevent_enable(stream_, EV_READ | EV_WRITE);
}

Session::~Session() {
    event_free(hello_timer_);
    bufferevent_free(stream_);
}

void Session::greet() {
    write(server_hello(server_.server_.modules, caller_.session));
}

void Session::write(const std::string &message) {
    const std::string bytes = frame(framing_, message);
    bufferevent_write(stream_, bytes.data(), bytes.size());
}

void Session::on_read(bufferevent *, void *self) {
    static_cast<Session *>(self)->read();
}

void Session::on_written(bufferevent *, void *self) {
    auto &session = *static_cast<Session *>(self);
    if (session.closing_)
        return session.end(false);
    session.next();
}

void Session::on_event(bufferevent *, short what, void *self) {
    auto &session = *static_cast<Session *>(self);
    if ((what & BEV_EVENT_ERROR) != 0)
        return session.end(true);
    if ((what & BEV_EVENT_EOF) != 0)
        session.no_more_comes();
}

// What was asked before is still answered: the client may have ended its own direction alone.
void Session::no_more_comes() {
    ended_ = true;
    if (!greeted_ || (!busy_ && waiting_.empty()))
        end(true);
}

void Session::on_hello_overdue(int, short, void *self) {
    auto &session = *static_cast<Session *>(self);
    session.server_.monitoring_.bad_hello();
    session.broken("no <hello> came in time");
}

void Session::read() {
    evbuffer *input = bufferevent_get_input(stream_);
    const size_t length = evbuffer_get_length(input);
    if (!closing_)
        reader_.feed({reinterpret_cast<const char *>(evbuffer_pullup(input, -1)), length});
    evbuffer_drain(input, length);
    try {
        while (!closing_) {
            std::optional<std::string> message = reader_.next();
            if (!message.has_value())
                break;
            take(std::move(*message));
        }
    } catch (const FramingError &error) {
        return broken(error.what());
    }
    next();
}

void Session::take(std::string message) {
    if (!greeted_)
        return hello_came(message);
    waiting_bytes_ += message.size();
    waiting_.push_back(std::move(message));
}

void Session::hello_came(const std::string &hello) {
    try {
        if (client_speaks_base_1_1(hello))
            framing_ = Framing::chunked;
    } catch (const RpcError &error) {
        server_.monitoring_.bad_hello();
        throw FramingError(error.what()); // nothing that follows can be read
    }
    greeted_ = true;
    reader_.use(framing_);
    evtimer_del(hello_timer_);
}

void Session::next() {
    pause_when_full();
    const bool full = evbuffer_get_length(bufferevent_get_output(stream_)) > most_unwritten;
    if (ended_ && !busy_ && waiting_.empty())
        return close_after_writing();
    if (busy_ || closing_ || waiting_.empty() || full)
        return;
    busy_ = true;
    std::string message = std::move(waiting_.front());
    waiting_.pop_front();
    waiting_bytes_ -= message.size();
    server_.dispatch(*this, std::move(message));
}

void Session::pause_when_full() {
    const bool full = waiting_.size() > most_waiting || waiting_bytes_ > most_waiting_bytes;
    if (full)
        bufferevent_disable(stream_, EV_READ);
    else if (!closing_ && !ended_)
        bufferevent_enable(stream_, EV_READ);
}

void Session::reply(const std::string &text, bool then_close) {
    busy_ = false;
    write(text);
    if (then_close)
        close_after_writing();
    else
        next();
}

void Session::close_after_writing() {
    closing_ = true;
    waiting_.clear();
    if (evbuffer_get_length(bufferevent_get_output(stream_)) == 0)
        end(false);
}

// Nothing can be told to somebody whose framing is broken (RFC 6242 section 4.2).
void Session::broken(const std::string &why) {
    server_.say("session " + std::to_string(caller_.session) + " (" + caller_.user + ") is closed: " + why);
    end(true);
}

void Session::end(bool dropped) {
    server_.end(caller_.session, dropped); // destroys this
}

} // namespace yfw::netconf
