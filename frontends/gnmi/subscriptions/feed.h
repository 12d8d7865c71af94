// What streams that want the same share.
#ifndef YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_FEED_H
#define YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_FEED_H

#include <chrono>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/subscriptions/bundles.h"
#include "frontends/gnmi/subscriptions/order.h"

namespace yfw::gnmi {

// A stream in a feed. `offer` must not block.
class Subscriber {
public:
    virtual ~Subscriber() = default;
    virtual void offer(const std::vector<SharedMessage> &messages) = 0;
};

// Whose access rules a reading follows.
struct Reads {
    std::string user;
    std::vector<std::string> groups;

    bool operator==(const Reads &) const = default;
};

// Equal kinds share a feed.
struct FeedKind {
    Wanted wanted;
    ::gnmi::Encoding encoding = ::gnmi::JSON;
    std::string target;
    Reads reads; // empty where there are no access rules

    bool operator==(const FeedKind &) const = default;
};

using Clock = std::chrono::steady_clock;

// A part of an order that one or more streams have, and the snapshot that they know. Used by one thread at a
// time.
class Feed {
public:
    // `snapshot`: what the first reader is told first.
    Feed(const Target &target, FeedKind kind, std::shared_ptr<const Snapshot> snapshot);

    const FeedKind &kind() const { return kind_; }
    const std::shared_ptr<const Snapshot> &snapshot() const { return snapshot_; }

    void add(Subscriber &reader) { readers_.push_back(&reader); }
    void remove(Subscriber &reader) { std::erase(readers_, &reader); }
    bool has_readers() const { return !readers_.empty(); }

    bool is_sampled() const { return kind_.wanted.sample.has_value(); }
    // When it has to be read or sent again; nothing for one that only changes bring about.
    std::optional<Clock::time_point> due() const;

    // Tells the readers what has changed, and what else is due.
    void publish(std::shared_ptr<const Snapshot> snapshot, Clock::time_point now);

private:
    void tell(const std::vector<SharedMessage> &messages);
    void tell_all();

    const Target &target_;
    const FeedKind kind_;
    std::shared_ptr<const Snapshot> snapshot_;
    BundleWriter writer_;
    std::vector<Subscriber *> readers_;
    std::optional<Clock::time_point> next_sample_;
    std::optional<Clock::time_point> next_heartbeat_;
};

} // namespace yfw::gnmi

#endif
