#include "frontends/netconf/monitoring.h"

#include "base/utc_time.h"
#include "frontends/netconf/rpc_error.h"

namespace yfw::netconf {
namespace {

std::string print(const SessionCounters &counters) {
    return text_element("in-rpcs", std::to_string(counters.in_rpcs)) +
           text_element("in-bad-rpcs", std::to_string(counters.in_bad_rpcs)) +
           text_element("out-rpc-errors", std::to_string(counters.out_rpc_errors)) +
           text_element("out-notifications", std::to_string(counters.out_notifications));
}

void add(SessionCounters &to, const SessionCounters &more) {
    to.in_rpcs += more.in_rpcs;
    to.in_bad_rpcs += more.in_bad_rpcs;
    to.out_rpc_errors += more.out_rpc_errors;
    to.out_notifications += more.out_notifications;
}

using Guard = std::lock_guard<std::mutex>;

} // namespace

Monitoring::Monitoring() : start_time_(utc_now()) {}

void Monitoring::session_began(uint32_t id, const std::string &user) {
    const Guard guard(mutex_);
    sessions_[id] = {user, utc_now(), {}};
    in_sessions_++;
}

void Monitoring::session_ended(uint32_t id, bool dropped) {
    const Guard guard(mutex_);
    sessions_.erase(id);
    dropped_sessions_ += dropped ? 1 : 0;
}

void Monitoring::bad_hello() {
    const Guard guard(mutex_);
    bad_hellos_++;
}

void Monitoring::count(uint32_t id, const SessionCounters &more) {
    const Guard guard(mutex_);
    add(all_, more);
    const auto session = sessions_.find(id);
    if (session != sessions_.end())
        add(session->second.counters, more);
}

std::string Monitoring::print() const {
    const Guard guard(mutex_);
    std::string xml = "<sessions>";
    for (const auto &[id, session] : sessions_)
        xml += "<session>" + text_element("session-id", std::to_string(id)) +
               "<transport>netconf-ssh</transport>" + text_element("username", session.user) +
               text_element("login-time", session.login_time) + netconf::print(session.counters) + "</session>";
    return xml + "</sessions><statistics>" + text_element("netconf-start-time", start_time_) +
           text_element("in-bad-hellos", std::to_string(bad_hellos_)) +
           text_element("in-sessions", std::to_string(in_sessions_)) +
           text_element("dropped-sessions", std::to_string(dropped_sessions_)) + netconf::print(all_) +
           "</statistics>";
}

} // namespace yfw::netconf
