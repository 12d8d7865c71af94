// The server's data about itself, which comes from no mapping.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_OWN_DATA_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_OWN_DATA_H

#include <functional>
#include <vector>

#include "frontends/netconf/operations/operations.h"
#include "host/request.h"

namespace yfw::netconf {

// A top container, created only on request.
struct OwnData {
    const lysc_node *schema;
    std::function<yang::DataTree(host::Content)> make; // throws Error
    bool has_configuration = false;                    // besides state
};

// The state of the server (RFC 6022), its streams (RFC 5277), its modules (RFC 8525) and its access rules (RFC
// 8341). Borrows the server.
std::vector<OwnData> own_data(const Server &server);

} // namespace yfw::netconf

#endif
