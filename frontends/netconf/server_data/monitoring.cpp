#include "frontends/netconf/server_data/monitoring.h"

#include "base/utc_time.h"
#include "yang/building.h"

namespace yfw::netconf {
namespace {

void add_counters(lyd_node &parent, const SessionCounters &counters) {
    yang::add_leaf(parent, "in-rpcs", std::to_string(counters.in_rpcs));
    yang::add_leaf(parent, "in-bad-rpcs", std::to_string(counters.in_bad_rpcs));
    yang::add_leaf(parent, "out-rpc-errors", std::to_string(counters.out_rpc_errors));
    yang::add_leaf(parent, "out-notifications", std::to_string(counters.out_notifications));
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
    sessions_[id] = {user, "", utc_now(), {}};
    in_sessions_++;
}

void Monitoring::session_comes_from(uint32_t id, const std::string &host) {
    const Guard guard(mutex_);
    if (const auto session = sessions_.find(id); session != sessions_.end())
        session->second.host = host;
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

void Monitoring::add_to(lyd_node &netconf_state) const {
    const Guard guard(mutex_);
    lyd_node &sessions = yang::add_container(netconf_state, "sessions");
    for (const auto &[id, session] : sessions_) {
        lyd_node &entry = yang::add_entry(sessions, "session", {std::to_string(id), "", ""});
        yang::add_leaf(entry, "transport", "ietf-netconf-monitoring:netconf-ssh");
        yang::add_leaf(entry, "username", session.user);
        if (!session.host.empty())
            yang::add_leaf(entry, "source-host", session.host);
        yang::add_leaf(entry, "login-time", session.login_time);
        add_counters(entry, session.counters);
    }
    lyd_node &statistics = yang::add_container(netconf_state, "statistics");
    yang::add_leaf(statistics, "netconf-start-time", start_time_);
    yang::add_leaf(statistics, "in-bad-hellos", std::to_string(bad_hellos_));
    yang::add_leaf(statistics, "in-sessions", std::to_string(in_sessions_));
    yang::add_leaf(statistics, "dropped-sessions", std::to_string(dropped_sessions_));
    add_counters(statistics, all_);
}

} // namespace yfw::netconf
