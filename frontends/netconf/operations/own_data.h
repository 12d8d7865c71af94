// The server's data about itself, which comes from no mapping.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_OWN_DATA_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_OWN_DATA_H

#include <functional>
#include <vector>

#include "frontends/netconf/operations/operations.h"

namespace yfw::netconf {

// A top container, created only on request.
struct OwnData {
    const lysc_node *schema;
    std::function<yang::DataTree()> make; // throws Error
};

// The state of the server (RFC 6022), its streams (RFC 5277) and its modules (RFC 8525). Borrows the server.
std::vector<OwnData> own_data(const Server &server);

} // namespace yfw::netconf

#endif
