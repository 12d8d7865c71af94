// What a client subscribes to.
#ifndef YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_ORDER_H
#define YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_ORDER_H

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include <gnmi.pb.h>

#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/paths/path_pattern.h"

namespace yfw::gnmi {

using Interval = std::chrono::nanoseconds;

// What can be sampled at most that often, and what a target-defined sample is.
constexpr Interval shortest_sample = std::chrono::seconds(1);
constexpr Interval usual_sample = std::chrono::seconds(10);

// Which leaves below the patterns: all, or only those that change all the time (counters, ages), or only the
// others.
enum class Leaves { all, sampled, steady };

// A part of an order that is served alike.
struct Wanted {
    std::vector<PathPattern> patterns{};
    Leaves leaves = Leaves::all;
    std::optional<Interval> sample{};    // nothing: on change
    std::optional<Interval> heartbeat{}; // unchanged values are sent again that often
    bool suppress_redundant = false;     // of a sample

    bool operator==(const Wanted &) const = default;
};

struct Order {
    ::gnmi::SubscriptionList::Mode mode = ::gnmi::SubscriptionList::STREAM;
    ::gnmi::Encoding encoding = ::gnmi::JSON;
    std::string target;
    bool updates_only = false;
    std::vector<Wanted> parts;
};

// Throws Refusal for what is malformed, unknown or not served.
Order read_order(const Target &target, const ::gnmi::SubscriptionList &list);

} // namespace yfw::gnmi

#endif
