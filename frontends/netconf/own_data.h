// What the server has to tell of itself, which no mapping is asked for.
#ifndef YFW_FRONTENDS_NETCONF_OWN_DATA_H
#define YFW_FRONTENDS_NETCONF_OWN_DATA_H

#include <optional>
#include <string>

#include "frontends/netconf/call.h"
#include "frontends/netconf/filter.h"

namespace yfw::netconf {

// The modules (RFC 8525), the state of the server (RFC 6022) and its streams (RFC 5277), as far as the caller
// may read them and the filter selects them, printed. Throws RpcError.
std::string read_own_data(const Call &call, const std::optional<Filter> &filter, uint32_t depth);

} // namespace yfw::netconf

#endif
