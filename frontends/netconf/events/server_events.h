// The events of a NETCONF server itself (RFC 6470) and of its device, published on its stream.
#ifndef YFW_FRONTENDS_NETCONF_EVENTS_SERVER_EVENTS_H
#define YFW_FRONTENDS_NETCONF_EVENTS_SERVER_EVENTS_H

#include <cstdint>
#include <optional>
#include <string>

#include "device/events/hub.h"
#include "frontends/netconf/events/event_stream.h"
#include "frontends/netconf/server_data/protocol_modules.h"

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

// The element of an event as large as they usually are, to try a filter on. `openconfig`: the top container.
std::string usual_event(const lysc_node *openconfig);

void publish_session_start(EventStream &events, const Actor &session);

// `reason`: a word of termination-reason; `killed_by`: a session, for "killed".
void publish_session_end(EventStream &events, const Actor &session, const std::string &reason,
                         std::optional<uint32_t> killed_by);

// The mapping's notification of a change; nothing where it has none. `change`: added, updated or removed;
// `keys`: of the lists down to the entry; `data`: the entry as a read shows it, printed.
void publish_change(EventStream &events, const ProtocolModules &modules, const std::string &change,
                    const std::vector<std::string> &keys, const std::string &data);

} // namespace yfw::netconf

#endif
