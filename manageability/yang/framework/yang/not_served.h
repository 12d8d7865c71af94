// Nodes that the deviations of a device take away from a module (RFC 7950 section 5.6.3).
#ifndef YFW_YANG_NOT_SERVED_H
#define YFW_YANG_NOT_SERVED_H

#include <functional>
#include <set>
#include <string>
#include <string_view>

#include <libyang/libyang.h>

namespace yfw::yang {

// The schema paths of the topmost nodes that are taken away.
using NotServed = std::set<std::string, std::less<>>;

// Lets the functions below find them from any node at or below `top`. Borrowed; must outlive the schema.
void set_not_served(const lysc_node *top, const NotServed &nodes);

// Whether the module has this child, and the device does not serve it.
bool is_not_served(const lysc_node *parent, std::string_view name);

// The message about a child that the schema of `parent` lacks, for any of the reasons.
std::string unknown_child(const lysc_node *parent, std::string_view name);

// The schema paths of the nodes at and below `top`.
NotServed all_nodes(const lysc_node *top);

// The topmost ones of `before` that are not at or below `top` any more.
NotServed taken_away(const NotServed &before, const lysc_node *top);

} // namespace yfw::yang

#endif
