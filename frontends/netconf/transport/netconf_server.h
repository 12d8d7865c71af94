// The NETCONF server: sessions on a Unix socket.
#ifndef YFW_FRONTENDS_NETCONF_TRANSPORT_NETCONF_SERVER_H
#define YFW_FRONTENDS_NETCONF_TRANSPORT_NETCONF_SERVER_H

#include <atomic>
#include <chrono>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>

#include "base/worker_pool.h"
#include "device/access/groups.h"
#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/messages/framing.h"
#include "frontends/netconf/operations/conversation.h"
#include "frontends/netconf/transport/server_log.h"
#include "frontends/netconf/transport/session.h"

struct event;
struct event_base;
struct evconnlistener;

namespace yfw::netconf {

struct ServerOptions {
    std::filesystem::path socket;
    access::AccessGroups groups;
    FrameLimits limits;
    std::chrono::seconds hello_timeout{30};
    std::chrono::seconds idle_timeout{0}; // of a session without a subscription; 0: none
    size_t most_sessions = 0;             // at once; 0: as many as there are descriptors
    size_t threads = 6;                   // workers; at least WorkerPool::fewest_threads
};

// Borrows everything it is given. The thread that calls run() is the event loop: it owns all sessions and
// timers, and never waits for the device. Requests are answered by worker threads, which hand their results
// back to it. Create, run and destroy the server from one thread at a time.
class NetconfServer {
public:
    // Throws Error if another server answers on the socket.
    static void require_unanswered(const std::filesystem::path &socket);

    // Creates the socket and listens on it (mode 0666: access is decided by peer credentials). Fails if another
    // server answers on the socket; replaces a stale one. Throws Error.
    NetconfServer(const ServerOptions &options, device::Service &service, const ProtocolModules &modules,
                  EventStream &events);
    ~NetconfServer();
    NetconfServer(const NetconfServer &) = delete;
    NetconfServer &operator=(const NetconfServer &) = delete;

    // Runs until the descriptor `stop` becomes readable; then closes all sessions and removes the socket.
    void run(int stop);

private:
    friend class Session;

    void listen();
    void accept(int socket);
    void rest();
    void end(uint32_t session, EndReason reason, std::optional<uint32_t> killed_by);
    void tell(const SharedEvent &event);
    void dispatch(Session &session, std::string message);
    WorkerPool::Finish answered(const Caller &caller, const Request &request);
    void finish(uint32_t session, Reply &reply);
    void arm_commit_timer();
    void in_background(std::function<void()> work);

    ServerOptions options_;
    device::Service &service_;
    EventStream &events_;
    DeviceEvents device_events_;
    ChangeLog change_log_;
    Monitoring monitoring_;
    Server server_;
    std::unique_ptr<event_base, void (*)(event_base *)> base_;
    evconnlistener *listener_ = nullptr;
    event *finished_ = nullptr;
    event *stop_ = nullptr;
    event *commit_timer_ = nullptr;
    event *rest_timer_ = nullptr; // until sessions are accepted again
    bool has_said_full_ = false;
    std::map<uint32_t, std::unique_ptr<Session>> sessions_;
    std::mutex known_mutex_;
    std::map<uint32_t, bool> known_; // sessions, for access by other threads
    uint32_t last_session_ = 0;
    std::atomic<bool> ends_ = false;
    WorkerPool workers_; // destroyed first: its jobs use all of the above
};

} // namespace yfw::netconf

#endif
