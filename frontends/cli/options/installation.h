// Where the program's own files are.
#ifndef YFW_FRONTENDS_CLI_OPTIONS_INSTALLATION_H
#define YFW_FRONTENDS_CLI_OPTIONS_INSTALLATION_H

#include <filesystem>

namespace yfw::cli {

struct Installation {
    std::filesystem::path models;          // YANG modules of its own
    std::filesystem::path standard_models; // those of the IETF, which a Debian package installs
    std::filesystem::path examples;        // recorded devices
    std::filesystem::path plugin;          // its library, or its description
};

// Of an installed program, below its prefix; of one that was not installed, where it was built.
const Installation &installation();

} // namespace yfw::cli

#endif
