// Filters of <get> and <get-config> (RFC 6241 sections 6 and 8.9).
#ifndef YFW_FRONTENDS_NETCONF_FILTER_H
#define YFW_FRONTENDS_NETCONF_FILTER_H

#include <optional>
#include <string>

#include "frontends/netconf/selected.h"
#include "frontends/netconf/xml.h"
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

// What a subtree filter selects of a document, printed; empty when that is nothing. `filter`: the <filter>.
std::string subtree_filtered(const Element &filter, const Element &data);

// How many steps an evaluation may take: of all, and for each node of the data. By default a second or two.
struct XPathBound {
    double steps = 2e7;
    double for_each_node = 0;
};

// Throws RpcError when an expression is longer than 16 KiB, or would take too long on data of so many nodes.
void refuse_unbounded(const std::string &expression, size_t nodes, const XPathBound &bound);

// What an XPath filter selects of the data, with the nodes that lead to it and their keys, and of each selected
// node no more than `depth` levels. Throws RpcError, also as refuse_unbounded() does.
yang::DataTree xpath_filtered(const lyd_node *data, const Filter &filter, uint32_t depth = unlimited_depth,
                              const XPathBound &bound = {});

} // namespace yfw::netconf

#endif
