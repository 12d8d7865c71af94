// What a path of a request selects of the schema.
#ifndef YFW_FRONTENDS_GNMI_PATHS_PATH_PATTERN_H
#define YFW_FRONTENDS_GNMI_PATHS_PATH_PATTERN_H

#include <optional>
#include <string>
#include <vector>

#include <gnmi.pb.h>
#include <libyang/libyang.h>

#include "host/request.h"
#include "yang/path.h"

namespace yfw::gnmi {

// A node, and of a list the value of each key, in schema order and canonical; nothing stands for any value.
struct PatternStep {
    const lysc_node *node = nullptr;
    std::vector<std::optional<std::string>> keys{};

    bool operator==(const PatternStep &) const = default;
};

// A path without wildcards in names, from the top container down. Without steps, it is the root above it.
struct PathPattern {
    std::vector<PatternStep> steps;

    // NULL for the root.
    const lysc_node *node() const { return steps.empty() ? nullptr : steps.back().node; }
    // Whether it selects everything that the other selects.
    bool covers(const PathPattern &other) const;

    bool operator==(const PathPattern &) const = default;
};

// Reads the path, with the elements of its prefix before its own. A wildcard in a name may stand for several
// nodes; patterns that another one covers are left out. `root`: the top container. Throws Refusal:
// INVALID_ARGUMENT for a path that is malformed, of another origin or not in the schema, UNIMPLEMENTED for a
// node that the device does not serve.
std::vector<PathPattern> read_path(const lysc_node *root, const ::gnmi::Path &prefix, const ::gnmi::Path &path);

// The same for a path that must name a single node: without wildcards and with all keys.
PathPattern read_single_path(const lysc_node *root, const ::gnmi::Path &prefix, const ::gnmi::Path &path);

// Refuses what a prefix must not have besides the elements and a target.
void check_prefix(const ::gnmi::Path &prefix);

// The path as the program reads it: with the keys that have values.
yang::Path program_path(const PathPattern &pattern, const lysc_node *root);

} // namespace yfw::gnmi

#endif
