// yfw explain: what the mapping does with a request.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_EXPLAIN_COMMAND_H
#define YFW_FRONTENDS_CLI_COMMANDS_EXPLAIN_COMMAND_H

#include <CLI/CLI.hpp>

#include "frontends/cli/options/options.h"

namespace yfw::cli {

// Adds the command; it runs while the command line is parsed and throws Error. `device` outlives `app`.
void add_explain(CLI::App &app, DeviceOptions &device);

} // namespace yfw::cli

#endif
