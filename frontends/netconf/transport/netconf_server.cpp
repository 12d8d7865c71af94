#include "frontends/netconf/transport/netconf_server.h"

#include <malloc.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <event2/event.h>
#include <event2/listener.h>

#include "base/error.h"
#include "base/interruption.h"
#include "base/say.h"
#include "base/system_error.h"
#include "base/unix_socket.h"
#include "device/events/actor_text.h"
#include "frontends/netconf/events/server_events.h"

namespace yfw::netconf {
namespace {

[[noreturn]] void fail(const std::filesystem::path &socket, const std::string &why) {
    throw Error(ErrorTag::operation_failed, socket.string(), why);
}

} // namespace

NetconfServer::NetconfServer(const ServerOptions &options, device::Service &service,
                             const ProtocolModules &modules, EventStream &events)
    : options_(options), service_(service), events_(events), device_events_(service.events(), events),
      change_log_(service.events()), server_{service, modules, monitoring_, events,
                                             [this](uint32_t session) {
                                                 const std::lock_guard<std::mutex> guard(known_mutex_);
                                                 return known_.contains(session);
                                             }},
      base_(event_base_new(), event_base_free), workers_(options.threads) {
    listen();
    const auto finished = [](int, short, void *self) {
        static_cast<NetconfServer *>(self)->workers_.run_finished();
    };
    finished_ = event_new(base_.get(), workers_.descriptor(), EV_READ | EV_PERSIST, finished, this);
    event_add(finished_, nullptr);
    const auto due = [](int, short, void *self) {
        auto &server = *static_cast<NetconfServer *>(self);
        server.in_background([&server] { server.service_.datastores().take_back_when_due(); });
    };
    commit_timer_ = event_new(base_.get(), -1, 0, due, this);
    events_.on_event([this](const SharedEvent &event) { workers_.post([this, event] { tell(event); }); });
}

NetconfServer::~NetconfServer() {
    events_.on_event({});
    sessions_.clear();
    for (event *one : {finished_, stop_, commit_timer_, rest_timer_})
        if (one != nullptr)
            event_free(one);
    if (listener_ != nullptr) {
        evconnlistener_free(listener_);
        unlink(options_.socket.c_str());
    }
}

void NetconfServer::require_unanswered(const std::filesystem::path &socket) {
    if (is_answered(socket))
        fail(socket, "another server answers on this socket");
}

void NetconfServer::listen() {
    require_unanswered(options_.socket);
    std::error_code ignored;
    if (std::filesystem::is_socket(options_.socket, ignored))
        unlink(options_.socket.c_str());
    Descriptor socket = listen_on_socket(options_.socket, 128, SOCK_NONBLOCK);
    if (!socket.is_open())
        fail(options_.socket, "cannot listen: " + system_error_text());
    chmod(options_.socket.c_str(), 0666);
    const auto accepted = [](evconnlistener *, int fd, sockaddr *, int, void *self) {
        static_cast<NetconfServer *>(self)->accept(fd);
    };
    constexpr int listens_already = 0;
    listener_ = evconnlistener_new(base_.get(), accepted, this, LEV_OPT_CLOSE_ON_FREE | LEV_OPT_CLOSE_ON_EXEC,
                                   listens_already, socket.get());
    if (listener_ == nullptr)
        fail(options_.socket, "cannot listen");
    socket.release(); // the listener closes it
    const auto failed = [](evconnlistener *, void *self) { static_cast<NetconfServer *>(self)->rest(); };
    evconnlistener_set_error_cb(listener_, failed);
    const auto rested = [](int, short, void *listener) {
        evconnlistener_enable(static_cast<evconnlistener *>(listener));
    };
    rest_timer_ = evtimer_new(base_.get(), rested, listener_);
}

// When descriptors run out, pending connections would wake the loop again and again.
void NetconfServer::rest() {
    if (!has_said_full_)
        log_line("no more sessions can be accepted for now: " + system_error_text());
    has_said_full_ = true;
    evconnlistener_disable(listener_);
    const timeval wait{1, 0};
    evtimer_add(rest_timer_, &wait);
}

void NetconfServer::accept(int socket) {
    has_said_full_ = false;
    const std::optional<access::User> user = access::user_of_peer(socket, options_.groups);
    if (!user.has_value()) {
        log_line("a user who is neither a reader nor a writer was turned away");
        close(socket);
        return;
    }
    if (options_.most_sessions != 0 && sessions_.size() >= options_.most_sessions) {
        log_line("user " + user->name + " was turned away: there are " + std::to_string(sessions_.size()) +
                 " sessions, as many as may be");
        close(socket);
        return;
    }
    const uint32_t id = ++last_session_;
    Caller caller;
    caller.session = id;
    caller.user = user->name;
    caller.may_write = user->may_write;
    caller.comment = "NETCONF session " + std::to_string(id);
    std::vector<std::string> groups = access::names_of(user->groups);
    caller.rules = service_.rules_of(user->name, groups);
    auto session = std::make_unique<Session>(*this, base_.get(), socket, caller, std::move(groups));
    {
        const std::lock_guard<std::mutex> guard(known_mutex_);
        known_[id] = true;
    }
    monitoring_.session_began(id, user->name);
    sessions_.emplace(id, std::move(session)).first->second->greet();
}

void NetconfServer::end(uint32_t session, EndReason reason, std::optional<uint32_t> killed_by) {
    Session &ending = *sessions_.at(session);
    const Actor actor = ending.caller().actor();
    ending.is_gone()->store(true);
    const bool has_begun =
        ending.has_started() || reason == EndReason::bad_hello || reason == EndReason::timeout;
    {
        const std::lock_guard<std::mutex> guard(known_mutex_);
        known_.erase(session);
    }
    sessions_.erase(session);
    // RFC 6022: a killed session is not a dropped one.
    monitoring_.session_ended(session, reason != EndReason::closed && reason != EndReason::killed);
    log_line(described(actor) + " ends: " + std::string(to_string(reason)) +
             (killed_by.has_value() ? " by session " + std::to_string(*killed_by) : ""));
    if (has_begun)
        publish_session_end(events_, actor, std::string(to_string(reason)), killed_by);
    in_background([this, session] { service_.datastores().end_session(session); });
}

// Telling a session may end it.
void NetconfServer::tell(const SharedEvent &event) {
    for (auto session = sessions_.begin(); session != sessions_.end();)
        (session++)->second->tell(event);
}

// Rolling back a commit may take as long as the device needs, so it must not block the event loop.
void NetconfServer::in_background(std::function<void()> work) {
    workers_.add(Lane::upkeep, "", [this, work = std::move(work)]() -> WorkerPool::Finish {
        std::string trouble;
        try {
            work();
        } catch (const std::exception &error) {
            trouble = error.what();
        }
        return [this, trouble] {
            if (!trouble.empty())
                log_line("an unconfirmed commit cannot be rolled back: " + trouble);
            arm_commit_timer();
        };
    });
}

namespace {

// A message as long as this takes a while to parse.
constexpr size_t longest_quick_message = 256u << 10;

Lane lane_of(Cost cost) {
    switch (cost) {
    case Cost::low:
        return Lane::quick;
    case Cost::edit:
        return Lane::edit;
    case Cost::high:
        break;
    }
    return Lane::costly;
}

} // namespace

// What a request costs shows only in its content, so it is parsed first and then waits in the lane for its
// cost.
void NetconfServer::dispatch(Session &session, std::string message) {
    const Lane first = message.size() > longest_quick_message ? Lane::costly : Lane::quick;
    const Caller caller = session.caller();
    workers_.add(
        first, caller.user, [this, first, caller, message = std::move(message)]() -> WorkerPool::Finish {
            auto request = std::make_shared<const Request>(message);
            const Lane lane = lane_of(request->cost(server_));
            if (lane == first || (first == Lane::costly && lane == Lane::quick))
                return answered(caller, *request);
            workers_.add(lane, caller.user, [this, lane, caller, request]() -> WorkerPool::Finish {
                if (lane == Lane::costly && caller.is_gone->load()) // nothing but a reply that nobody reads
                    return {};
                return answered(caller, *request);
            });
            return {};
        });
}

// What a gone client asked for is done all the same, unless the server ends before it has changed anything.
WorkerPool::Finish NetconfServer::answered(const Caller &caller, const Request &request) {
    const Interruptible interruptible([this] { return ends_.load(); });
    Reply reply = answer(server_, caller, request);
    if (reply.content.has_file()) // each thread keeps what it has freed
        ::malloc_trim(0);
    log_reply(caller, reply);
    monitoring_.count(caller.session,
                      {reply.is_bad ? 0u : 1u, reply.is_bad ? 1u : 0u, reply.is_error ? 1u : 0u, 0});
    return
        [this, id = caller.session, reply = std::make_shared<Reply>(std::move(reply))] { finish(id, *reply); };
}

void NetconfServer::finish(uint32_t id, Reply &reply) {
    arm_commit_timer();
    if (reply.aftermath.kill.has_value() && sessions_.contains(*reply.aftermath.kill))
        end(*reply.aftermath.kill, EndReason::killed, id);
    const auto session = sessions_.find(id);
    if (session != sessions_.end())
        session->second->reply(reply);
}

void NetconfServer::arm_commit_timer() {
    const auto deadline = service_.datastores().deadline();
    if (!deadline.has_value()) {
        event_del(commit_timer_);
        return;
    }
    const auto left = std::max(
        std::chrono::milliseconds(0),
        std::chrono::duration_cast<std::chrono::milliseconds>(*deadline - std::chrono::steady_clock::now()) +
            std::chrono::milliseconds(1));
    const timeval wait{static_cast<time_t>(left.count() / 1000),
                       static_cast<suseconds_t>(left.count() % 1000 * 1000)};
    event_add(commit_timer_, &wait);
}

void NetconfServer::run(int stop) {
    const auto stopped = [](int, short, void *base) { event_base_loopbreak(static_cast<event_base *>(base)); };
    stop_ = event_new(base_.get(), stop, EV_READ, stopped, base_.get());
    event_add(stop_, nullptr);
    event_base_dispatch(base_.get());
    ends_ = true;
    for (const auto &[id, session] : sessions_)
        session->is_gone()->store(true); // their requests need not be finished
    sessions_.clear();
}

} // namespace yfw::netconf
