// Where the program's files are installed.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_INSTALLATION_H
#define YFW_FRONTENDS_CLI_OPTIONS_INSTALLATION_H

#include <filesystem>

namespace yfw::cli {

struct Installation {
    std::filesystem::path models;          // its own YANG modules
    std::filesystem::path standard_models; // the IETF's modules, from a Debian package
    std::filesystem::path examples;        // recorded devices
    std::filesystem::path plugins;         // a directory of mapping plug-ins
    std::filesystem::path gnmi_program;    // yfw with gNMI
};

// An installed program's files are below its prefix; otherwise they are in the build tree.
const Installation &installation();

} // namespace yfw::cli

#endif
