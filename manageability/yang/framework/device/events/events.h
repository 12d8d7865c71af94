// What happens to a device, in the words of no protocol.
#ifndef YFW_DEVICE_EVENTS_EVENTS_H
#define YFW_DEVICE_EVENTS_EVENTS_H

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <libyang/libyang.h>

namespace yfw::events {

// Who did something: a session of a user, or the server by itself.
struct Actor {
    uint32_t session = 0; // 0: the server
    std::string user;
};

// A node that a request edited: its instance path, the word for what was done, and the OpenConfig top container, which
// the schemas own.
struct EditRecord {
    std::string target;
    std::string operation;
    const lysc_node *openconfig = nullptr;
};

// The running configuration has changed. Without edits: it is an earlier one again.
struct ConfigurationChange {
    Actor actor;
    std::vector<EditRecord> edits;
};

// What became of a commit that has to be confirmed (RFC 6241 section 8.4).
struct ConfirmedCommit {
    enum class What { start, cancel, timeout, extend, complete };

    Actor actor;
    What what = What::start;
    std::optional<std::chrono::seconds> timeout; // of `start` and `extend`
};

} // namespace yfw::events

#endif
