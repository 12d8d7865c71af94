// What a gNMI client makes of what a target sends it.
#ifndef YFW_FUZZ_GNMI_REPLICA_H
#define YFW_FUZZ_GNMI_REPLICA_H

#include <map>
#include <memory>
#include <string>

#include <gnmi.pb.h>

#include "frontends/gnmi/subscriptions/stream.h"
#include "fuzz/fuzzed_target.h"

namespace yfw::gnmi::fuzz {

// Values by their absolute paths, in an unambiguous text.
using ValuesByPath = std::map<std::string, std::string>;

std::string key_of(const ::gnmi::Path &prefix, const ::gnmi::Path &path);
std::string text_of(const ValuesByPath &values);

// Ends the process unless the path names a single node.
void require_single(const ::gnmi::Path &path);

// A subscriber that keeps what it is told.
class Replica {
public:
    Replica(FuzzedTarget &target, const Caller &caller);

    // Throws Refusal or Error, with which the stream ends.
    void send(const ::gnmi::SubscribeRequest &request);
    // Takes all that there is now, and checks each message.
    void take();

    // What it knows. The paths are kept, so that single leaves can be asked for.
    const ValuesByPath &values() const { return values_; }
    const ::gnmi::Path &path_of(const std::string &key) const { return paths_.at(key); }

    // Whether it knows, after each change, what a new subscriber would be told: its changes are pushed, and it
    // was told everything at first.
    bool follows_the_device() const;
    const ::gnmi::SubscriptionList &list() const { return list_; }

private:
    void take(const ::gnmi::SubscribeResponse &response);
    void apply(const ::gnmi::Notification &notification);
    void require(bool holds, std::string_view what, const ::gnmi::SubscribeResponse &response) const;

    ::gnmi::SubscriptionList list_;
    size_t rounds_ = 0; // each of which has a sync_response
    size_t syncs_ = 0;
    ValuesByPath values_;
    std::map<std::string, ::gnmi::Path> paths_;
    Stream stream_;
};

// What a new subscriber of the list is told.
ValuesByPath values_now(FuzzedTarget &target, const Caller &caller, ::gnmi::SubscriptionList list);

} // namespace yfw::gnmi::fuzz

#endif
