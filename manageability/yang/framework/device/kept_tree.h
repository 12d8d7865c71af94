// One side of a configuration in memory, of which edits take and change parts.
#ifndef YFW_DEVICE_KEPT_TREE_H
#define YFW_DEVICE_KEPT_TREE_H

#include <string>
#include <unordered_map>
#include <vector>

#include "device/independent_entries.h"
#include "device/lent_tree.h"
#include "yang/data_tree.h"
#include "yang/instance_tree.h"

namespace yfw::device {

// Not thread-safe.
class KeptTree {
public:
    explicit KeptTree(yang::DataTree tree) : tree_(std::move(tree)) {}

    yang::SharedData lend() const { return tree_.lend(); }
    const yang::SharedForest &forest();

    // A copy of these entries and of everything outside of the lists. Costs what it copies.
    yang::DataTree part(const IndependentEntries &entries, const EntryNames &names);

    // A copy of the lists' containers, empty.
    yang::DataTree containers(const IndependentEntries &entries) const;

    // Applies a change of a part with these entries, which has made `after` of it. Costs what it changes,
    // unless the tree is lent. Throws Error; the tree must not be used then.
    void apply(const lyd_node *change, const lyd_node *after, const IndependentEntries &entries,
               const EntryNames &names);

private:
    using Instances = std::unordered_map<std::string, std::vector<lyd_node *>>; // by name

    void index(const IndependentEntries &entries);
    lyd_node *copy_part(const lyd_node &node, lyd_node *parent, const IndependentEntries &entries,
                        const EntryNames &names);
    static lyd_node *copy_containers(const lyd_node &node, lyd_node *parent, const IndependentEntries &entries);
    void reindex(const lyd_node *part, const IndependentEntries &entries, const EntryNames &names);

    LentTree tree_;
    yang::SharedForest forest_;                                  // NULL until it is asked for
    std::unordered_map<const lysc_node *, Instances> instances_; // of the lists, when it is indexed
    bool is_indexed_ = false;
};

} // namespace yfw::device

#endif
