// The operations on configuration datastores.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_EDIT_OPERATIONS_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_EDIT_OPERATIONS_H

#include <string>

#include "frontends/netconf/operations/call.h"

namespace yfw::netconf {

// Each performs the operation of the same name and returns the content of the reply. Throws RpcError or Error,
// and then nothing has changed.
std::string edit_config(const Call &call);
std::string edit_data(const Call &call); // RFC 8526
std::string copy_config(const Call &call);
std::string delete_config(const Call &call);
std::string validate(const Call &call);
std::string commit(const Call &call);
std::string cancel_commit(const Call &call);
std::string discard_changes(const Call &call);
std::string lock(const Call &call);
std::string unlock(const Call &call);

} // namespace yfw::netconf

#endif
