#include "served_device.h"

#include <cerrno>
#include <cstdlib>
#include <system_error>

#include <sys/eventfd.h>
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

Directory::Directory() {
    std::string name = std::filesystem::temp_directory_path() / "yfw-bench-XXXXXX";
    if (mkdtemp(name.data()) == nullptr)
        throw std::system_error(errno, std::generic_category(), name);
    path_ = name;
}

Directory::~Directory() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

ServedDevice::ServedDevice(const yang::Schemas &schemas, sources::NativeSource &source)
    : mapping_(host::read_mapping(YFW_PLUGIN_LIBRARY)),
      device_(schemas, source, directory_.path() / "commits.db", mapping_), service_(device_),
      modules_(yang::ModuleFiles({YFW_MODELS_DIR, YFW_STANDARD_MODELS_DIR}), mapping_),
      server_(options_with(socket()), service_, modules_, events_),
      stop_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)), thread_([this] { server_.run(stop_); }) {}

ServedDevice::~ServedDevice() {
    eventfd_write(stop_, 1);
    thread_.join();
    close(stop_);
}

} // namespace yfw::bench
