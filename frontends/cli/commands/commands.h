// The commands of the command line.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_COMMANDS_H
#define YFW_FRONTENDS_CLI_COMMANDS_COMMANDS_H

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Reads from the device and prints the answer. Throws Error.
void run_get(const DeviceOptions &device, const GetOptions &get);

} // namespace yfw::cli

#endif
