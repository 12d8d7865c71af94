// The fuzz target for gNMI: requests, one after another, on one device. An input consists of
//
//   byte 0    the sum of these flags; the characters '0' to '3' are all combinations:
//               1  the client may only read
//               2  access rules hide one value from the client, and forbid some writes
//   the rest  the requests, separated by lines of "----". Each starts with a line that says what it is:
//               get, set, capabilities
//               subscribe  the first message of a new stream
//               send       another message of the last stream
//             and goes on with the request in protobuf's text format.
#include <chrono>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <google/protobuf/io/tokenizer.h>
#include <google/protobuf/stubs/logging.h>
#include <google/protobuf/text_format.h>
#include <nlohmann/json.hpp>

#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/operations/capabilities.h"
#include "frontends/gnmi/operations/get_operation.h"
#include "frontends/gnmi/operations/set_operation.h"
#include "fuzz/fuzzed_target.h"
#include "fuzz/gnmi_replica.h"
#include "fuzz/support/fuzz_target.h"

namespace yfw::gnmi::fuzz {
namespace {

using yfw::fuzz::require;
using List = ::gnmi::SubscriptionList;

constexpr size_t most_requests = 12;
constexpr size_t most_streams = 3;
constexpr int most_asked_again = 3; // of the leaves of an answer
constexpr auto patience = std::chrono::seconds(20);

// ---- requests

class Silent final : public google::protobuf::io::ErrorCollector {
    void AddError(int, google::protobuf::io::ColumnNumber, const std::string &) override {}
};

// A message as the transport hands it over: read from its bytes. Nothing when there is none in the text.
template <class Message> std::optional<Message> message_of(std::string_view text) {
    constexpr int deepest = 50; // the wire's limit is 100
    Silent silent;
    google::protobuf::TextFormat::Parser parser;
    parser.RecordErrorsTo(&silent);
    parser.SetRecursionLimit(deepest);
    Message written;
    Message message;
    if (parser.ParseFromString(std::string(text), &written) && written.IsInitialized() &&
        message.ParseFromString(written.SerializeAsString()))
        return message;
    return std::nullopt;
}

struct Request {
    std::string_view kind;
    std::string_view text;
};

std::vector<Request> requests_of(std::string_view bytes) {
    constexpr std::string_view separator = "\n----\n";
    std::vector<Request> requests;
    while (requests.size() < most_requests && !bytes.empty()) {
        const size_t end = bytes.find(separator);
        const std::string_view one = bytes.substr(0, end);
        const size_t line = std::min(one.find('\n'), one.size());
        requests.push_back({one.substr(0, line), one.substr(line)});
        if (end == std::string_view::npos)
            break;
        bytes.remove_prefix(end + separator.size());
    }
    return requests;
}

// A text is only made when it is needed: most are long.
template <class Text> void require_that(bool holds, std::string_view what, Text &&text) {
    if (!holds)
        require(false, what, text());
}

template <class Request, class Response> auto both_of(const Request &request, const Response &response) {
    return [&request, &response] { return request.DebugString() + "\n" + response.DebugString(); };
}

// What a client could have caused.
void check_refusal(const Refusal &refusal, const std::string &request) {
    static const std::set<Code> codes{
        Code::invalid_argument,   Code::not_found,           Code::already_exists, Code::permission_denied,
        Code::resource_exhausted, Code::failed_precondition, Code::unimplemented};
    require(*refusal.what() != '\0', "A request is refused without a reason.", request);
    if (!codes.contains(refusal.code()))
        require(false, "A request is refused as nobody's fault but the target's.",
                request + "\n" + refusal.what());
}

// What a call returns; nothing when it is refused.
template <class Call, class Message> auto outcome_of(Call &&call, const Message &request) {
    std::optional<decltype(call())> outcome;
    try {
        outcome = call();
    } catch (const Refusal &refusal) {
        check_refusal(refusal, request.DebugString());
    } catch (const Error &error) {
        check_refusal(refusal_of(error), request.DebugString());
    }
    return outcome;
}

// ---- a client

class Client {
public:
    Client(FuzzedTarget &target, bool may_write, bool has_rules, std::string_view input)
        : target_(target), caller_(target.caller(may_write)),
          may_show_(!has_rules || input.find(FuzzedTarget::hidden_value) != std::string_view::npos) {}

