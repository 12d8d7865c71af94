// Finds out how much of the data an XPath expression can refer to.
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_XPATH_NARROWING_H
#define YFW_FRONTENDS_NETCONF_FILTERS_XPATH_NARROWING_H

#include <optional>
#include <string>
#include <vector>

#include "frontends/netconf/messages/xml.h"
#include "yang/path.h"

namespace yfw::netconf {

// Paths below `root` that cover everything the expression selects or looks at, so that only these have to be
// mapped; empty when it concerns other data only. Nothing when this cannot be determined: the expression may
// then concern all data. Throws RpcError for a step to a node that the device does not serve.
std::optional<std::vector<yang::Path>> xpath_narrowing(const std::string &expression, const Prefixes &prefixes,
                                                       const lysc_node *root);

} // namespace yfw::netconf

#endif
