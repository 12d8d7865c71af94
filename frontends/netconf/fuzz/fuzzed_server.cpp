#include "frontends/netconf/fuzz/fuzzed_server.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace yfw::netconf::fuzz {
namespace {

std::filesystem::path make_directory() {
    std::string name = std::filesystem::temp_directory_path() / "yfw-fuzz-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    return name;
}

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
    : directory_(make_directory()), mapping_(host::read_mapping(YFW_PLUGIN_LIBRARY)),
      schemas_(YFW_MODELS_DIR, YFW_MODELS_DIR, mapping_.modules),
      recorded_(sources::FileSource::of_device(YFW_DEVICE_DIR)),
      device_(schemas_, recorded_, directory_ / "commits.db", mapping_),
      modules_(yang::ModuleFiles({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), mapping_) {}

FuzzedServer::~FuzzedServer() {
    std::error_code ignored;
    std::filesystem::remove_all(directory_, ignored);
}

void FuzzedServer::begin_anew() {
    state_.reset();
    for (const auto &file : std::filesystem::directory_iterator(directory_))
        std::filesystem::remove(file.path());
    state_.emplace(*this);
}

} // namespace yfw::netconf::fuzz
