// XPath's string functions, whose cost libxml2 does not count.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_FUNCTIONS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_FUNCTIONS_H

#include <cstddef>

struct _xmlXPathContext;

namespace yfw::netconf {

// Replaces them with versions that deduct their cost from `characters_left` and, when it is used up, end the
// evaluation as if the operation limit were exceeded. The counter must outlive the context.
void charge_string_functions(_xmlXPathContext *context, size_t *characters_left);

} // namespace yfw::netconf

#endif
