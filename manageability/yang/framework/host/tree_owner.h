// The interface between the contract's add operations and the tree that a node belongs to.
#ifndef YFW_HOST_TREE_OWNER_H
#define YFW_HOST_TREE_OWNER_H

#include <string_view>

#include "yfw_map.h"

namespace yfw::host {

// The arguments of one add; texts are borrowed.
struct AddArguments {
    const char *path;
    const char *ns;
    const char *value;
    const tidl_yfw_datatree *source;
    tidl_yfw_datatree **slot;
    uint32_t list_entry;
    uint32_t flags;
};

// A tree that nodes can be added to. Nodes that can be parents refer to their owner through
// `framework_private`.
class TreeOwner {
public:
    virtual ~TreeOwner() = default;

    // Returns a platform status; unless it is 0, nothing was added.
    virtual terrno add(tidl_yfw_datatree &parent, const AddArguments &arguments) = 0;

    // Finds or creates the list entry with this key and makes it the list's current one. NULL when the path is
    // not a list in the tree.
    virtual tidl_yfw_datatree *find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                                 std::string_view key_name, std::string_view key_value) = 0;

    // The same for the entry that the native list entry `source` is mapped to; NULL when there is none. If
    // another native entry was mapped to it before, what is added to this one is dropped: entries never mix.
    virtual tidl_yfw_datatree *map_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                          std::string_view key_name, std::string_view key_value,
                                          const tidl_yfw_datatree *) {
        return find_or_add_entry(parent, list_path, key_name, key_value);
    }
};

} // namespace yfw::host

#endif
