// A session with one client.
#ifndef YFW_FRONTENDS_NETCONF_TRANSPORT_SESSION_H
#define YFW_FRONTENDS_NETCONF_TRANSPORT_SESSION_H

#include <atomic>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "frontends/netconf/events/event_stream.h"
#include "frontends/netconf/messages/framing.h"
#include "frontends/netconf/operations/conversation.h"
#include "frontends/netconf/transport/source_line.h"

struct bufferevent;
struct event;
struct event_base;

namespace yfw::netconf {

class NetconfServer;

// Why a session ends; mirrors termination-reason (RFC 6470).
enum class EndReason { closed, killed, dropped, timeout, bad_hello, other };
std::string_view to_string(EndReason reason);

// Reads requests and writes replies in order, one request at a time. Belongs to the event loop's thread;
// workers only get copies of its caller and messages. Any call may end the session: the server then destroys
// it.
class Session {
public:
    // `groups`: of the user on this machine.
    Session(NetconfServer &server, event_base *base, int socket, Caller caller,
            std::vector<std::string> groups);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    // The session's caller, with its current rights.
    Caller caller();
    bool has_started() const { return greeted_; }
    // What its requests learn of its end; outlives the session.
    const std::shared_ptr<std::atomic<bool>> &is_gone() const { return is_gone_; }

    void greet();
    // Delivers the reply to the current request.
    void reply(Reply &reply);
    // Offers an event, in case the session subscribed to it.
    void tell(const SharedEvent &event);

private:
    static void on_read(bufferevent *, void *self);
    static void on_written(bufferevent *, void *self);
    static void on_event(bufferevent *, short what, void *self);
    static void on_hello_overdue(int, short, void *self);
    static void on_idle(int, short, void *self);
    static void on_subscription_over(int, short, void *self);

    void read();
    void feed(std::string_view bytes);
    void watch_idleness();
    void take(std::string message);
    void next();
    void write(const std::string &message);
    bool write(Reply &reply); // whether it could be
    bool write_file(Descriptor file, size_t size);
    void write_bytes(const std::string &bytes);
    void hello_came(const std::string &hello);
    void broken(const std::string &why, EndReason reason);
    void end(EndReason reason);
    // Stops reading; ends once all output has been written.
    void close_after_writing(EndReason reason);
    void no_more_comes();
    void pause_when_full();
    bool is_full() const;
    void subscribe(std::shared_ptr<const Subscription> subscription);
    void replay();
    bool wants(const Event &event);
    void update_rules();
    void stop_at(EventTime time);
    void end_subscription();
    void notify(SharedEvent event);
    void notify_now(const std::string &event);
    void write_notifications();

    NetconfServer &server_;
    const std::shared_ptr<std::atomic<bool>> is_gone_ = std::make_shared<std::atomic<bool>>(false);
    Caller caller_;
    const std::vector<std::string> groups_;
    uint64_t rules_version_; // of the caller's rules
    bufferevent *stream_;
    SourceLine source_line_;
    FrameReader reader_;
    Framing framing_ = Framing::end_of_message;
    bool greeted_ = false; // the client's hello has arrived
    bool busy_ = false;    // a request is being answered
    bool closing_ = false;
    EndReason closes_as_ = EndReason::closed;
    bool ended_ = false; // the client has stopped sending
    std::deque<std::string> waiting_;
    size_t waiting_bytes_ = 0;
    event *hello_timer_;
    event *idle_timer_;
    std::shared_ptr<const Subscription> subscription_;
    event *stop_timer_ = nullptr;
    uint64_t told_ = 0;                     // the last event sent, or the last one before the subscription
    std::deque<SharedEvent> notifications_; // waiting for the client to read
    size_t notifications_bytes_ = 0;
};

} // namespace yfw::netconf

#endif
