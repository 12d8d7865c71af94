// What a client asks for, in OpenConfig terms.
#ifndef YFW_HOST_REQUEST_H
#define YFW_HOST_REQUEST_H

#include <optional>
#include <string>
#include <vector>

#include "yang/path.h"

namespace yfw::host {

enum class Content { all, config, state };

// A node that a read selects. A container or list entry is selected whole when nothing is selected below it; a
// leaf with a value is a key or has to match, and `named` tells that it is selected for its own sake as well.
struct Selection {
    const lysc_node *node = nullptr;
    std::optional<std::string> value;
    std::vector<Selection> children;
    bool named = false;

    bool is_key() const { return lysc_is_key(node); }

    // Whether it only narrows what is selected beside it.
    bool only_narrows() const { return value.has_value() && !named; }

    // Whether something is selected below it.
    bool selects_below() const;
};

// A read of the OpenConfig tree.
struct ReadRequest {
    Content content = Content::all;
    std::vector<yang::Path> paths;
    std::optional<Selection> selection; // instead of the paths
};

// What the request selects, as one tree.
Selection selection_of(const ReadRequest &request);

// Merges the paths into one tree; list entries with the same keys become one. The root is the first step of the
// paths, which must not be empty.
Selection merge_paths(const std::vector<yang::Path> &paths);

// Splits a tree in which a list stands more than once below one parent into trees in which none does: the
// mapping remembers one key of a list at a time. Together they select what `root` selects.
std::vector<Selection> split_by_list_entry(const Selection &root);

// One tree for each selected node, with what leads to it and its keys.
std::vector<Selection> split_by_selected_node(const Selection &root);

// Whether it selects state (config false) at or below one of these nodes.
bool selects_state(const Selection &root, const std::vector<const lysc_node *> &below);

} // namespace yfw::host

#endif