    void send(const Request &request) {
        if (request.kind == "get")
            with<::gnmi::GetRequest>(request, &Client::take_get);
        else if (request.kind == "set")
            with<::gnmi::SetRequest>(request, &Client::take_set);
        else if (request.kind == "capabilities")
            with<::gnmi::CapabilityRequest>(request, &Client::take_capabilities);
        else if (request.kind == "subscribe")
            with<::gnmi::SubscribeRequest>(request, &Client::take_subscribe);
        else if (request.kind == "send")
            with<::gnmi::SubscribeRequest>(request, &Client::take_another);
    }

private:
    template <class Message> void with(const Request &request, void (Client::*take)(const Message &)) {
        if (const auto message = message_of<Message>(request.text))
            (this->*take)(*message);
    }

    void check_hidden(const std::string &sent) const {
        require(may_show_ || sent.find(FuzzedTarget::hidden_value) == std::string::npos,
                "A client is told what it may not read.", sent);
    }

    void take_capabilities(const ::gnmi::CapabilityRequest &request) {
        const auto response = outcome_of([&] { return capabilities(target_.target(), request); }, request);
        require_that(!response.has_value() ||
                         (response->supported_models_size() > 0 && !response->gnmi_version().empty()),
                     "Capabilities say nothing.", [&request] { return request.DebugString(); });
    }

    std::optional<::gnmi::GetResponse> get_of(const ::gnmi::GetRequest &request) {
        return outcome_of([&] { return get(target_.target(), caller_, request); }, request);
    }

    void take_get(const ::gnmi::GetRequest &request) {
        const std::optional<::gnmi::GetResponse> response = get_of(request);
        if (!response.has_value())
            return;
        const auto both = both_of(request, *response);
        require_that(response->notification_size() == request.path_size(),
                     "There is not one notification for each path.", both);
        check_hidden(response->SerializeAsString());
        int left = most_asked_again;
        for (const ::gnmi::Notification &notification : response->notification())
            for (const ::gnmi::Update &update : notification.update()) {
                check_update(request, update, both);
                if (left-- > 0)
                    check_asked_again(request, update, both);
            }
        check_once(request, *response, both);
    }

    template <class Text>
    static void check_update(const ::gnmi::GetRequest &request, const ::gnmi::Update &update,
                             const Text &both) {
        require_single(update.path());
        const ::gnmi::TypedValue &value = update.val();
        if (request.encoding() == ::gnmi::PROTO)
            require_that(value.value_case() != ::gnmi::TypedValue::VALUE_NOT_SET && !value.has_json_val() &&
                             !value.has_json_ietf_val(),
                         "A value in PROTO is not of a leaf's type.", both);
        else
            require_that(nlohmann::json::accept(request.encoding() == ::gnmi::JSON ? value.json_val()
                                                                                   : value.json_ietf_val()),
                         "A value in JSON is not JSON.", both);
    }

    // A path that an answer names has that value when it is asked for alone.
    template <class Text>
    void check_asked_again(const ::gnmi::GetRequest &request, const ::gnmi::Update &update, const Text &both) {
        ::gnmi::GetRequest again = request;
        again.clear_prefix();
        again.clear_path();
        *again.add_path() = update.path();
        const std::optional<::gnmi::GetResponse> response = get_of(again);
        require_that(response.has_value() && response->notification_size() == 1 &&
                         response->notification(0).update_size() == 1 &&
                         response->notification(0).update(0).SerializeAsString() == update.SerializeAsString(),
                     "What an answer holds is not answered when it is asked for alone.",
                     [&] { return both() + "\n" + again.DebugString(); });
    }

    // Subscribe with the mode ONCE tells the same leaves.
    template <class Text>
    void check_once(const ::gnmi::GetRequest &request, const ::gnmi::GetResponse &response, const Text &both) {
        if (request.encoding() != ::gnmi::PROTO || request.type() != ::gnmi::GetRequest::ALL ||
            request.extension_size() > 0)
            return;
        List list;
        *list.mutable_prefix() = request.prefix();
        *list.mutable_use_models() = request.use_models();
        list.set_encoding(::gnmi::PROTO);
        for (const ::gnmi::Path &path : request.path())
            *list.add_subscription()->mutable_path() = path;
        ValuesByPath got;
        for (const ::gnmi::Notification &notification : response.notification())
            for (const ::gnmi::Update &update : notification.update())
                got[key_of({}, update.path())] = update.val().ShortDebugString();
        if (list.subscription().empty())
            return;
        const ValuesByPath told = values_now(target_, caller_, list);
        require_that(got == told, "Get and Subscribe tell different values.",
                     [&] { return both() + "\n" + text_of(told); });
    }

