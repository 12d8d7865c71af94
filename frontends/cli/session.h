// What a command works with: the models, the device, the engine.
#ifndef YFW_FRONTENDS_CLI_SESSION_H
#define YFW_FRONTENDS_CLI_SESSION_H

#include <filesystem>

#include "frontends/cli/options.h"
#include "host/configured_device.h"
#include "host/engine.h"
#include "sources/file/file_source.h"

namespace yfw::cli {

// Throws host::Error.
struct Session {
    explicit Session(const DeviceOptions &options);

    host::Schemas schemas;
    sources::FileSource recorded;
    host::ConfiguredSource source;
    host::Engine engine;
};

// Where the commits of a device are kept when the command line does not say: a file of the user's state
// directory, named after the device's path. Empty for a device that is given as files: it has no name.
std::filesystem::path store_of(const DeviceOptions &options);

} // namespace yfw::cli

#endif
