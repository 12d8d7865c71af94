// What an operation costs, judged by its parameters.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_COST_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_COST_H

#include "frontends/netconf/operations/operations.h"

namespace yfw::netconf {

enum class Cost {
    low,
    edit, // takes turns with other edits
    high  // grows with the data of the device, or with what an expression says
};

// Never throws because of a client's input: a wrong one may be told anything.
Cost cost_of(const Server &server, const Element &operation);

} // namespace yfw::netconf

#endif
