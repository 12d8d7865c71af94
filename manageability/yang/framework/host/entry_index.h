// Entries of native lists by their keys.
#ifndef YFW_HOST_ENTRY_INDEX_H
#define YFW_HOST_ENTRY_INDEX_H

#include <functional>
#include <map>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "yang/instance_tree.h"

namespace yfw::host {

// Finds the entries of long lists without passing the others. Each list is looked through when it is first
// asked for. Borrows the data of the nodes that it is given. One thread at a time.
class EntryIndex {
public:
    using Visit = std::function<void(const yang::InstanceNode &child)>;

    // Calls `visit` with the children of `parent` in their order; of the list of the leaf `key` only with the
    // entries that have this value, or lack the key.
    void for_each_child(const yang::InstanceNode &parent, const lysc_node *key, std::string_view value,
                        const Visit &visit);

private:
    struct Child {
        size_t position;
        const yang::InstanceNode *node;
    };
    struct Children {
        std::vector<Child> others; // of other nodes, or without the key
        std::unordered_map<std::string_view, std::vector<Child>> entries;
    };

    static Children look_through(const yang::InstanceNode &parent, const lysc_node *key);

    std::map<std::pair<const yang::InstanceNode *, const lysc_node *>, Children> known_;
};

} // namespace yfw::host

#endif
