// One client.
#ifndef YFW_FRONTENDS_NETCONF_SESSION_H
#define YFW_FRONTENDS_NETCONF_SESSION_H

#include <deque>
#include <string>

#include "frontends/netconf/framing.h"
#include "frontends/netconf/operations.h"

struct bufferevent;
struct event;
struct event_base;

namespace yfw::netconf {

class NetconfServer;

// Reads requests and writes replies in their order; one request is answered at a time. What it is told by the
// event loop may end it: the server then destroys it.
class Session {
public:
    Session(NetconfServer &server, event_base *base, int socket, Caller caller);
    ~Session();
    Session(const Session &) = delete;
    Session &operator=(const Session &) = delete;

    const Caller &caller() const { return caller_; }

    void greet();
    // The answer to the request under way.
    void reply(const std::string &text, bool then_close);
    // Ends when everything written has left; reads no more.
    void close_after_writing();

private:
    static void on_read(bufferevent *, void *self);
    static void on_written(bufferevent *, void *self);
    static void on_event(bufferevent *, short what, void *self);
    static void on_hello_overdue(int, short, void *self);

    void read();
    void take(std::string message);
    void next();
    void write(const std::string &message);
    void hello_came(const std::string &hello);
    void broken(const std::string &why);
    void end(bool dropped);
    void no_more_comes();
    void pause_when_full();

    NetconfServer &server_;
    Caller caller_;
    bufferevent *stream_;
    FrameReader reader_;
    Framing framing_ = Framing::end_of_message;
    bool greeted_ = false; // the client's hello came
    bool busy_ = false;    // a request is being answered
    bool closing_ = false;
    bool ended_ = false; // the client sends no more
    std::deque<std::string> waiting_;
    size_t waiting_bytes_ = 0;
    event *hello_timer_;
};

} // namespace yfw::netconf

#endif
