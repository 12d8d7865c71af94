// The operations on configuration datastores.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_EDIT_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_EDIT_OPERATIONS_H

#include "frontends/netconf/operations/call.h"

namespace yfw::netconf {

// Each performs the operation of the same name and returns the content of the reply. Throws RpcError or Error,
// and then nothing has changed.
Spool edit_config(const Call &call);
Spool edit_data(const Call &call); // RFC 8526
Spool copy_config(const Call &call);
Spool delete_config(const Call &call);
Spool validate(const Call &call);
Spool commit(const Call &call);
Spool cancel_commit(const Call &call);
Spool discard_changes(const Call &call);
Spool lock(const Call &call);
Spool unlock(const Call &call);

} // namespace yfw::netconf

#endif
