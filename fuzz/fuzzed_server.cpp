#include "fuzz/fuzzed_server.h"

namespace yfw::netconf::fuzz {
namespace {

bool is_session(uint32_t id) {
    return id == FuzzedServer::first_session || id == FuzzedServer::second_session;
}

} // namespace

FuzzedServer::State::State(FuzzedServer &all)
    : service(all.fuzzed_.device()),
      device_events(service.events(), events), server{service, all.modules_, monitoring, events, is_session} {
    for (const uint32_t session : {first_session, second_session})
        monitoring.session_began(session, "fuzzer");
}

FuzzedServer::FuzzedServer()
    : modules_(yang::ModuleFiles({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), yfw::fuzz::shipped_mapping()) {}

void FuzzedServer::begin_anew() {
    state_.reset();
    fuzzed_.begin_anew();
    state_.emplace(*this);
}

} // namespace yfw::netconf::fuzz
