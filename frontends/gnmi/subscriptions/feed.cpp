#include "frontends/gnmi/subscriptions/feed.h"

#include <algorithm>

namespace yfw::gnmi {
namespace {

std::optional<Clock::time_point> after(const std::optional<Interval> &interval, Clock::time_point now) {
    return interval.has_value() ? std::optional(now + std::chrono::duration_cast<Clock::duration>(*interval))
                                : std::nullopt;
}

// The next one of a series, which late ones do not delay.
void advance(std::optional<Clock::time_point> &next, const Interval &interval, Clock::time_point now) {
    const auto step = std::chrono::duration_cast<Clock::duration>(interval);
    *next += step;
    if (*next <= now)
        *next = now + step;
}

} // namespace

Feed::Feed(const Target &target, FeedKind kind, std::shared_ptr<const Snapshot> snapshot)
    : target_(target), kind_(std::move(kind)), snapshot_(std::move(snapshot)),
      writer_(target, kind_.wanted, kind_.encoding, kind_.target),
      next_sample_(after(kind_.wanted.sample, Clock::now())),
      next_heartbeat_(after(kind_.wanted.heartbeat, Clock::now())) {}

std::optional<Clock::time_point> Feed::due() const {
    if (is_sampled()) // its heartbeat comes with a sample
        return next_sample_;
    return next_heartbeat_;
}

void Feed::publish(std::shared_ptr<const Snapshot> snapshot, Clock::time_point now) {
    const bool is_sample = is_sampled() && now >= *next_sample_;
    const bool is_heartbeat = next_heartbeat_.has_value() && now >= *next_heartbeat_;
    if (is_sampled() && !is_sample)
        return;
    const std::vector<SharedMessage> changes = changes_between(writer_, *snapshot_, *snapshot);
    const std::shared_ptr<const Snapshot> before = std::exchange(snapshot_, std::move(snapshot));
    if (is_sample)
        advance(next_sample_, *kind_.wanted.sample, now);
    if (is_heartbeat)
        advance(next_heartbeat_, *kind_.wanted.heartbeat, now);
    const bool is_whole = is_heartbeat || (is_sample && !kind_.wanted.suppress_redundant);
    if (!is_whole)
        return tell(changes);
    std::vector<SharedMessage> removals; // the values are all in the snapshot
    for (const SharedMessage &message : changes)
        if (message->message().update().delete__size() > 0)
            removals.push_back(message);
    tell(removals);
    tell_all();
}

void Feed::tell(const std::vector<SharedMessage> &messages) {
    if (!messages.empty())
        for (Subscriber *reader : readers_)
            reader->offer(messages);
}

void Feed::tell_all() {
    SnapshotWalk walk(target_, kind_.wanted, kind_.encoding, kind_.target, snapshot_);
    for (std::vector<SharedMessage> piece = walk.next(); !piece.empty(); piece = walk.next())
        tell(piece);
}

} // namespace yfw::gnmi
