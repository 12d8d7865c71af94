// Tells what an edit or a rollback did.
#ifndef YFW_FRONTENDS_CLI_COMMANDS_COMMIT_RESULT_H
#define YFW_FRONTENDS_CLI_COMMANDS_COMMIT_RESULT_H

#include <optional>

#include "commits/commit_log.h"
#include "frontends/cli/options/named_device.h"
#include "yang/edit.h"

namespace yfw::cli {

// The commit that was made, or that nothing changed: in JSON, that is "commit": null. Throws Error, and
// std::runtime_error when the output cannot be written.
void print_result(const NamedDevice &named, const std::optional<commits::Commit> &commit, bool json);

// Tries an edit and prints what it would change.
void print_dry_run(NamedDevice &named, const yang::EditNode &edit, bool json);

} // namespace yfw::cli

#endif
