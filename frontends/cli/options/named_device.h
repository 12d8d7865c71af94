// The device named on the command line.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_NAMED_DEVICE_H
#define YFW_FRONTENDS_CLI_OPTIONS_NAMED_DEVICE_H

#include <filesystem>
#include <string>

#include "coverage/coverage.h"
#include "device/managed_device.h"
#include "frontends/cli/options/options.h"

namespace yfw::cli {

// An open device with its schemas. Opening one throws Error, and changes nothing.
struct NamedDevice {
    explicit NamedDevice(const DeviceOptions &options, sources::Use use = sources::Use::once);

    yang::Schemas schemas;
    device::ManagedDevice device;

private:
    NamedDevice(const DeviceOptions &options, sources::Use use, const host::MappingDescription &mapping);
};

// The OpenConfig modules in use as they are, and what the device serves of them. Loads the mapping: no
// NamedDevice may exist meanwhile. Throws Error.
struct ModelInUse {
    explicit ModelInUse(const DeviceOptions &options);
    ModelInUse(const DeviceOptions &options, const host::MappingDescription &mapping);

    yang::Schemas schemas;
    coverage::Coverage coverage;
};

// The module of deviations that makes these modules what the device serves, as text; empty for the shipped
// modules, which define what is served.
std::string deviations_in_use(const DeviceOptions &options, const host::MappingDescription &mapping);

// Where the device's commits are: the file given with --store, otherwise one in the user's state directory,
// named after the device's path. One that an earlier version made is used under the name that it has. Empty for
// a device given as files without --store.
std::filesystem::path store_of(const DeviceOptions &options);

// Identifies the device in its store; empty for a device given as files without a store.
std::string owner_of(const DeviceOptions &options);

} // namespace yfw::cli

#endif
