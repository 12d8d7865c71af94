#include "frontends/gnmi/subscriptions/stream.h"

#include <algorithm>

#include "frontends/gnmi/messages/extensions.h"
#include "frontends/gnmi/subscriptions/coalescing.h"

namespace yfw::gnmi {
namespace {

using List = ::gnmi::SubscriptionList;
using Guard = std::lock_guard<std::mutex>;
using Snapshots = std::vector<std::shared_ptr<const Snapshot>>;

// Polls that wait for their turn; a client that sends more does not read.
constexpr size_t most_rounds = 16;

[[noreturn]] void refuse(const std::string &why) {
    throw Refusal(Code::invalid_argument, why);
}

} // namespace

Stream::Stream(const Target &target, Publisher &publisher, Caller caller, std::vector<std::string> groups,
               std::function<void()> wake, WaitingLimits limits)
    : target_(target), publisher_(publisher), caller_(std::move(caller)), groups_(std::move(groups)),
      wake_(std::move(wake)), limits_(limits), coalesced_at_(limits.coalesced) {}

Stream::~Stream() {
    publisher_.leave(*this);
}

void Stream::receive(const ::gnmi::SubscribeRequest &request) {
    read_extensions(request.extension(), Takes::nothing);
    if (request.has_subscribe()) {
        if (order_.has_value())
            refuse("the stream has its subscriptions already");
        return start(request.subscribe());
    }
    if (!order_.has_value())
        refuse("the first message must be a list of subscriptions");
    if (!request.has_poll())
        refuse("the message is neither a list of subscriptions nor a poll");
    if (order_->mode != List::POLL)
        refuse("a poll belongs to a stream of the mode POLL");
    begin_round(order_->updates_only ? Snapshots() : publisher_.read(kinds_));
}

void Stream::receive_end() {
    if (!order_.has_value())
        refuse("the first message must be a list of subscriptions");
    if (order_->mode != List::POLL) // others go on without it
        return;
    {
        const Guard guard(mutex_);
        ends_with_rounds_ = true;
    }
    wake_();
}

void Stream::start(const List &list) {
    order_ = read_order(target_, list);
    for (const Wanted &wanted : order_->parts) {
        FeedKind kind{wanted, order_->encoding, order_->target, {}};
        if (target_.service().rules() != nullptr)
            kind.reads = {caller_.user, groups_};
        kinds_.push_back(std::move(kind));
    }
    if (order_->mode == List::POLL)
        return; // until the first poll
    Snapshots snapshots;
    if (order_->mode == List::STREAM)
        snapshots = publisher_.join(*this, kinds_);
    else if (!order_->updates_only)
        snapshots = publisher_.read(kinds_);
    begin_round(order_->updates_only ? Snapshots() : std::move(snapshots));
}

// Values, or none, and a sync_response, behind those of earlier rounds.
void Stream::begin_round(Snapshots snapshots) {
    {
        const Guard guard(mutex_);
        if (rounds_.size() >= most_rounds)
            throw Refusal(Code::resource_exhausted, "too many polls wait for their answer");
        rounds_.push_back(std::move(snapshots));
        ends_with_rounds_ = ends_with_rounds_ || order_->mode == List::ONCE;
    }
    wake_();
}

// What one walk has next, or the sync_response behind the last walk of a round; empty when no round is left.
std::vector<SharedMessage> Stream::next_piece() {
    while (!walks_.empty()) {
        std::vector<SharedMessage> piece = walks_.front()->next();
        if (!piece.empty())
            return piece;
        walks_.pop_front();
    }
    if (std::exchange(is_in_round_, false))
        return {sync_message()};
    Snapshots snapshots;
    {
        const Guard guard(mutex_);
        if (rounds_.empty())
            return {};
        snapshots = std::move(rounds_.front());
        rounds_.pop_front();
    }
    for (size_t i = 0; i < snapshots.size(); i++)
        walks_.push_back(std::make_unique<SnapshotWalk>(target_, kinds_[i].wanted, kinds_[i].encoding,
                                                        kinds_[i].target, snapshots[i]));
    is_in_round_ = true;
    return {};
}

SharedMessage Stream::take() {
    while (piece_.empty()) {
        for (SharedMessage &message : next_piece())
            piece_.push_back(std::move(message));
        if (piece_.empty() && !is_in_round_)
            break;
    }
    if (!piece_.empty()) {
        SharedMessage message = std::move(piece_.front());
        piece_.pop_front();
        return message;
    }
    const Guard guard(mutex_);
    if (waiting_.empty() || !rounds_.empty())
        return nullptr;
    SharedMessage message = std::move(waiting_.front());
    waiting_.pop_front();
    waiting_bytes_ -= message->size();
    return message;
}

bool Stream::is_quick() const {
    if (!piece_.empty())
        return true;
    const Guard guard(mutex_);
    return walks_.empty() && !is_in_round_ && rounds_.empty();
}

void Stream::offer(const std::vector<SharedMessage> &messages) {
    {
        const Guard guard(mutex_);
        if (failure_.has_value())
            return;
        for (const SharedMessage &message : messages) {
            waiting_.push_back(message);
            waiting_bytes_ += message->size();
        }
        if (waiting_bytes_ > coalesced_at_)
            coalesce();
    }
    wake_();
}

void Stream::coalesce() {
    waiting_ = coalesced(waiting_);
    waiting_bytes_ = 0;
    for (const SharedMessage &message : waiting_)
        waiting_bytes_ += message->size();
    coalesced_at_ = std::max(limits_.coalesced, 2 * waiting_bytes_);
    if (waiting_bytes_ <= limits_.most)
        return;
    waiting_.clear();
    waiting_bytes_ = 0;
    failure_ = Refusal(Code::resource_exhausted, "the client takes changes more slowly than they come");
}

bool Stream::lasts() const {
    return order_.has_value() && order_->mode != List::ONCE;
}

bool Stream::is_over() const {
    const Guard guard(mutex_);
    return ends_with_rounds_ && rounds_.empty();
}

std::optional<Refusal> Stream::failure() const {
    const Guard guard(mutex_);
    return failure_;
}

} // namespace yfw::gnmi