    void take_set(const ::gnmi::SetRequest &request) {
        const auto text = [&request] { return request.DebugString(); };
        const std::string before = target_.configuration();
        const int64_t last = target_.last_commit();
        const auto response = set_of(request);
        const bool is_unchanged = target_.last_commit() == last;
        if (!response.has_value() || is_unchanged)
            require_that(is_unchanged && target_.configuration() == before,
                         "A Set without a commit has changed the configuration.", text);
        if (!response.has_value())
            return;
        require_that(caller_.may_write, "A client that may only read has written.", text);
        require_that(response->response_size() == request.delete__size() + request.replace_size() +
                                                      request.update_size() + request.union_replace_size(),
                     "There is not one result for each operation.", text);
        if (request.extension_size() == 0)
            check_repeated(request);
        check_streams();
    }

    std::optional<::gnmi::SetResponse> set_of(const ::gnmi::SetRequest &request) {
        return outcome_of([&] { return set(target_.target(), caller_, request); }, request);
    }

    void check_repeated(const ::gnmi::SetRequest &request) {
        const int64_t last = target_.last_commit();
        const std::string before = target_.configuration();
        const bool is_taken = set_of(request).has_value();
        require_that(is_taken && target_.last_commit() == last, "A repeated Set makes a commit.",
                     [&] { return request.DebugString() + "\n" + before + "\n" + target_.configuration(); });
    }

    // ---- streams

    void take_subscribe(const ::gnmi::SubscribeRequest &request) {
        if (streams_.size() == most_streams)
            streams_.erase(streams_.begin());
        streams_.push_back(std::make_unique<Replica>(target_, caller_));
        take_another(request);
    }

    void take_another(const ::gnmi::SubscribeRequest &request) {
        if (streams_.empty())
            return;
        Replica &stream = *streams_.back();
        const auto is_taken = outcome_of(
            [&] {
                stream.send(request);
                return true;
            },
            request);
        if (!is_taken.has_value()) {
            streams_.pop_back();
            return;
        }
        stream.take();
        check_hidden(text_of(stream.values()));
    }

    // Whoever follows the device knows, after a change, what a new subscriber is told.
    void check_streams() {
        for (const std::unique_ptr<Replica> &stream : streams_)
            if (stream->follows_the_device()) {
                const ValuesByPath now = values_now(target_, caller_, stream->list());
                const auto end = std::chrono::steady_clock::now() + patience;
                for (stream->take(); !is_known(*stream, now); stream->take()) {
                    if (std::chrono::steady_clock::now() > end)
                        require(false, "A subscriber misses a change.",
                                stream->list().DebugString() + "\nknown:\n" + text_of(stream->values()) +
                                    "\nnow:\n" + text_of(now));
                    std::this_thread::sleep_for(std::chrono::microseconds(100));
                }
                check_hidden(text_of(stream->values()));
            }
    }

    // A leaf that went back to its default is told of; a new subscriber is only told of it when it asks for the
    // leaf itself.
    bool is_known(const Replica &stream, const ValuesByPath &now) {
        for (const auto &[key, value] : now) {
            const auto known = stream.values().find(key);
            if (known == stream.values().end() || known->second != value)
                return false;
        }
        for (const auto &[key, value] : stream.values()) {
            if (now.contains(key))
                continue;
            List leaf = stream.list();
            leaf.clear_prefix();
            leaf.mutable_prefix()->set_target(stream.list().prefix().target());
            leaf.clear_subscription();
            *leaf.add_subscription()->mutable_path() = stream.path_of(key);
            const ValuesByPath alone = values_now(target_, caller_, leaf);
            if (alone.size() != 1 || alone.begin()->second != value)
                return false;
        }
        return true;
    }

    FuzzedTarget &target_;
    const Caller caller_;
    const bool may_show_;
    std::vector<std::unique_ptr<Replica>> streams_;
};

} // namespace
} // namespace yfw::gnmi::fuzz

void yfw::fuzz::run(std::string_view bytes) {
    using namespace gnmi::fuzz;
    if (bytes.empty())
        return;
    google::protobuf::SetLogHandler(nullptr);
    static FuzzedTarget target;
    const auto flags = static_cast<unsigned char>(bytes[0]);
    const bool has_rules = (flags & 2U) != 0;
    const std::string_view input = bytes.substr(1);
    target.begin_anew(has_rules);
    {
        Client client(target, (flags & 1U) == 0, has_rules, input);
        for (const auto &request : requests_of(input))
            client.send(request);
    }
    target.end(); // a thread that still runs may hold what looks leaked
}
