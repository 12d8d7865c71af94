// A server without a transport, on a recorded device, that can be reset for every input.
#ifndef YFW_FRONTENDS_NETCONF_FUZZ_FUZZED_SERVER_H
#define YFW_FRONTENDS_NETCONF_FUZZ_FUZZED_SERVER_H

#include <filesystem>
#include <optional>

#include "base/private_directory.h"
#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/operations/conversation.h"
#include "sources/file/file_source.h"

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
    int64_t last_commit() const { return device_.last_commit_number(); }

private:
    struct State {
        explicit State(FuzzedServer &all);

        EventStream events;
        device::Service service;
        DeviceEvents device_events;
        Monitoring monitoring;
        Server server;
    };

    // A directory for the commit store alone.
    std::filesystem::path store() const { return directory_.path() / "store"; }

    PrivateDirectory directory_{"yfw-fuzz"};
    host::MappingDescription mapping_;
    yang::Schemas schemas_;
    sources::FileSource recorded_;
    device::ManagedDevice device_;
    ProtocolModules modules_;
    std::optional<State> state_;
};

} // namespace yfw::netconf::fuzz

#endif
