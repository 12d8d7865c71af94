// The origin of configuration in the operational datastore (RFC 8342 section 5.3.4, RFC 8526 section 3.1.1).
#ifndef YFW_FRONTENDS_NETCONF_FILTERS_ORIGIN_H
#define YFW_FRONTENDS_NETCONF_FILTERS_ORIGIN_H

#include <optional>
#include <set>
#include <string>

#include "frontends/netconf/messages/xml.h"
#include "yang/data_tree.h"

namespace yfw::netconf {

// What <get-data> asks about origins.
struct Origins {
    bool annotated = false; // with-origin
    struct Filter {
        std::set<std::string> names; // of identities of ietf-origin
        bool negated = false;
    };
    std::optional<Filter> filter;
};

// Reads <with-origin>, <origin-filter> and <negated-origin-filter> of an operation; throws RpcError.
Origins origins_of(const Element &operation);

// Drops configuration whose origin is filtered out, and annotates the rest if that is asked. `data`: what is in
// force, from the top container down. `running`: what is configured. Configuration with the configured value is
// "intended", everything else is "system". State is not touched.
void apply_origins(yang::DataTree &data, const lyd_node *running, const Origins &origins);

} // namespace yfw::netconf

#endif
