// The events of a NETCONF server itself (RFC 6470) and of its device, published on its stream.
#ifndef YFW_FRONTENDS_NETCONF_SERVER_EVENTS_H
#define YFW_FRONTENDS_NETCONF_SERVER_EVENTS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "device/events/event_stream.h"
#include "frontends/netconf/protocol_modules.h"
#include "yang/edit.h"

namespace yfw::netconf {

// Who did something: a session of a user, or the server by itself.
struct Actor {
    uint32_t session = 0; // 0: the server
    std::string user;
};

// A node that a request edited: its instance path, the word for what was done, and the OpenConfig top
// container, which the schemas own.
struct EditRecord {
    std::string target;
    std::string operation;
    const lysc_node *openconfig = nullptr;
};

// What an edit touches: the leaves that it sets, and the topmost node of what is replaced or taken away as a
// whole.
std::vector<EditRecord> edit_records(const yang::EditNode &edit);

void publish_config_change(events::EventStream &events, const Actor &actor,
                           const std::vector<EditRecord> &edits);

// The element of an event as large as they usually are, to try a filter on. `openconfig`: the top container.
std::string usual_event(const lysc_node *openconfig);

void publish_session_start(events::EventStream &events, const Actor &session);

// `reason`: a word of termination-reason; `killed_by`: a session, for "killed".
void publish_session_end(events::EventStream &events, const Actor &session, const std::string &reason,
                         std::optional<uint32_t> killed_by);

// `what`: a word of confirm-event; `timeout`: for "start" and "extend".
void publish_confirmed_commit(events::EventStream &events, const Actor &actor, const std::string &what,
                              std::optional<std::chrono::seconds> timeout);

// The mapping's notification of a change; nothing where it has none. `change`: added, updated or removed;
// `keys`: of the lists down to the entry; `data`: the entry as a read shows it, printed.
void publish_change(events::EventStream &events, const ProtocolModules &modules, const std::string &change,
                    const std::vector<std::string> &keys, const std::string &data);

} // namespace yfw::netconf

#endif
