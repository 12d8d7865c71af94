#include "both_protocols.h"

#include "frontends/gnmi/operations/get_operation.h"
#include "frontends/gnmi/operations/set_operation.h"
#include "frontends/netconf/events/server_events.h"
#include "frontends/netconf/operations/conversation.h"
#include "host/mapping_description.h"
#include "sources/opened_source.h"
#include "yang/configuration_text.h"
#include "yang/module_files.h"

namespace yfw::test {
namespace {

constexpr uint32_t session = 1;
constexpr const char *user = "alice";

const host::MappingDescription &mapping() {
    static const host::MappingDescription read = host::read_mapping(YFW_PLUGINS);
    return read;
}

const yang::Schemas &schemas() {
    static const yang::Schemas loaded(YFW_MODELS_DIR, YFW_MODELS_DIR, mapping().modules);
    return loaded;
}

} // namespace

struct BothProtocols::Parts {
    Parts(const std::filesystem::path &recorded, const std::filesystem::path &store)
        : device(schemas(), sources::open_source({recorded.string(), {}}), store, mapping()), service(device),
          modules(yang::ModuleFiles({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), mapping()),
          told(service.events(), events), server{service, modules, monitoring, events,
                                                 [](uint32_t id) { return id == session; }},
          target(service) {
        monitoring.session_began(session, user);
    }

    device::ManagedDevice device;
    device::Service service;
    netconf::ProtocolModules modules;
    netconf::EventStream events;
    netconf::DeviceEvents told;
    netconf::Monitoring monitoring;
    netconf::Server server;
    gnmi::Target target;
};

BothProtocols::BothProtocols(const std::filesystem::path &device, const std::filesystem::path &store)
    : parts_(std::make_unique<Parts>(device, store)) {}

BothProtocols::~BothProtocols() = default;

std::string BothProtocols::netconf(const std::string &operation) {
    netconf::Caller caller;
    caller.session = session;
    caller.user = user;
    caller.may_write = true;
    return netconf::answer(parts_->server, caller,
                           "<rpc message-id=\"1\" xmlns=\"urn:ietf:params:xml:ns:netconf:base:1.0\">" +
                               operation + "</rpc>")
        .text();
}

::gnmi::GetResponse BothProtocols::get(const ::gnmi::GetRequest &request) {
    return gnmi::get(parts_->target, {0, user, true, "", nullptr}, request);
}

::gnmi::SetResponse BothProtocols::set(const ::gnmi::SetRequest &request) {
    return gnmi::set(parts_->target, {0, user, true, "", nullptr}, request);
}

std::string BothProtocols::native() const {
    if (parts_->device.last_commit_number() < 0)
        return "";
    return yang::print_configuration(parts_->device.running_configuration().native.get());
}

} // namespace yfw::test
