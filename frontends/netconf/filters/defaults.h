// Default values in answers (RFC 6243).
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_DEFAULTS_H
#define YFW_FRONTENDS_NETCONF_FILTERS_DEFAULTS_H

#include <string>
#include <string_view>

#include "frontends/netconf/messages/xml.h"
#include "host/request.h"
#include "yang/text_pieces.h"

namespace yfw::netconf {

inline constexpr std::string_view with_defaults_ns = "urn:ietf:params:xml:ns:yang:ietf-netconf-with-defaults";

// as_set applies when the client chooses no mode: it reports what is explicitly configured.
enum class WithDefaults { as_set, report_all, report_all_tagged, trim };

// The capability, with the basic mode.
std::string with_defaults_capability();

// The operation's <with-defaults>. `also`: a namespace that it may be in besides that of its module, since RFC
// 8526 section 3.1 puts the leaf into operations of its own. Throws RpcError for an unknown mode.
WithDefaults with_defaults_of(const Element &operation, std::string_view also = with_defaults_ns);

// Adds the selected configuration leaves at their default values to the containers and entries that exist.
// State leaves are not added: a value that the device does not report is unknown.
void add_defaults(lyd_node *data, const host::Selection &selection);

// Prints the data with its siblings; nothing when there is none. Throws Error, and what the sink throws.
void print_data(const lyd_node *data, WithDefaults mode, const yang::TextSink &sink);
// The same for data that was cut to a depth: containers emptied by the cut are still printed.
void print_cut_data(const lyd_node *data, WithDefaults mode, const yang::TextSink &sink);
// The data as it is set, as one text.
std::string print_data(const lyd_node *data);

} // namespace yfw::netconf

#endif
