// The functions of clients' expressions whose cost libxml2 does not count or that it does not have. The user
// data of the context must be an XPathEvaluation, which they charge.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_FUNCTIONS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_FUNCTIONS_H

struct _xmlXPathContext;

namespace yfw::netconf {

// Replaces XPath's own string functions.
void register_string_functions(_xmlXPathContext *context);

// YANG's functions, RFC 7950 section 10. They know the schema of the nodes.
void register_yang_functions(_xmlXPathContext *context);

} // namespace yfw::netconf

#endif
