// What <get> and <get-config> read.
#ifndef YFW_FRONTENDS_NETCONF_READ_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_READ_OPERATIONS_H

#include <optional>
#include <string>

#include "frontends/netconf/operations.h"

namespace yfw::netconf {

// Configuration and state of the device, the server's own state and its modules, as far as the filter selects
// them, printed. Throws RpcError or host::Error.
std::string read_everything(const Server &server, const std::optional<Element> &filter);

// A datastore in OpenConfig terms.
std::string read_configuration(const Server &server, Datastore datastore, const std::optional<Element> &filter);

} // namespace yfw::netconf

#endif
