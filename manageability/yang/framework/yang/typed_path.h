// Paths as people type them: /lldp/interfaces/interface[name=eth1]/state, //neighbor[id=*], /lldp/*/enabled.
#ifndef YFW_YANG_TYPED_PATH_H
#define YFW_YANG_TYPED_PATH_H

#include <string>
#include <string_view>
#include <vector>

#include <libyang/libyang.h>

#include "yang/path.h"

namespace yfw::yang {

// What a path stands for.
struct TypedPath {
    std::string text;
    std::vector<Path> nodes;    // of the schema, at least one, in its order; none lies below another one
    bool has_wildcards = false; // otherwise `nodes` is one
};

// Beside everything that parse_path() accepts, a value needs no quotes unless it begins with one or is "*",
// which stands for any value; "*" is any node; "..." and "//" are any number of nodes below one another, none
// included. Throws Error as parse_path() does, also when the wildcards match nothing of the model.
TypedPath parse_typed_path(const lysc_node *root, std::string_view text);

// The paths of what exists, for edits: a list without its keys stands for each entry that `data` (NULL for
// none) has. Only nodes of the configuration that are no keys. `must_exist`: also the nodes themselves,
// otherwise the list entries around them. A path without wildcards stands for itself. Throws Error when there
// is nothing.
std::vector<Path> existing_paths(const TypedPath &path, const lyd_node *data, bool must_exist);

} // namespace yfw::yang

#endif
