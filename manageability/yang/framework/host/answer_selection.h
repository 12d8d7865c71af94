// What a selection selects of an answer's nodes.
#ifndef YFW_HOST_ANSWER_SELECTION_H
#define YFW_HOST_ANSWER_SELECTION_H

#include <vector>

#include "host/answer_tree.h"
#include "host/request.h"

namespace yfw::host {

// Those that select a node; empty below a node that is selected whole. Valid as long as the selection.
using Selections = std::vector<const Selection *>;

// Finds what is selected below the child `schema`; false when the child is not selected.
bool select_child(const Selections &selections, const lysc_node *schema, Selections &below);

// Finds the selections whose values the entry's keys and leaves have; false when all of them require others.
bool match_entry(const AnswerEntry &entry, const Selections &selections, Selections &matching);

} // namespace yfw::host

#endif
