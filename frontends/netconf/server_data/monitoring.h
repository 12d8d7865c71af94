// The server's monitoring data (RFC 6022).
#ifndef YFW_FRONTENDS_NETCONF_SERVER_DATA_MONITORING_H
#define YFW_FRONTENDS_NETCONF_SERVER_DATA_MONITORING_H

#include <atomic>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include <libyang/libyang.h>

namespace yfw::netconf {

inline constexpr std::string_view monitoring_ns = "urn:ietf:params:xml:ns:yang:ietf-netconf-monitoring";

struct SessionCounters {
    uint64_t in_rpcs = 0;
    uint64_t in_bad_rpcs = 0;
    uint64_t out_rpc_errors = 0;
    uint64_t out_notifications = 0;
};

// The counters and sessions of one server. Any thread may call any member; none waits for a device.
class Monitoring {
public:
    Monitoring();

    void session_began(uint32_t id, const std::string &user);
    // `host`: an IP address.
    void session_comes_from(uint32_t id, const std::string &host);
    // `dropped`: the client did not close it.
    void session_ended(uint32_t id, bool dropped);
    void bad_hello();
    void count(uint32_t id, const SessionCounters &more);

    // Adds the containers "sessions" and "statistics" to a tree of ietf-netconf-monitoring.
    void add_to(lyd_node &netconf_state) const;

private:
    // An entry of /netconf-state/sessions (RFC 6022 section 2.1.4).
    struct SessionEntry {
        std::string user;
        std::string host; // empty when unknown
        std::string login_time;
        SessionCounters counters;
    };

    mutable std::mutex mutex_;
    std::string start_time_;
    std::map<uint32_t, SessionEntry> sessions_;
    SessionCounters all_;
    uint32_t bad_hellos_ = 0;
    uint32_t in_sessions_ = 0;
    uint32_t dropped_sessions_ = 0;
};

} // namespace yfw::netconf

#endif
