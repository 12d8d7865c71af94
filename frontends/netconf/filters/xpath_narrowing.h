// How much of the data an XPath expression can be about.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_NARROWING_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_NARROWING_H

#include <optional>
#include <string>
#include <vector>

#include "frontends/netconf/messages/xml.h"
#include "yang/path.h"

namespace yfw::netconf {

// Paths below `root` outside of which the expression neither selects nor looks at anything, so that no more has
// to be mapped; none when it is about other data alone. Nothing when that cannot be told: it may then be about
// all data.
std::optional<std::vector<yang::Path>> xpath_narrowing(const std::string &expression, const Prefixes &prefixes,
                                                       const lysc_node *root);

} // namespace yfw::netconf

#endif
