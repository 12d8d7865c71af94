// Applies a filter's selection to the nodes of an answer.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_SELECTED_H
#define YFW_FRONTENDS_NETCONF_FILTERS_SELECTED_H

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/request.h"
#include "yang/data_tree.h"

namespace yfw::netconf {

// In levels of nodes.
inline constexpr uint32_t unlimited_depth = UINT32_MAX;

// The parts of a selection that match one node of the answer; valid as long as the selection.
using Selections = std::vector<const host::Selection *>;

// Whether one of them selects the node's whole subtree.
bool selects_whole(const Selections &selections);

// The children of the parts that match one node. A filter may name thousands of entries, so they are indexed by
// their first key. Must not outlive the selections it is made of.
class SelectedChildren {
public:
    explicit SelectedChildren(const Selections &selections);

    // Those that match this child: for a list entry, those with its keys. If the node is selected whole, the
    // same selections, as everything below it is selected too.
    Selections at(const lyd_node *child) const;

private:
    using ByKey = std::unordered_multimap<std::string_view, const host::Selection *>;

    const Selections whole_; // set when everything below is selected
    Selections others_;
    std::unordered_map<const lysc_node *, ByKey> entries_; // of lists, by their first key
};

// Whether a leaf below the node is selected, whether or not it exists.
bool selects_leaf(const Selections &selections, const lysc_node *leaf);

// Whether more has to be read than it selects, and then filtered: it matches values other than keys, selects a
// node more than once, or names so many entries that reading the whole list is faster.
bool has_to_be_filtered(const host::Selection &selection);

// What has to be read in that case: the same without values other than keys, and with nodes that occur more
// than once selected whole.
host::Selection broadened(const host::Selection &selection);

// The same with the containers and entries around the leaves that it selects, all of them: whether one exists
// shows only in the others.
host::Selection around_leaves(const host::Selection &selection);

// Removes from the data what is not selected.
void keep_selected(yang::DataTree &data, const host::Selection &selection);

// Keeps `depth` levels of the node, counting the node itself, and the keys of whatever is kept.
void cut_below(lyd_node *node, uint32_t depth);

// The same for each node that is selected whole.
void cut_selected(lyd_node *data, const host::Selection &selection, uint32_t depth);

} // namespace yfw::netconf

#endif
