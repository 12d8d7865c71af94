// A session's subscription to notifications (RFC 5277 section 2.1.1).
#ifndef YFW_FRONTENDS_NETCONF_EVENTS_SUBSCRIPTION_H
#define YFW_FRONTENDS_NETCONF_EVENTS_SUBSCRIPTION_H

#include <optional>
#include <string>
#include <string_view>

#include "frontends/netconf/events/event_stream.h"
#include "frontends/netconf/filters/filter.h"
#include "frontends/netconf/messages/xml.h"
#include "frontends/netconf/server_data/protocol_modules.h"

namespace yfw::netconf {

class Subscription {
public:
    // `request`: the <create-subscription>. Throws RpcError when it cannot be satisfied. Borrows the modules.
    Subscription(const Element &request, const ProtocolModules &modules);

    // An event is sent whole when the filter selects any part of it. An event too expensive to filter is sent
    // rather than lost. Never throws.
    bool wants(const Event &event) const;

    const std::optional<EventTime> &start() const { return start_; } // events kept since then are replayed
    const std::optional<EventTime> &stop() const { return stop_; }

private:
    void read_times(const Element &request);
    void read_filter(const Element &filter);
    void try_filter() const;
    bool selects(const Event &event) const;

    const ProtocolModules &modules_;
    std::optional<Document> filter_text_;
    std::optional<Filter> filter_; // in that text
    std::optional<EventTime> start_;
    std::optional<EventTime> stop_;
};

inline constexpr std::string_view notification_ns = "urn:ietf:params:xml:ns:netconf:notification:1.0";
inline constexpr const char *streams_ns = "urn:ietf:params:xml:ns:netmod:notification";

// Wraps an event in a <notification>.
std::string print_notification(EventTime time, const std::string &event);

// The events about the subscription itself (RFC 5277 section 3); they bypass the filter.
std::string replay_complete();
std::string notification_complete();

} // namespace yfw::netconf

#endif
