// Filters of <get> and <get-config> (RFC 6241 sections 6 and 8.9).
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_FILTER_H
#define YFW_FRONTENDS_NETCONF_FILTERS_FILTER_H

#include <atomic>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "frontends/netconf/filters/selected.h"
#include "frontends/netconf/messages/xml.h"
#include "host/request.h"

namespace yfw::netconf {

enum class FilterType { subtree, xpath };

// An operation's filter; the element must outlive it.
struct Filter {
    FilterType type = FilterType::subtree;
    Element element;        // of a subtree filter
    std::string expression; // of an XPath filter
    Prefixes prefixes;      // used in the expression
};

// Reads the <filter> of <get>. Throws RpcError when its attributes are invalid.
Filter filter_of(const Element &filter);

// Text beside the elements of a filter selects nothing: throws RpcError.
void refuse_filter_text(const Element &filter);

// What a subtree filter selects below `root`, so that nothing else is mapped; nothing when it selects nothing
// there. `filter`: the <filter> element.
std::optional<host::Selection> subtree_selection(const Element &filter, const lysc_node *root);

// Throws RpcError ("unknown-element") for a child that the module of `parent` has and the device does not
// serve. RFC 6241 section 6 leaves it open, and an empty answer would be taken for missing data.
void require_served(const lysc_node *parent, std::string_view name);

// The same for every element of a subtree filter that names a node below `root`.
void refuse_not_served(const Element &filter, const lysc_node *root);

// What the evaluation is for: a client's request, or an event on the event loop, which must not block for long.
enum class XPathUse { request, event };

// Like xpath_filtered(), for the trees of all modules side by side below one root (RFC 6241 section 8.9.1).
// `is_unwanted`, which may be NULL, is set by another thread when the result is not needed any more: a long
// evaluation then ends soon, with "resource-denied".
void filter_by_xpath(std::vector<yang::DataTree> &trees, const Filter &filter, uint32_t depth, XPathUse use,
                     const std::atomic<bool> *is_unwanted = nullptr);

// What an XPath filter selects of the data, with ancestors and their keys, and at most `depth` levels of each
// selected node. Throws RpcError: "too-big" for an expression longer than 16 KiB, "resource-denied" for one
// that is too expensive, "invalid-value" for one that does not select nodes.
yang::DataTree xpath_filtered(yang::DataTree data, const Filter &filter, uint32_t depth = unlimited_depth,
                              XPathUse use = XPathUse::request);

} // namespace yfw::netconf

#endif
