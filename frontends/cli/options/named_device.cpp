#include "frontends/cli/options/named_device.h"

#include <algorithm>
#include <cstdlib>
#include <string>

namespace yfw::cli {
namespace {

sources::DeviceAddress address_of(const DeviceOptions &options) {
    return {options.device.string(), options.native_files};
}

std::string environment(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

// XDG base directories.
std::filesystem::path state_directory() {
    const std::string state = environment("XDG_STATE_HOME");
    if (!state.empty())
        return std::filesystem::path(state) / "yfw";
    const std::string home = environment("HOME");
    return std::filesystem::path(home.empty() ? "/var/lib" : home + "/.local/state") / "yfw";
}

} // namespace

std::filesystem::path store_of(const DeviceOptions &options) {
    if (!options.store.empty() || !options.native_files.empty())
        return options.store;
    std::string name = sources::identity_of(address_of(options));
    std::replace(name.begin(), name.end(), '/', '%');
    return state_directory() / (name + ".db");
}

std::string owner_of(const DeviceOptions &options) {
    return sources::identity_of(address_of(options));
}

NamedDevice::NamedDevice(const DeviceOptions &options, sources::Use use)
    : NamedDevice(options, use, host::read_mapping(options.plugin)) {}

NamedDevice::NamedDevice(const DeviceOptions &options, sources::Use use,
                         const host::MappingDescription &mapping)
    : schemas(options.native_models, options.openconfig_models, mapping.modules),
      device(schemas, sources::open_source(address_of(options), use), store_of(options), mapping,
             owner_of(options)) {
    device.set_trace(options.trace);
}

} // namespace yfw::cli
