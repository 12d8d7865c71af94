// A server without a transport, on a recorded device, that can be reset for every input.
#ifndef YFW_FUZZ_FUZZED_SERVER_H
#define YFW_FUZZ_FUZZED_SERVER_H

#include <optional>

#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/operations/conversation.h"
#include "fuzz/support/fuzzed_device.h"

namespace yfw::netconf::fuzz {

class FuzzedServer {
public:
    static constexpr uint32_t first_session = 1;
    static constexpr uint32_t second_session = 2;

    FuzzedServer();
    FuzzedServer(const FuzzedServer &) = delete;
    FuzzedServer &operator=(const FuzzedServer &) = delete;

    // Discards commits, candidate, locks and counters.
    void begin_anew();

    const Server &server() const { return state_->server; }
    // The number of the last commit; -1 when there is none yet.
    int64_t last_commit() const { return fuzzed_.device().last_commit_number(); }

private:
    struct State {
        explicit State(FuzzedServer &all);

        EventStream events;
        device::Service service;
        DeviceEvents device_events;
        Monitoring monitoring;
        Server server;
    };

    yfw::fuzz::FuzzedDevice fuzzed_;
    ProtocolModules modules_;
    std::optional<State> state_;
};

} // namespace yfw::netconf::fuzz

#endif
