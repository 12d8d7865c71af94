// The difference between two configurations, as a tree of its own that turns one into the other.
#ifndef YFW_YANG_TREE_CHANGE_H
#define YFW_YANG_TREE_CHANGE_H

#include <string>

#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::yang {

// libyang's diff: the nodes that differ, with metadata "yang:operation"; NULL when there is no difference.
// Either configuration may be NULL. Throws Error.
DataTree change_between(const lyd_node *before, const lyd_node *after);

// Makes the configuration of `before` that of `after`, in time by the size of the change, but without
// containers that the change leaves empty. NULL changes nothing. Throws Error, leaving it partly changed, when
// it lacks what the change is about.
void apply_change(DataTree &configuration, const lyd_node *change);

// As XML without blanks; empty for NULL.
std::string print_change(const lyd_node *change);
// Throws Error; `place` names where the text comes from.
DataTree parse_change(const Schemas &schemas, const std::string &text, const std::string &place);

// Removes what a text of the configuration does not have: defaults that nobody has set, and containers without
// presence that are empty.
void drop_implicit(DataTree &configuration);

} // namespace yfw::yang

#endif
