// Filters of <get> and <get-config> (RFC 6241 sections 6 and 8.9).
#ifndef YFW_FRONTENDS_NETCONF_FILTER_H
#define YFW_FRONTENDS_NETCONF_FILTER_H

#include <optional>
#include <string>

#include "frontends/netconf/xml.h"
#include "host/request.h"

namespace yfw::netconf {

// What a subtree filter selects below `root`, so that no more is mapped; nothing when it selects nothing there.
// `filter`: the <filter> element.
std::optional<host::Selection> subtree_selection(const Element &filter, const lysc_node *root);

// What a subtree filter selects of a document, printed; empty when that is nothing.
std::string filtered(const Element &filter, const Element &data);

// What the XPath expression in the filter's "select" selects of the data, with the nodes that lead to it and
// their keys. Throws RpcError.
host::DataTree xpath_filtered(const lyd_node *data, const Element &filter);

} // namespace yfw::netconf

#endif
