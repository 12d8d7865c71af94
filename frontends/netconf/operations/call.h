// An operation with its arguments.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_CALL_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_CALL_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "frontends/netconf/operations/operations.h"

namespace yfw::netconf {

inline constexpr const char *ok = "<ok/>";

inline constexpr std::string_view nmda_ns = "urn:ietf:params:xml:ns:yang:ietf-netconf-nmda";

struct Call {
    const Server &server;
    const Caller &caller;
    const Element &operation;
    Aftermath &aftermath;
};

// What follows throws RpcError for an argument that is not as it has to be.

// A child that has to be there.
Element required(const Element &parent, const char *name);

std::optional<std::string> text_of(const Element &parent, const char *name);

// The element's number, which has to be `least` or more.
uint32_t number_of(const Element &element, uint32_t least);

// Refuses a child of `parent` that is not known: what does not belong into the operation. Children of other
// namespaces are none, but for <with-defaults> where it is among the known.
void refuse_others(const Element &parent, std::initializer_list<std::string_view> known);

// The one datastore that <source> or <target> names, also as RFC 8526 has it.
Datastore datastore_of(const Element &parent, const char *name);

// The name of the datastore in a leaf of type datastore-ref (RFC 8342); empty when it is none of that module's.
std::string datastore_name(const Element &leaf);
// The same where only a configuration will do.
Datastore configuration_named_by(const Element &leaf);

// Refuses a caller who may only read.
void require_writer(const Call &call);

} // namespace yfw::netconf

#endif
