#include "served_device.h"

#include <unistd.h>

namespace yfw::bench {
namespace {

netconf::ServerOptions options_with(const std::filesystem::path &socket) {
    netconf::ServerOptions options;
    options.socket = socket;
    options.groups.owner = geteuid();
    return options;
}

} // namespace

ServedDevice::ServedDevice(const yang::Schemas &schemas, sources::NativeSource &source)
    : mapping_(host::read_mapping(YFW_PLUGINS)),
      device_(schemas, source, directory_.path() / "commits.db", mapping_), service_(device_),
      modules_(yang::ModuleFiles({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), mapping_),
      server_(options_with(socket()), service_, modules_, events_),
      thread_([this] { server_.run(stop_.descriptor()); }) {}

ServedDevice::~ServedDevice() {
    stop_.wake();
    thread_.join();
}

} // namespace yfw::bench
