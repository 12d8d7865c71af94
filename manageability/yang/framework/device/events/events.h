// Device events, independent of any protocol.
#ifndef YFW_DEVICE_EVENTS_EVENTS_H
#define YFW_DEVICE_EVENTS_EVENTS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <libyang/libyang.h>

namespace yfw::events {

// The originator of an action: a user's session, a user without one, or, without a user, the server itself.
struct Actor {
    uint32_t session = 0; // 0: none
    std::string user;
    std::string host{}; // where the user comes from; empty when unknown
};

// A node edited by a request: its instance path, the operation's name, and the OpenConfig top container, which
// the schemas own.
struct EditRecord {
    std::string target;
    std::string operation;
    const lysc_node *openconfig = nullptr;
};

// The running configuration has changed. Without edits: an earlier one was restored.
struct ConfigurationChange {
    Actor actor;
    std::vector<EditRecord> edits;
};

// The progress of a confirmed commit (RFC 6241 section 8.4).
struct ConfirmedCommit {
    enum class What { start, cancel, timeout, extend, complete };

    Actor actor;
    What what = What::start;
    std::optional<std::chrono::seconds> timeout; // with `start` and `extend`
};

} // namespace yfw::events

#endif
