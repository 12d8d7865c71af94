// Default values in answers (RFC 6243).
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_DEFAULTS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_DEFAULTS_H

#include <string>
#include <string_view>

#include "frontends/netconf/messages/xml.h"
#include "host/request.h"

namespace yfw::netconf {

inline constexpr std::string_view with_defaults_ns = "urn:ietf:params:xml:ns:yang:ietf-netconf-with-defaults";

// Without a word of the client: as_set, what the device is configured with.
enum class WithDefaults { as_set, report_all, report_all_tagged, trim };

// The capability with its basic mode.
std::string with_defaults_capability();

// What the operation's <with-defaults> says. Throws RpcError for another word.
WithDefaults with_defaults_of(const Element &operation);

// Adds the selected configuration leaves that have their default value to the containers and entries that are
// there. Leaves of state are not added: what the device does not tell is not known.
void add_defaults(lyd_node *data, const host::Selection &selection);

// The data with its siblings; empty when there is none.
std::string print_data(const lyd_node *data, WithDefaults mode = WithDefaults::as_set);
// The same of data that was cut: containers that are empty now were not, and are shown.
std::string print_cut_data(const lyd_node *data, WithDefaults mode = WithDefaults::as_set);

} // namespace yfw::netconf

#endif
