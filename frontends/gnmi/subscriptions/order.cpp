#include "frontends/gnmi/subscriptions/order.h"

#include <limits>

#include "frontends/gnmi/messages/refusal.h"
#include "frontends/gnmi/paths/path_text.h"
#include "frontends/gnmi/values/typed_value.h"

namespace yfw::gnmi {
namespace {

using List = ::gnmi::SubscriptionList;

[[noreturn]] void refuse(const std::string &place, const std::string &why) {
    throw Refusal(Code::invalid_argument, place + ": " + why);
}

Interval interval_of(uint64_t nanoseconds, const std::string &place) {
    if (nanoseconds > static_cast<uint64_t>(std::numeric_limits<int64_t>::max() / 2))
        refuse(place, "the interval is too long");
    return Interval(nanoseconds);
}

Interval sample_of(const ::gnmi::Subscription &subscription, const std::string &place) {
    const Interval wanted = interval_of(subscription.sample_interval(), place);
    if (wanted == Interval::zero())
        return shortest_sample;
    if (wanted < shortest_sample)
        refuse(place, "the device cannot be sampled more often than every second");
    return wanted;
}

std::optional<Interval> heartbeat_of(const ::gnmi::Subscription &subscription, const std::string &place) {
    const Interval wanted = interval_of(subscription.heartbeat_interval(), place);
    if (wanted == Interval::zero())
        return std::nullopt;
    if (wanted < shortest_sample)
        refuse(place, "the heartbeat cannot come more often than every second");
    return wanted;
}

class Reader {
public:
    Reader(const Target &target, const List &list) : target_(target), list_(list) {}

    Order read() {
        check();
        Order order{list_.mode(), list_.encoding(), list_.prefix().target(), list_.updates_only(), {}};
        for (const ::gnmi::Subscription &subscription : list_.subscription())
            add(subscription, order.parts);
        return order;
    }

private:
    void check() const {
        check_prefix(list_.prefix());
        check_encoding(list_.encoding());
        target_.require_models(list_.use_models());
        if (!List::Mode_IsValid(list_.mode()))
            throw Refusal(Code::invalid_argument, "there is no mode " + std::to_string(list_.mode()));
        if (list_.subscription().empty())
            throw Refusal(Code::invalid_argument, "the list holds no subscription");
    }

    void add(const ::gnmi::Subscription &subscription, std::vector<Wanted> &to) const {
        const std::string place = to_text(list_.prefix(), subscription.path());
        const std::vector<PathPattern> patterns = target_.served_patterns(list_.prefix(), subscription.path());
        if (list_.mode() != List::STREAM) {
            to.push_back({patterns});
            return;
        }
        const auto heartbeat = heartbeat_of(subscription, place);
        switch (subscription.mode()) {
        case ::gnmi::ON_CHANGE:
            to.push_back({patterns, Leaves::all, std::nullopt, heartbeat, false});
            break;
        case ::gnmi::SAMPLE:
            to.push_back({patterns, Leaves::all, sample_of(subscription, place), heartbeat,
                          subscription.suppress_redundant()});
            break;
        case ::gnmi::TARGET_DEFINED:
            if (subscription.sample_interval() != 0)
                refuse(place, "a target-defined subscription has no sample interval");
            add_target_defined(patterns, heartbeat, subscription.suppress_redundant(), to);
            break;
        default:
            refuse(place, "there is no mode " + std::to_string(subscription.mode()));
        }
    }

    void add_target_defined(const std::vector<PathPattern> &patterns, std::optional<Interval> heartbeat,
                            bool suppress_redundant, std::vector<Wanted> &to) const {
        std::vector<PathPattern> steady;
        std::vector<PathPattern> sampled;
        for (const PathPattern &pattern : patterns) {
            if (!target_.is_sampled(pattern.node()))
                steady.push_back(pattern);
            if (target_.holds_sampled(pattern.node()))
                sampled.push_back(pattern);
        }
        if (!steady.empty())
            to.push_back({steady, Leaves::steady, std::nullopt, heartbeat, false});
        if (!sampled.empty())
            to.push_back({sampled, Leaves::sampled, usual_sample, heartbeat, suppress_redundant});
    }

    const Target &target_;
    const List &list_;
};

} // namespace

Order read_order(const Target &target, const ::gnmi::SubscriptionList &list) {
    return Reader(target, list).read();
}

} // namespace yfw::gnmi
