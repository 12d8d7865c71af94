// The operations that read.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_READ_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_READ_OPERATIONS_H

#include "frontends/netconf/operations/call.h"

namespace yfw::netconf {

// Each performs the operation of the same name and returns the content of the reply. Throws RpcError or Error.
Spool get(const Call &call);
Spool get_config(const Call &call);
Spool get_data(const Call &call); // RFC 8526
Spool get_schema(const Call &call);

} // namespace yfw::netconf

#endif
