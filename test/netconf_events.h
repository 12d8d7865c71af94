// Notifications: subscribing to them, and reading them.
#pragma once

#include <chrono>
#include <functional>
#include <iosfwd>
#include <string>
#include <vector>

#include "netconf_client.h"

namespace yfw::test {

inline const std::string notification_namespace = "urn:ietf:params:xml:ns:netconf:notification:1.0";
inline const std::string stream_namespace = "urn:ietf:params:xml:ns:netmod:notification";
inline const std::string event_namespace = "urn:ietf:params:xml:ns:yang:ietf-netconf-notifications";
inline const std::string neighbor_namespace = "urn:yfw:yang:yfw-lldp-notifications";

inline const std::string config_change = "netconf-config-change";
inline const std::string session_start = "netconf-session-start";
inline const std::string session_end = "netconf-session-end";
inline const std::string confirmed_commit = "netconf-confirmed-commit";

/// <create-subscription> with this content.
std::string create_subscription(const std::string &content = "");
std::string start_time(const std::string &time);
std::string stop_time(const std::string &time);
/// A time before every event.
inline const std::string long_ago = "2000-01-01T00:00:00Z";
/// A date-and-time in UTC, with milliseconds.
std::string time_from_now(std::chrono::milliseconds time);

/// The event of a notification: the element next to its time. Fails the test when the notification is invalid.
Xml event_of(const Xml &notification);

using EventCondition = std::function<bool(const Xml &event)>;

/// The next event with that name for which the condition holds; others are skipped. Throws std::runtime_error
/// naming the skipped ones when it does not arrive.
Xml next_event(NetconfClient &client, const std::string &name, const EventCondition &condition = nullptr);
/// The events up to and including the one with that name. Throws like next_event().
std::vector<Xml> events_to(NetconfClient &client, const std::string &name);
/// Those of the events that have that name.
std::vector<Xml> events_by(const std::vector<Xml> &events, const std::string &name);
std::vector<std::string> names_of(const std::vector<Xml> &events);

/// An <edit> of a configuration change; the target is written without prefixes and with single quotes.
struct Edited {
    std::string target;
    std::string operation;
    bool operator==(const Edited &) const = default;
};
std::ostream &operator<<(std::ostream &to, const Edited &edited);
std::vector<Edited> edits_of(const Xml &change);
/// The targets of a configuration change.
std::vector<std::string> targets_of(const Xml &change);

/// The name of the user who runs the test.
std::string own_user();

} // namespace yfw::test
