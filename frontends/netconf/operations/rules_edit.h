// Edits of the access rules, as clients write them.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_RULES_EDIT_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_RULES_EDIT_H

#include "frontends/netconf/operations/operations.h"
#include "yang/edit.h"

namespace yfw::netconf {

// Whether the element is the <nacm> of a server that has access rules.
bool is_of_rules(const Server &server, const Element &top);

// Reads such an element, in the context of the server's modules. Throws Error.
yang::EditNode rules_edit(const Server &server, const Element &top, yang::Operation operation);

} // namespace yfw::netconf

#endif
