// Which nodes of an answer a filter selected, once they are there.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_SELECTED_H
#define YFW_FRONTENDS_NETCONF_FILTERS_SELECTED_H

#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "host/request.h"
#include "yang/data_tree.h"

namespace yfw::netconf {

// Levels of nodes.
inline constexpr uint32_t unlimited_depth = UINT32_MAX;

// The parts of a selection that meet at one node of the answer; they live as long as the selection.
using Selections = std::vector<const host::Selection *>;

// Whether one of them selects the node with all below it.
bool selects_whole(const Selections &selections);

// The parts below some that meet at one node. Entries are found by their first key where there are many: a
// filter may name thousands of them. Lives as long as what it is made of.
class SelectedChildren {
public:
    explicit SelectedChildren(const Selections &selections);

    // Those that meet at this child: for a list entry, those with its keys. Of a node that is selected whole
    // the same, as everything below it is.
    Selections at(const lyd_node *child) const;

private:
    using ByKey = std::unordered_multimap<std::string_view, const host::Selection *>;

    const Selections whole_; // when there is no more to choose
    Selections others_;
    std::unordered_map<const lysc_node *, ByKey> entries_; // of lists, by their first key
};

// Whether a leaf below the node is selected, be it there or not.
bool selects_leaf(const Selections &selections, const lysc_node *leaf);

// Whether more has to be read than it selects, and then filtered: it asks for values that are no keys, has a
// node several times in one place, or names so many entries that all of them together are read sooner.
bool has_to_be_filtered(const host::Selection &selection);

// What has to be read then: the same without values other than keys, and with what stands several times
// selected whole.
host::Selection broadened(const host::Selection &selection);

// Takes out of the data what is not selected.
void keep_selected(yang::DataTree &data, const host::Selection &selection);

// Leaves no more than `depth` levels of the node, itself the first, and the keys of what is left.
void cut_below(lyd_node *node, uint32_t depth);

// The same of each node that is selected whole.
void cut_selected(lyd_node *data, const host::Selection &selection, uint32_t depth);

} // namespace yfw::netconf

#endif
