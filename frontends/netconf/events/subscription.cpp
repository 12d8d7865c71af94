#include "frontends/netconf/events/subscription.h"

#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/messages/rpc_error.h"

namespace yfw::netconf {
namespace {

// In bytes; the subscription keeps the filter.
constexpr size_t longest_filter = 16384;

std::string bad_element(const char *name) {
    return "<bad-element>" + std::string(name) + "</bad-element>";
}

std::optional<EventTime> time_in(const Element &request, const ProtocolModules &modules, const char *name) {
    const std::optional<Element> given = request.child(name);
    if (!given.has_value())
        return std::nullopt;
    const std::string path = "/notifications:create-subscription/" + std::string(name);
    const bool has_form = modules.allows(path.c_str(), given->text());
    const std::optional<EventTime> time = has_form ? parse_time(given->text()) : std::nullopt;
    if (!time.has_value())
        throw RpcError("application", "invalid-value",
                       "<" + std::string(name) + "> must be a time such as 2026-01-31T23:59:59Z")
            .with_info(bad_element(name));
    return time;
}

std::string of_streams(const char *event) {
    return "<" + std::string(event) + " xmlns=\"" + streams_ns + "\"/>";
}

} // namespace

Subscription::Subscription(const Element &request, const ProtocolModules &modules) : modules_(modules) {
    const std::optional<Element> stream = request.child("stream");
    if (stream.has_value() && stream->text() != "NETCONF")
        throw RpcError("application", "invalid-value", "the only stream is NETCONF")
            .with_info(bad_element("stream"));
    read_times(request);
    // Clients that build the filter as for <get> leave it in the base NETCONF namespace.
    for (const Element &child : request.children())
        if (child.name() == "filter")
            read_filter(child);
}

void Subscription::read_times(const Element &request) {
    start_ = time_in(request, modules_, "startTime");
    stop_ = time_in(request, modules_, "stopTime");
    if (stop_.has_value() && !start_.has_value())
        throw RpcError("protocol", "missing-element", "<stopTime> requires <startTime>")
            .with_info(bad_element("startTime"));
    if (start_.has_value() && *start_ > std::chrono::system_clock::now())
        throw RpcError("protocol", "bad-element", "<startTime> is in the future")
            .with_info(bad_element("startTime"));
    if (stop_.has_value() && *stop_ < *start_)
        throw RpcError("protocol", "bad-element", "<stopTime> is earlier than <startTime>")
            .with_info(bad_element("stopTime"));
}

void Subscription::read_filter(const Element &filter) {
    std::string text = filter.print();
    if (text.size() > longest_filter)
        throw RpcError("protocol", "too-big",
                       "the filter is longer than " + std::to_string(longest_filter) + " bytes");
    filter_text_.emplace(text);
    filter_ = filter_of(filter_text_->root());
    if (filter_->type == FilterType::xpath)
        try_filter();
}

// Refuses an expression that is invalid or too expensive for every event. This catches what can be known now:
// an expression may still fail on particular events.
void Subscription::try_filter() const {
    const auto filtered = [this](const std::string &event) {
        xpath_filtered(modules_.parse_notification(event), *filter_, unlimited_depth, XPathUse::event);
    };
    filtered(replay_complete());
    try {
        filtered(usual_event(modules_.openconfig_root()));
    } catch (const RpcError &error) {
        if (error.tag == "resource-denied")
            throw;
    }
}

bool Subscription::selects(const Event &event) const {
    yang::DataTree data = modules_.parse_notification(event.xml);
    if (filter_->type == FilterType::xpath)
        return xpath_filtered(std::move(data), *filter_, unlimited_depth, XPathUse::event) != nullptr;
    const auto selected = subtree_selection(filter_->element, data->schema);
    if (selected.has_value())
        keep_selected(data, *selected);
    return selected.has_value() && data != nullptr;
}

bool Subscription::wants(const Event &event) const {
    try {
        return !filter_.has_value() || selects(event);
    } catch (const RpcError &error) {
        return error.tag == "resource-denied"; // any other error: the expression makes no sense for this event
    } catch (const std::exception &) {
        return false;
    }
}

std::string print_notification(EventTime time, const std::string &event) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<notification xmlns=\"" + std::string(notification_ns) +
           "\">" + text_element("eventTime", print_time(time)) + event + "</notification>";
}

std::string replay_complete() {
    return of_streams("replayComplete");
}

std::string notification_complete() {
    return of_streams("notificationComplete");
}

} // namespace yfw::netconf
