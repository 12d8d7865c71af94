#include "frontends/netconf/transport/server_log.h"

#include <algorithm>
#include <array>

#include "base/say.h"
#include "device/events/actor_text.h"
#include "frontends/netconf/events/server_events.h"
#include "yang/yang_text.h"

namespace yfw::netconf {
namespace {

constexpr size_t longest_line = 2000; // octets
constexpr size_t most_edits = 20;

bool writes(std::string_view operation) {
    constexpr std::array<std::string_view, 10> writing{
        "edit-config",     "edit-data", "copy-config", "commit",       "cancel-commit",
        "discard-changes", "lock",      "unlock",      "kill-session", "delete-config"};
    return std::find(writing.begin(), writing.end(), operation) != writing.end();
}

} // namespace

void log_line(std::string_view text) {
    say(yang::shortened(text, longest_line));
}

void log_reply(const Caller &caller, const Reply &reply) {
    const std::string name = reply.operation.empty() ? "a message" : "<" + reply.operation + ">";
    if (reply.is_error)
        log_line(described(caller.actor()) + ": " + name + " is refused: " + reply.error);
    else if (writes(reply.operation))
        log_line(described(caller.actor()) + ": " + name + " is done");
}

void ChangeLog::changed(const events::ConfigurationChange &change) {
    std::string text = described(change.actor) + " changes the running configuration:";
    for (size_t i = 0; i < std::min(change.edits.size(), most_edits); i++)
        text += (i > 0 ? ", " : " ") + change.edits[i].operation + " " + change.edits[i].target;
    if (change.edits.empty())
        text += " an earlier one is restored";
    if (change.edits.size() > most_edits)
        text += " and " + std::to_string(change.edits.size() - most_edits) + " more";
    log_line(text);
}

void ChangeLog::changed(const events::ConfirmedCommit &commit) {
    log_line(described(commit.actor) + ": confirmed commit: " + word_of(commit.what));
}

} // namespace yfw::netconf
