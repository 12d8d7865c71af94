// What an XPath expression may cost.
#ifndef YFW_FRONTENDS_NETCONF_XPATH_COST_H
#define YFW_FRONTENDS_NETCONF_XPATH_COST_H

#include <cstddef>
#include <string_view>

namespace yfw::netconf {

// About how many steps the evaluation takes on data of so many nodes: each part that may look through all of
// them (an absolute path, "//", a step upwards or sidewards) counts as many, and a predicate is evaluated for
// each node that it is applied to. Any text will do; one that is no expression is somebody else's to refuse.
double xpath_cost(std::string_view expression, size_t nodes);

} // namespace yfw::netconf

#endif
