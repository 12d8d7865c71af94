#include "device/events/actor_text.h"

namespace yfw::events {

std::string described(const Actor &actor) {
    if (actor.session == 0 && actor.user.empty())
        return "the server";
    return (actor.session == 0 ? "user " : "session " + std::to_string(actor.session) + " of ") + actor.user +
           (actor.host.empty() ? "" : " from " + actor.host);
}

} // namespace yfw::events
