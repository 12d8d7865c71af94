#include "fuzz/gnmi_replica.h"

#include <algorithm>

#include "frontends/gnmi/paths/path_text.h"
#include "fuzz/support/fuzz_target.h"

namespace yfw::gnmi::fuzz {
namespace {

using List = ::gnmi::SubscriptionList;

::gnmi::Path absolute(const ::gnmi::Path &prefix, const ::gnmi::Path &path) {
    ::gnmi::Path made;
    for (const ::gnmi::Path *part : {&prefix, &path})
        for (const ::gnmi::PathElem &element : part->elem())
            *made.add_elem() = element;
    return made;
}

bool is_of_encoding(const ::gnmi::TypedValue &value, ::gnmi::Encoding encoding) {
    if (encoding == ::gnmi::JSON)
        return value.has_json_val();
    if (encoding == ::gnmi::JSON_IETF)
        return value.has_json_ietf_val();
    return value.value_case() != ::gnmi::TypedValue::VALUE_NOT_SET && !value.has_json_val() &&
           !value.has_json_ietf_val();
}

} // namespace

// YANG's strings hold no such control characters.
std::string key_of(const ::gnmi::Path &prefix, const ::gnmi::Path &path) {
    std::string key;
    const ::gnmi::Path whole = absolute(prefix, path);
    for (const ::gnmi::PathElem &element : whole.elem()) {
        key.append(1, '\1').append(element.name());
        for (const auto &[name, value] :
             std::map<std::string, std::string>(element.key().begin(), element.key().end()))
            key.append(1, '\2').append(name).append(1, '\3').append(value);
        key.push_back('\4');
    }
    return key;
}

std::string text_of(const ValuesByPath &values) {
    std::string text;
    for (const auto &[key, value] : values) {
        std::string path = key;
        for (const auto &[separator, shown] : {std::pair('\1', '/'), {'\2', '['}, {'\3', '='}, {'\4', ';'}})
            std::replace(path.begin(), path.end(), separator, shown);
        text += path + " " + value + "\n";
    }
    return text;
}

void require_single(const ::gnmi::Path &path) {
    bool is_single = path.origin().empty() && path.element().empty() && path.target().empty();
    for (const ::gnmi::PathElem &element : path.elem())
        is_single = is_single && !element.name().empty() && element.name() != "*" && element.name() != "...";
    if (!is_single)
        yfw::fuzz::require(false, "A path that the target tells of is not that of a single node.",
                           path.DebugString());
}

Replica::Replica(FuzzedTarget &target, const Caller &caller)
    : stream_(target.target(), target.publisher(), caller, {}, [] {}) {}

void Replica::send(const ::gnmi::SubscribeRequest &request) {
    stream_.receive(request);
    if (request.has_subscribe())
        list_ = request.subscribe();
    if (list_.mode() != List::POLL || request.has_poll())
        rounds_++;
}

void Replica::require(bool holds, std::string_view what, const ::gnmi::SubscribeResponse &response) const {
    if (!holds)
        yfw::fuzz::require(false, what, list_.DebugString() + "\n" + response.DebugString());
}

void Replica::take() {
    while (const SharedMessage message = stream_.take()) {
        ::gnmi::SubscribeResponse sent;
        if (!sent.ParseFromString(message->bytes()) || message->size() != message->bytes().size())
            yfw::fuzz::require(false, "A message that is sent cannot be read.",
                               message->message().DebugString());
        take(sent);
    }
    yfw::fuzz::require(!stream_.failure().has_value(), "A client that takes everything is called slow.",
                       list_.DebugString());
    yfw::fuzz::require(syncs_ == rounds_, "There is not one sync_response for each round.",
                       list_.DebugString());
    yfw::fuzz::require(list_.mode() != List::ONCE || stream_.is_over(), "A stream of the mode ONCE goes on.",
                       list_.DebugString());
}

void Replica::take(const ::gnmi::SubscribeResponse &response) {
    if (response.sync_response()) {
        syncs_++;
        return;
    }
    require(response.has_update() && response.update().timestamp() > 0, "A message says nothing.", response);
    const ::gnmi::Notification &notification = response.update();
    require(notification.prefix().target() == list_.prefix().target(),
            "A message has another target than the request.", response);
    require(notification.update_size() + notification.delete__size() > 0, "A message is empty.", response);
    require(list_.updates_only() == false || list_.mode() == List::STREAM,
            "Values are told where only updates were asked for.", response);
    apply(notification);
}

void Replica::apply(const ::gnmi::Notification &notification) {
    for (const ::gnmi::Path &path : notification.delete_()) {
        require_single(path);
        const std::string gone = key_of(notification.prefix(), path);
        std::erase_if(values_, [&gone](const auto &value) { return value.first.starts_with(gone); });
    }
    for (const ::gnmi::Update &update : notification.update()) {
        require_single(update.path());
        if (!is_of_encoding(update.val(), list_.encoding()))
            yfw::fuzz::require(false, "A value has another encoding than the one asked for.",
                               notification.DebugString());
        const std::string key = key_of(notification.prefix(), update.path());
        values_[key] = update.val().ShortDebugString();
        paths_[key] = absolute(notification.prefix(), update.path());
    }
}

bool Replica::follows_the_device() const {
    return list_.mode() == List::STREAM && !list_.updates_only() &&
           std::all_of(list_.subscription().begin(), list_.subscription().end(),
                       [](const ::gnmi::Subscription &each) { return each.mode() == ::gnmi::ON_CHANGE; });
}

ValuesByPath values_now(FuzzedTarget &target, const Caller &caller, ::gnmi::SubscriptionList list) {
    Replica replica(target, caller);
    ::gnmi::SubscribeRequest request;
    list.set_mode(List::ONCE);
    list.set_updates_only(false);
    *request.mutable_subscribe() = std::move(list);
    replica.send(request);
    replica.take();
    return replica.values();
}

} // namespace yfw::gnmi::fuzz
