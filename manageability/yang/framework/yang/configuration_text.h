// Native configurations: printing, parsing, comparing and copying them.
#ifndef YFW_YANG_CONFIGURATION_TEXT_H
#define YFW_YANG_CONFIGURATION_TEXT_H

#include <string>
#include <vector>

#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::yang {

// The configuration as XML; equal configurations give equal text.
std::string print_configuration(const lyd_node *configuration);

// Throws Error; `place` names where the text comes from.
DataTree parse_configuration(const Schemas &schemas, const std::string &text, const std::string &place);

// A leaf, a value of a leaf-list or a list entry that only one of two configurations has.
struct Difference {
    bool is_added = false;
    std::string path;  // instance path
    std::string value; // empty for a list entry
};

// In the order of the paths; of a changed leaf, the old value comes first. Either may be NULL.
std::vector<Difference> differences(const lyd_node *before, const lyd_node *after);

// One line for each difference: "- path = old", "+ path = new"; empty when there is none.
std::string configuration_difference(const lyd_node *before, const lyd_node *after);

// A copy of the forest whose first tree is `configuration`; NULL for NULL.
DataTree copy_configuration(const lyd_node *configuration);

// Moves the top nodes that hold configuration out of `data`.
DataTree take_configuration(DataTree &data);

} // namespace yfw::yang

#endif
