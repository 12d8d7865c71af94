// The operations that read.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_READ_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_READ_OPERATIONS_H

#include <string>

#include "frontends/netconf/operations/call.h"

namespace yfw::netconf {

// Each performs the operation of the same name and returns the content of the reply. Throws RpcError or Error.
std::string get(const Call &call);
std::string get_config(const Call &call);
std::string get_data(const Call &call); // RFC 8526
std::string get_schema(const Call &call);

} // namespace yfw::netconf

#endif
