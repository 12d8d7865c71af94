#include "frontends/cli/options/named_device.h"

#include <cstdlib>
#include <optional>
#include <string>
#include <system_error>

#include "coverage/deviations.h"
#include "frontends/cli/options/installation.h"
#include "frontends/cli/options/module_places.h"
#include "frontends/cli/options/store_name.h"

namespace yfw::cli {
namespace {

sources::DeviceAddress address_of(const DeviceOptions &options) {
    return {options.device.string(), options.native_files};
}

std::string environment(const char *name) {
    const char *value = std::getenv(name);
    return value != nullptr ? value : "";
}

// XDG base directories: a relative path is invalid, and ignored.
std::filesystem::path state_directory() {
    const std::filesystem::path state = environment("XDG_STATE_HOME");
    if (state.is_absolute())
        return state / "yfw";
    const std::string home = environment("HOME");
    return std::filesystem::path(home.empty() ? "/var/lib" : home + "/.local/state") / "yfw";
}

} // namespace

std::filesystem::path store_of(const DeviceOptions &options) {
    if (!options.store.empty() || !options.native_files.empty())
        return options.store;
    const std::string device = owner_of(options);
    const std::filesystem::path store = state_directory() / store_name(device);
    const std::optional<std::string> former = former_store_name(device);
    std::error_code ignored;
    if (former.has_value() && !std::filesystem::exists(store, ignored) &&
        std::filesystem::exists(state_directory() / *former, ignored))
        return state_directory() / *former;
    return store;
}

std::string owner_of(const DeviceOptions &options) {
    const bool has_store = options.native_files.empty() || !options.store.empty();
    return has_store ? sources::identity_of(address_of(options)) : "";
}

ModelInUse::ModelInUse(const DeviceOptions &options)
    : ModelInUse(options, host::read_mapping(options.plugin)) {}

ModelInUse::ModelInUse(const DeviceOptions &options, const host::MappingDescription &mapping)
    : schemas(options.native_models, options.openconfig_models, mapping.modules,
              import_directories(options.openconfig_models)),
      coverage(coverage::cover(schemas, mapping)) {}

std::string deviations_in_use(const DeviceOptions &options, const host::MappingDescription &mapping) {
    std::error_code ignored;
    if (std::filesystem::equivalent(options.openconfig_models, installation().models, ignored))
        return "";
    return coverage::deviations_of(ModelInUse(options, mapping).coverage);
}

NamedDevice::NamedDevice(const DeviceOptions &options, sources::Use use)
    : NamedDevice(options, use, host::read_mapping(options.plugin)) {}

NamedDevice::NamedDevice(const DeviceOptions &options, sources::Use use,
                         const host::MappingDescription &mapping)
    : schemas(options.native_models, options.openconfig_models, mapping.modules,
              import_directories(options.openconfig_models), deviations_in_use(options, mapping)),
      device(schemas, sources::open_source(address_of(options), use), store_of(options), mapping,
             owner_of(options)) {
    device.set_trace(options.trace);
}

} // namespace yfw::cli
