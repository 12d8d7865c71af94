// What several devices say about themselves and their neighbors.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_DEVICE_REPORTS_H
#define YFW_FRONTENDS_CLI_COMMANDS_DEVICE_REPORTS_H

#include <filesystem>
#include <vector>

#include "frontends/cli/options/options.h"
#include "frontends/pictures/topology_model.h"

namespace yfw::cli {

struct DeviceReports {
    std::vector<pictures::Report> reports; // of the devices that could be read, in their order
    bool is_complete = true;
};

// Reads /lldp from each device, as `get` does. Of several devices, one that cannot be read is named on standard
// error and left out. Throws Error when none can be read. `options`: what they have in common.
DeviceReports read_devices(const std::vector<std::filesystem::path> &devices, const DeviceOptions &options);

} // namespace yfw::cli

#endif
