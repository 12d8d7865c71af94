// Changes as somebody typed them, as an edit.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_TYPED_EDIT_H
#define YFW_FRONTENDS_CLI_COMMANDS_TYPED_EDIT_H

#include <vector>

#include "frontends/cli/commands/edit_script.h"
#include "frontends/cli/options/named_device.h"
#include "yang/edit.h"

namespace yfw::cli {

// Wildcards in the paths stand for what the running configuration has. Throws Error.
yang::EditNode edit_of(NamedDevice &named, const std::vector<Change> &changes);

} // namespace yfw::cli

#endif
