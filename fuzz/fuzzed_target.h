// A gNMI target without a transport, on a recorded device, that can be reset for every input.
#ifndef YFW_FUZZ_FUZZED_TARGET_H
#define YFW_FUZZ_FUZZED_TARGET_H

#include <optional>
#include <string>

#include "frontends/gnmi/operations/target.h"
#include "frontends/gnmi/subscriptions/publisher.h"
#include "fuzz/support/fuzzed_device.h"

namespace yfw::gnmi::fuzz {

class FuzzedTarget {
public:
    // A value of the device that its access rules hide.
    static constexpr const char *hidden_value = "Router r1 software 1.0";

    FuzzedTarget();
    FuzzedTarget(const FuzzedTarget &) = delete;
    FuzzedTarget &operator=(const FuzzedTarget &) = delete;

    // Discards commits and readers. `has_rules`: whether access rules hide the value, and forbid some writes.
    void begin_anew(bool has_rules);

    // Ends its thread; nothing may be asked of it until the next begin_anew().
    void end() { state_.reset(); }

    const Target &target() const { return state_->target; }
    Publisher &publisher() { return state_->publisher; }
    // Whoever sends the input's requests.
    Caller caller(bool may_write);

    // The configuration as everybody sees it.
    std::string configuration();
    // The number of the last commit; -1 when there is none yet.
    int64_t last_commit() const { return fuzzed_.device().last_commit_number(); }

private:
    struct State {
        State(FuzzedTarget &all, bool has_rules);

        device::Service service;
        Target target;
        Publisher publisher;
    };

    yfw::fuzz::FuzzedDevice fuzzed_;
    PrivateDirectory directory_{"yfw-fuzz"};
    std::optional<State> state_;
};

} // namespace yfw::gnmi::fuzz

#endif
