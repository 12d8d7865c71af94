// A NETCONF server in this process, for benchmarks only.
#ifndef YFW_BENCH_SERVED_DEVICE_H
#define YFW_BENCH_SERVED_DEVICE_H

#include <filesystem>
#include <thread>

#include "base/private_directory.h"
#include "base/wakeup.h"
#include "frontends/netconf/transport/netconf_server.h"

namespace yfw::bench {

// Serves a source, with its own store, on a background thread while it lives. Only one may exist at a time: the
// plug-in keeps state between its callbacks. Borrows the schemas and the source.
class ServedDevice {
public:
    ServedDevice(const yang::Schemas &schemas, sources::NativeSource &source);
    ~ServedDevice();
    ServedDevice(const ServedDevice &) = delete;
    ServedDevice &operator=(const ServedDevice &) = delete;

    std::filesystem::path socket() const { return directory_.path() / "netconf.sock"; }
    const std::filesystem::path &directory() const { return directory_.path(); }

private:
    PrivateDirectory directory_{"yfw-bench"};
    host::MappingDescription mapping_;
    device::ManagedDevice device_;
    device::Service service_;
    netconf::ProtocolModules modules_;
    netconf::EventStream events_;
    netconf::NetconfServer server_;
    Wakeup stop_;
    std::thread thread_;
};

} // namespace yfw::bench

#endif
