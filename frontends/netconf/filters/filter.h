// Filters of <get> and <get-config> (RFC 6241 sections 6 and 8.9).
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_FILTER_H
#define YFW_FRONTENDS_NETCONF_FILTERS_FILTER_H

#include <optional>
#include <string>
#include <vector>

#include "frontends/netconf/filters/selected.h"
#include "frontends/netconf/messages/xml.h"
#include "host/request.h"

namespace yfw::netconf {

enum class FilterType { subtree, xpath };

// A filter as an operation gives it; the element must outlive it.
struct Filter {
    FilterType type = FilterType::subtree;
    Element element;        // holds what a subtree filter selects
    std::string expression; // of an XPath filter
    Prefixes prefixes;      // in it
};

// The <filter> of <get>, told by its attributes. Throws RpcError when they are none of a filter.
Filter filter_of(const Element &filter);

// What a subtree filter selects below `root`, so that no more is mapped; nothing when it selects nothing there.
// `filter`: the <filter> element.
std::optional<host::Selection> subtree_selection(const Element &filter, const lysc_node *root);

// Who waits for the answer: a client for a request, or the event loop for an event, which must not wait long.
enum class XPathUse { request, event };

// The same as follows, of trees that stand side by side below one root: those of all modules (RFC 6241
// section 8.9.1).
void filter_by_xpath(std::vector<yang::DataTree> &trees, const Filter &filter, uint32_t depth, XPathUse use);

// What an XPath filter selects of the data, with the nodes that lead to it and their keys, and of each selected
// node no more than `depth` levels. Throws RpcError: "too-big" for an expression longer than 16 KiB,
// "resource-denied" for one that takes too much, "invalid-value" for one that selects no nodes.
yang::DataTree xpath_filtered(yang::DataTree data, const Filter &filter, uint32_t depth = unlimited_depth,
                              XPathUse use = XPathUse::request);

} // namespace yfw::netconf

#endif
