#include "frontends/netconf/fuzz/fuzzed_server.h"

namespace yfw::netconf::fuzz {
namespace {

bool is_session(uint32_t id) {
    return id == FuzzedServer::first_session || id == FuzzedServer::second_session;
}

} // namespace

FuzzedServer::State::State(FuzzedServer &all)
    : service(all.device_),
      device_events(service.events(), events), server{service, all.modules_, monitoring, events, is_session} {
    for (const uint32_t session : {first_session, second_session})
        monitoring.session_began(session, "fuzzer");
}

// The device outlives resets: with its single node it keeps the plug-in loaded, and with it the fuzzer's
// coverage counters.
FuzzedServer::FuzzedServer()
    : mapping_(host::read_mapping(YFW_PLUGIN_LIBRARY)),
      schemas_(YFW_MODELS_DIR, YFW_MODELS_DIR, mapping_.modules),
      recorded_(sources::FileSource::of_device(YFW_DEVICE_DIR)),
      device_(schemas_, recorded_, store() / "commits.db", mapping_),
      modules_(yang::ModuleFiles({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), mapping_) {}

void FuzzedServer::begin_anew() {
    state_.reset();
    std::filesystem::remove_all(store());
    std::filesystem::create_directory(store());
    state_.emplace(*this);
}

} // namespace yfw::netconf::fuzz
