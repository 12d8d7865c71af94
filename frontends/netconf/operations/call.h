// An operation with its arguments.
#ifndef YFW_FRONTENDS_NETCONF_OPERATIONS_CALL_H
#define YFW_FRONTENDS_NETCONF_OPERATIONS_CALL_H

#include <initializer_list>
#include <optional>
#include <string>
#include <string_view>

#include "frontends/netconf/operations/operations.h"

namespace yfw::netconf {

inline constexpr std::string_view ok = "<ok/>";

inline constexpr std::string_view nmda_ns = "urn:ietf:params:xml:ns:yang:ietf-netconf-nmda";

struct Call {
    const Server &server;
    const Caller &caller;
    const Element &operation;
    Aftermath &aftermath;
};

// The functions below throw RpcError for an invalid argument.

// A mandatory child.
Element required(const Element &parent, const char *name);

std::optional<std::string> text_of(const Element &parent, const char *name);

// The element's number, at least `least`.
uint32_t number_of(const Element &element, uint32_t least);

// Rejects what `parent` does not take: unknown children, repeated ones (except origin filters, of which there
// may be several), text, and attributes, also of the children themselves. <with-defaults> has a namespace of
// its own.
void refuse_others(const Element &parent, std::initializer_list<std::string_view> known);

// Rejects attributes that the protocol does not define.
void refuse_attributes(const Element &element);

// Rejects content and attributes of an element that says everything by its name.
void require_empty(const Element &element);

// The single datastore in <source> or <target>; also accepts the RFC 8526 form.
Datastore datastore_of(const Element &parent, const char *name);

// The datastore named in a leaf of type datastore-ref (RFC 8342); empty when that module does not define it.
std::string datastore_name(const Element &leaf);
// The same, restricted to configuration datastores.
Datastore configuration_named_by(const Element &leaf);

// Rejects a caller with read-only access.
void require_writer(const Call &call);

} // namespace yfw::netconf

#endif
