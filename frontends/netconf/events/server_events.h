// The NETCONF server's own events (RFC 6470) and its device's, published on its stream.
#ifndef YFW_FRONTENDS_NETCONF_EVENTS_SERVER_EVENTS_H
#define YFW_FRONTENDS_NETCONF_EVENTS_SERVER_EVENTS_H

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "device/events/hub.h"
#include "frontends/netconf/events/event_stream.h"
#include "frontends/netconf/server_data/protocol_modules.h"

namespace yfw::netconf {

using events::Actor;

// Publishes the device's events as long as it exists, on the thread that causes them. Borrows the hub and the
// stream.
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

// A value of the leaf confirm-event.
const char *word_of(events::ConfirmedCommit::What what);

// An event element of typical size, to try a filter on. `openconfig`: the top container.
std::string usual_event(const lysc_node *openconfig);

void publish_session_start(EventStream &events, const Actor &session);

// `reason`: a termination-reason; `killed_by`: the killing session, for "killed".
void publish_session_end(EventStream &events, const Actor &session, const std::string &reason,
                         std::optional<uint32_t> killed_by);

// Publishes the mapping's change notification; does nothing if the mapping has none. `change`: added, updated
// or removed; `keys`: of the lists down to the entry; `data`: the printed entry, as a read returns it.
void publish_change(EventStream &events, const ProtocolModules &modules, const std::string &change,
                    const std::vector<std::string> &keys, const std::string &data);

// Publishes that the server has applied the running configuration to the device again; `paths`: of the leaves
// that had been changed. Does nothing if the module with the mapping's notification does not define this one.
void publish_reapplied(EventStream &events, const ProtocolModules &modules,
                       const std::vector<std::string> &paths);

} // namespace yfw::netconf

#endif
