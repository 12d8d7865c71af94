// Who does something, for messages.
#ifndef YFW_DEVICE_EVENTS_ACTOR_TEXT_H
#define YFW_DEVICE_EVENTS_ACTOR_TEXT_H

#include <string>

#include "device/events/events.h"

namespace yfw::events {

// "session 4 of alice from 192.0.2.1", "user alice from 192.0.2.1", "the server".
std::string described(const Actor &actor);

} // namespace yfw::events

#endif
