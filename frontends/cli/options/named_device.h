// The device named on the command line.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_NAMED_DEVICE_H
#define YFW_FRONTENDS_CLI_OPTIONS_NAMED_DEVICE_H

#include <filesystem>
#include <string>

#include "device/managed_device.h"
#include "frontends/cli/options/options.h"

namespace yfw::cli {

// With its models. Opening it throws Error, and makes a daemon run its last commit.
struct NamedDevice {
    explicit NamedDevice(const DeviceOptions &options, sources::Use use = sources::Use::once);

    yang::Schemas schemas;
    device::ManagedDevice device;

private:
    NamedDevice(const DeviceOptions &options, sources::Use use, const host::MappingDescription &mapping);
};

// The default location of a device's commits: a file in the user's state directory, named after the device's
// path. One that an earlier version made is used under the name that it has. Empty for a device given as files,
// which has no name.
std::filesystem::path store_of(const DeviceOptions &options);

// Identifies the device in its store; empty for a device given as files.
std::string owner_of(const DeviceOptions &options);

} // namespace yfw::cli

#endif
