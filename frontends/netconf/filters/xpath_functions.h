// XPath's functions on strings, whose cost libxml2 does not count.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_FUNCTIONS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_FUNCTIONS_H

#include <cstddef>

struct _xmlXPathContext;

namespace yfw::netconf {

// Replaces them by ones that take what they cost off `characters_left`, and end the evaluation as beyond its
// operations when that is used up. The counter is borrowed until the context is freed.
void charge_string_functions(_xmlXPathContext *context, size_t *characters_left);

} // namespace yfw::netconf

#endif
