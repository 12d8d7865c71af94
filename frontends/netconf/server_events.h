// The events of a NETCONF server itself (RFC 6470) and of its device, published on its stream.
#ifndef YFW_FRONTENDS_NETCONF_SERVER_EVENTS_H
#define YFW_FRONTENDS_NETCONF_SERVER_EVENTS_H

#include <cstdint>
#include <optional>
#include <string>

#include "device/events/hub.h"
#include "frontends/netconf/event_stream.h"

namespace yfw::netconf {

using events::Actor;

// Publishes what happens to the device. Borrows both; told of events for as long as it lives.
class DeviceEvents final : public events::Observer {
public:
    DeviceEvents(events::Hub &hub, EventStream &stream) : hub_(hub), stream_(stream) { hub_.add(*this); }
    ~DeviceEvents() override { hub_.remove(*this); }
    DeviceEvents(const DeviceEvents &) = delete;
    DeviceEvents &operator=(const DeviceEvents &) = delete;

    void changed(const events::ConfigurationChange &change) override;
    void changed(const events::ConfirmedCommit &commit) override;

private:
    events::Hub &hub_;
    EventStream &stream_;
};

// The element of an event as large as they usually are, to try a filter on.
std::string usual_event();

void publish_session_start(EventStream &events, const Actor &session);

// `reason`: a word of termination-reason; `killed_by`: a session, for "killed".
void publish_session_end(EventStream &events, const Actor &session, const std::string &reason,
                         std::optional<uint32_t> killed_by);

// An event of yfw-lldp-notifications. `change`: added, updated or removed; `data`: the neighbor as a read shows
// it, printed.
void publish_neighbor_change(EventStream &events, const std::string &change, const std::string &interface,
                             const std::string &id, const std::string &data);

} // namespace yfw::netconf

#endif
