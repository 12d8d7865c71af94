// What a command works with: the mapping, the models, the device, the engine.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_SESSION_H
#define YFW_FRONTENDS_CLI_OPTIONS_SESSION_H

#include <filesystem>
#include <memory>

#include "device/configured_source.h"
#include "frontends/cli/options/options.h"
#include "host/engine.h"
#include "sources/native_source.h"
#include "sources/native_target.h"
#include "sources/neighbor_watch.h"

namespace yfw::cli {

// A device as it was named on the command line.
struct OpenedDevice {
    std::unique_ptr<sources::NativeSource> source;
    sources::NativeTarget *target = nullptr; // the same object, where edits take effect on more than the store
    std::unique_ptr<sources::NeighborWatch> watch = nullptr; // of a device that tells its changes
};

// How long a command looks at a device: `serving` keeps what it has read of a recorded one.
enum class Use { once, serving };

// Throws Error.
struct Session {
    explicit Session(const DeviceOptions &options, Use use = Use::once);

    host::MappingDescription mapping;
    yang::Schemas schemas;
    OpenedDevice device;
    device::ConfiguredSource source;
    host::Engine engine;
};

// Where the commits of a device are kept when the command line does not say: a file of the user's state
// directory, named after the device's path. Empty for a device that is given as files: it has no name.
std::filesystem::path store_of(const DeviceOptions &options);

} // namespace yfw::cli

#endif
