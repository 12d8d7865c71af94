#include "netconf_events.h"

#include <array>
#include <ctime>
#include <ostream>
#include <stdexcept>

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

namespace yfw::test {
namespace {

using Clock = std::chrono::steady_clock;

// Calls `take` with each event that arrives, until it returns true.
void for_each_event(NetconfClient &client, const std::string &awaited, const EventCondition &take) {
    std::string seen;
    const auto deadline = Clock::now() + patience;
    for (;;) {
        const auto rest = std::chrono::duration_cast<std::chrono::milliseconds>(deadline - Clock::now());
        const std::optional<Xml> notification =
            client.notification(std::max(rest, std::chrono::milliseconds(0)));
        if (!notification.has_value() || rest.count() <= 0)
            throw std::runtime_error("no " + awaited + " came, but" + (seen.empty() ? " nothing" : seen));
        const Xml event = event_of(*notification);
        if (take(event))
            return;
        seen += " " + event.name;
    }
}

} // namespace

std::string create_subscription(const std::string &content) {
    return "<create-subscription xmlns=\"" + notification_namespace + "\">" + content +
           "</create-subscription>";
}

std::string start_time(const std::string &time) {
    return "<startTime>" + time + "</startTime>";
}

std::string stop_time(const std::string &time) {
    return "<stopTime>" + time + "</stopTime>";
}

std::string time_from_now(std::chrono::milliseconds time) {
    const auto moment = std::chrono::floor<std::chrono::milliseconds>(std::chrono::system_clock::now()) + time;
    const auto milliseconds = moment.time_since_epoch().count();
    const time_t seconds = static_cast<time_t>(milliseconds / 1000);
    tm parts{};
    gmtime_r(&seconds, &parts);
    std::array<char, 32> text{};
    std::strftime(text.data(), text.size(), "%FT%T", &parts);
    const std::string fraction = std::to_string(1000 + milliseconds % 1000).substr(1);
    return std::string(text.data()) + "." + fraction + "Z";
}

Xml event_of(const Xml &notification) {
    EXPECT_EQ(notification.ns, notification_namespace) << notification.printed;
    EXPECT_EQ(notification.texts("eventTime").size(), 1u) << notification.printed;
    EXPECT_EQ(notification.children.size(), 2u) << notification.printed;
    for (const Xml &each : notification.children)
        if (each.name != "eventTime")
            return each;
    throw std::runtime_error("a notification without an event: " + notification.printed);
}

Xml next_event(NetconfClient &client, const std::string &name, const EventCondition &condition) {
    Xml found;
    for_each_event(client, name, [&](const Xml &event) {
        found = event;
        return event.name == name && (condition == nullptr || condition(event));
    });
    return found;
}

std::vector<Xml> events_to(NetconfClient &client, const std::string &name) {
    std::vector<Xml> events;
    for_each_event(client, name, [&](const Xml &event) {
        events.push_back(event);
        return event.name == name;
    });
    return events;
}

std::vector<Xml> events_by(const std::vector<Xml> &events, const std::string &name) {
    std::vector<Xml> found;
    for (const Xml &each : events)
        if (each.name == name)
            found.push_back(each);
    return found;
}

std::vector<std::string> names_of(const std::vector<Xml> &events) {
    std::vector<std::string> names;
    for (const Xml &each : events)
        names.push_back(each.name);
    return names;
}

std::ostream &operator<<(std::ostream &to, const Edited &edited) {
    return to << edited.operation << " of " << edited.target;
}

namespace {

// "/a:b[a:c='d']": "/b[c='d']". Not with std::regex, which would take most of the time of
// a test with long events.
std::string without_prefixes(const std::string &path) {
    std::string text;
    for (size_t at = 0; at < path.size(); at++) {
        text += path[at];
        if (path[at] != '/' && path[at] != '[')
            continue;
        const size_t end = path.find_first_of("/[]:='\"", at + 1);
        if (end != std::string::npos && end > at + 1 && path[end] == ':')
            at = end;
    }
    return text;
}

std::string with_single_quotes(std::string path) {
    for (size_t at = path.find("=\""); at != std::string::npos; at = path.find("=\"", at + 2)) {
        const size_t end = path.find('"', at + 2);
        if (end == std::string::npos)
            break;
        path[at + 1] = path[end] = '\'';
    }
    return path;
}

} // namespace

std::vector<Edited> edits_of(const Xml &change) {
    std::vector<Edited> edits;
    for (const Xml &each : change.children) {
        if (each.name != "edit")
            continue;
        edits.push_back(
            {with_single_quotes(without_prefixes(each.text_at("target"))), each.text_at("operation")});
    }
    return edits;
}

std::vector<std::string> targets_of(const Xml &change) {
    std::vector<std::string> targets;
    for (const Edited &each : edits_of(change))
        targets.push_back(each.target);
    return targets;
}

std::string own_user() {
    const passwd *user = getpwuid(geteuid());
    return user != nullptr ? user->pw_name : "";
}

} // namespace yfw::test
