// Completes paths, from the schema and the device.
#ifndef YFW_FRONTENDS_CLI_COMPLETION_PATH_COMPLETION_H
#define YFW_FRONTENDS_CLI_COMPLETION_PATH_COMPLETION_H

#include <functional>
#include <string>
#include <vector>

#include <libyang/libyang.h>

#include "yang/path.h"

namespace yfw::cli {

// The values that the device has for a key of the list, its last step, in their order.
using KeyValues = std::function<std::vector<std::string>(const yang::Path &list, const lysc_node *key)>;

// Whatever the path may continue with: each result begins with `typed`. One that ends in "/", "[" or "=" goes
// on. `edits`: only configuration. Empty for a path that is not one. `key_values` is only called for a key's
// value, and what it throws is passed on.
std::vector<std::string> complete_path(const lysc_node *root, const std::string &typed, bool edits,
                                       const KeyValues &key_values);

// Values that the type of the leaf at a path names: true and false, enumerations, identities.
std::vector<std::string> values_of_leaf(const lysc_node *root, const std::string &path);

} // namespace yfw::cli

#endif
