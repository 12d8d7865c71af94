// What an XPath function takes from the limits of its evaluation, and what it needs to know of the data.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_CHARGING_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_CHARGING_H

#include <cstddef>
#include <map>
#include <string>

#include "frontends/netconf/filters/xpath_evaluation.h"
#include "frontends/netconf/filters/xsd_pattern.h"

struct _xmlXPathContext;
struct _xmlXPathParserContext;

namespace yfw::netconf {

// One evaluation. The user data of its context.
struct XPathEvaluation {
    const XPathDocument &document;
    size_t characters_left;
    std::map<std::string, XsdPattern> patterns{}; // those of re-match()
};

XPathEvaluation &evaluation_of(const _xmlXPathParserContext *parser);

// Deducts the cost; false when the limit is exceeded, which ends the evaluation as libxml2's own limit does.
bool charge(_xmlXPathParserContext *parser, size_t characters);

// Converts this many arguments to strings and charges them, the first two also for being compared with each
// other if `compares`. False when the limit is exceeded.
bool charge_arguments(_xmlXPathParserContext *parser, int count, bool compares);

// The same for one argument, given by its place on the stack; returns its length.
size_t make_string(_xmlXPathParserContext *parser, int place);

} // namespace yfw::netconf

#endif
