// A native configuration as text, and what two of them differ in.
#ifndef YFW_YANG_CONFIGURATION_TEXT_H
#define YFW_YANG_CONFIGURATION_TEXT_H

#include <string>

#include "yang/data_tree.h"
#include "yang/schemas.h"

namespace yfw::yang {

// The configuration as XML, the same for the same configuration.
std::string print_configuration(const lyd_node *configuration);

// Throws Error; `place` names where the text comes from.
DataTree parse_configuration(const Schemas &schemas, const std::string &text, const std::string &place);

// One line for each leaf that is not the same in both: "- path = old", "+ path = new"; empty when there is
// none.
std::string configuration_difference(const lyd_node *before, const lyd_node *after);

// A copy of the forest that `configuration` is the first tree of; NULL of NULL.
DataTree copy_configuration(const lyd_node *configuration);

// The configuration alone: the top nodes of `data` that hold configuration.
DataTree take_configuration(DataTree &data);

} // namespace yfw::yang

#endif
