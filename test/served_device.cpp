#include "served_device.h"

#include <chrono>
#include <csignal>
#include <optional>
#include <stdexcept>
#include <thread>
#include <vector>

#include <unistd.h>

#include "base/wakeup.h"
#include "device/commit_watch.h"
#include "device/service.h"
#include "frontends/cli/options/named_device.h"
#include "frontends/netconf/server_data/protocol_modules.h"
#include "frontends/netconf/transport/netconf_server.h"
#include "host/mapping_description.h"
#include "yang/module_files.h"

namespace yfw::test {
namespace {

namespace fs = std::filesystem;
using Options = std::map<std::string, std::string>;

// Immutable, so tests share what was loaded from a directory of OpenConfig modules.
struct Models {
    explicit Models(const fs::path &directory, bool has_rules)
        : mapping(host::read_mapping(YFW_PLUGINS)), schemas(YFW_MODELS_DIR, directory, mapping.modules),
          files({directory, YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), protocol(files, mapping, has_rules) {}

    host::MappingDescription mapping;
    yang::Schemas schemas;
    yang::ModuleFiles files;
    netconf::ProtocolModules protocol;
};

// Only the repository's modules are cached; other modules are loaded for one test and freed after it.
std::shared_ptr<const Models> models_of(const Options &options) {
    const auto other = options.find("--models");
    const bool has_rules = options.contains("--nacm");
    if (other != options.end())
        return std::make_shared<const Models>(other->second, has_rules);
    static const auto usual = std::make_shared<const Models>(YFW_MODELS_DIR, false);
    static const auto usual_with_rules = std::make_shared<const Models>(YFW_MODELS_DIR, true);
    return has_rules ? usual_with_rules : usual;
}

netconf::ServerOptions server_options(const fs::path &socket, const Options &options) {
    netconf::ServerOptions result;
    result.socket = socket;
    for (const auto &[name, value] : options) {
        if (name == "--readers")
            result.groups.readers = value;
        else if (name == "--writers")
            result.groups.writers = value;
        else if (name == "--hello-timeout")
            result.hello_timeout = std::chrono::seconds(std::stoi(value));
        else if (name == "--idle-timeout")
            result.idle_timeout = std::chrono::seconds(std::stoi(value));
        else if (name == "--max-sessions")
            result.most_sessions = std::stoul(value);
        else if (name == "--max-chunk")
            result.limits.chunk = std::stoull(value);
        else if (name == "--max-message")
            result.limits.message = std::stoull(value);
        else if (name != "--nacm" && name != "--models" && name != "--recovery-user")
            throw std::runtime_error("a served device does not support the option " + name);
    }
    return result;
}

std::optional<access::Nacm> rules_of(const Models &models, const Options &options) {
    const auto file = options.find("--nacm");
    if (file == options.end())
        return std::nullopt;
    std::vector<std::string> names;
    for (const netconf::ModuleName &module : models.protocol.modules())
        if (module.offered)
            names.push_back(module.name);
    return access::Nacm(file->second, models.files, names);
}

fs::path store_of(const fs::path &device) {
    cli::DeviceOptions options;
    options.device = device;
    return cli::store_of(options);
}

} // namespace

struct ServedDevice::Parts {
    Parts(const fs::path &device, const fs::path &socket, const Options &options)
        : models(models_of(options)),
          managed(models->schemas, sources::open_source({device.string(), {}}, sources::Use::serving),
                  store_of(device), models->mapping),
          service(managed, rules_of(*models, options),
                  options.contains("--recovery-user") ? options.at("--recovery-user") : "") {
        server.emplace(server_options(socket, options), service, models->protocol, events);
        commit_watch.emplace(service, [](const std::string &) {});
        thread = std::thread([this] { server->run(stop.descriptor()); });
    }

    ~Parts() {
        stop.wake();
        thread.join();
        commit_watch.reset();
        server.reset();
        service.end();
    }

    std::shared_ptr<const Models> models;
    device::ManagedDevice managed;
    device::Service service;
    netconf::EventStream events;
    std::optional<netconf::NetconfServer> server;
    std::optional<device::CommitWatch> commit_watch;
    Wakeup stop;
    std::thread thread;
};

ServedDevice::ServedDevice(const fs::path &device, const fs::path &socket, const Options &options) {
    std::signal(SIGPIPE, SIG_IGN); // a vanished client shows as a write error instead
    parts_ = std::make_unique<Parts>(device, socket, options);
}

ServedDevice::~ServedDevice() = default;

} // namespace yfw::test
