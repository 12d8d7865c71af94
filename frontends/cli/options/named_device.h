// The device that a command line names.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_NAMED_DEVICE_H
#define YFW_FRONTENDS_CLI_OPTIONS_NAMED_DEVICE_H

#include <filesystem>

#include "device/managed_device.h"
#include "frontends/cli/options/options.h"

namespace yfw::cli {

// With the models that it is managed by. Opening it throws Error, and makes a daemon run its last commit.
struct NamedDevice {
    explicit NamedDevice(const DeviceOptions &options, sources::Use use = sources::Use::once);

    yang::Schemas schemas;
    device::ManagedDevice device;

private:
    NamedDevice(const DeviceOptions &options, sources::Use use, const host::MappingDescription &mapping);
};

// Where the commits of a device are kept when the command line does not say: a file of the user's state
// directory, named after the device's path. Empty for a device that is given as files: it has no name.
std::filesystem::path store_of(const DeviceOptions &options);

} // namespace yfw::cli

#endif
