// The parsed options of a command line.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_OPTIONS_H
#define YFW_FRONTENDS_CLI_OPTIONS_OPTIONS_H

#include <filesystem>
#include <string>
#include <vector>

#include "host/request.h"

namespace yfw::cli {

enum class Format { json, xml };

// Where native data and models come from.
struct DeviceOptions {
    std::vector<std::filesystem::path> native_files;
    std::filesystem::path device;
    std::filesystem::path openconfig_models;
    std::filesystem::path native_models;
    std::filesystem::path plugin; // a library, its description, or a directory of plug-ins
    std::filesystem::path store;  // empty: derived from the device's name
    bool trace = false;
};

struct GetOptions {
    std::vector<std::string> paths;
    host::Content content = host::Content::all;
    bool applied = false; // the configuration is read from the device
    Format format = Format::json;
};

} // namespace yfw::cli

#endif
