// One client's Subscribe.
#ifndef YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_STREAM_H
#define YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_STREAM_H

#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/subscriptions/bundles.h"
#include "frontends/gnmi/subscriptions/publisher.h"

namespace yfw::gnmi {

// How many bytes of messages may wait for a slow reader. From `coalesced` on they are coalesced whenever they
// have doubled; if more than `most` are left then, the stream ends with RESOURCE_EXHAUSTED.
struct WaitingLimits {
    size_t coalesced = 2 << 20;
    size_t most = 8 << 20;
};

// From a client's messages to those that it is sent, without a transport. Borrows the target and the publisher.
// receive() and take() are called by one thread at a time each, and may block while the device is read, or
// while data is written.
class Stream final : private Subscriber {
public:
    // `wake`: called, on any thread and with nothing held, when take() may have a message or the stream is
    // over. `groups`: the names of the caller's groups, which access rules go by.
    Stream(const Target &target, Publisher &publisher, Caller caller, std::vector<std::string> groups,
           std::function<void()> wake, WaitingLimits limits = {});
    ~Stream() override;
    Stream(const Stream &) = delete;
    Stream &operator=(const Stream &) = delete;

    // Takes a message of the client. Throws Refusal or Error, with which the stream ends.
    void receive(const ::gnmi::SubscribeRequest &request);
    // The client sends nothing more. Throws Refusal when it has sent nothing at all.
    void receive_end();

    // The next message to be sent; NULL when there is none now.
    SharedMessage take();
    // Whether take() would neither block nor write out data. Called by the thread of take().
    bool is_quick() const;

    // Whether it goes on after its first values: it is not of the mode ONCE. Called by the thread of receive().
    bool lasts() const;
    // Whether nothing more will come, once take() has had nothing.
    bool is_over() const;
    // Why it ended early.
    std::optional<Refusal> failure() const;

private:
    void start(const ::gnmi::SubscriptionList &list);
    void begin_round(std::vector<std::shared_ptr<const Snapshot>> snapshots);
    std::vector<SharedMessage> next_piece();
    void offer(const std::vector<SharedMessage> &messages) override;
    void coalesce();

    const Target &target_;
    Publisher &publisher_;
    const Caller caller_;
    const std::vector<std::string> groups_;
    const std::function<void()> wake_;
    const WaitingLimits limits_;

    // Of receive(); the kinds are known to take() once there is a round.
    std::optional<Order> order_;
    std::vector<FeedKind> kinds_; // of the order's parts

    // Of take(): the round that is being sent.
    std::deque<std::unique_ptr<SnapshotWalk>> walks_;
    std::deque<SharedMessage> piece_; // of the first walk
    bool is_in_round_ = false;        // its sync_response is still to come

    mutable std::mutex mutex_;                                        // guards what follows
    std::deque<std::vector<std::shared_ptr<const Snapshot>>> rounds_; // whose values are still to be sent
    std::deque<SharedMessage> waiting_;                               // changes, to be sent after all rounds
    size_t waiting_bytes_ = 0;
    size_t coalesced_at_;
    bool ends_with_rounds_ = false;
    std::optional<Refusal> failure_;
};

} // namespace yfw::gnmi

#endif
