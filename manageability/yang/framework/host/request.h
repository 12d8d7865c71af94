// A client's request, in OpenConfig terms.
#ifndef YFW_HOST_REQUEST_H
#define YFW_HOST_REQUEST_H

#include <optional>
#include <string>
#include <vector>

#include "yang/path.h"

namespace yfw::host {

enum class Content { all, config, state };

// A node selected by a read. A container or list entry is selected whole when nothing is selected below it; a
// leaf with a value is a key or a content match, and `named` means that it is also selected itself.
struct Selection {
    const lysc_node *node = nullptr;
    std::optional<std::string> value;
    std::vector<Selection> children;
    bool named = false;

    bool operator==(const Selection &) const = default;

    bool is_key() const { return lysc_is_key(node); }

    // Whether it only restricts what is selected beside it.
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

// The request's selection as one tree.
Selection selection_of(const ReadRequest &request);

// Merges the paths into one tree, without the values of leaf-lists that they name; list entries with the same
// keys become one. The root is the first step of the paths, which must not be empty.
Selection merge_paths(const std::vector<yang::Path> &paths);

// Splits a tree so that no list occurs more than once below one parent: the mapping remembers one key per list
// at a time. Together the trees select what `root` selects.
std::vector<Selection> split_by_list_entry(const Selection &root);

// One tree for each selected node, with its ancestors and their keys.
std::vector<Selection> split_by_selected_node(const Selection &root);

// The value that it wants of a list's key; nothing when it wants every entry.
std::optional<std::string> wanted_value(const Selection &root, const lysc_node *key);

// Whether it selects state (config false).
bool selects_state(const Selection &root);

// Whether it selects state at or below one of these nodes.
bool selects_state(const Selection &root, const std::vector<const lysc_node *> &below);

} // namespace yfw::host

#endif
