// Instance paths as NETCONF writes them: XPath 1.0 with a prefix at each name (RFC 7950 section 9.13).
#ifndef YFW_FRONTENDS_NETCONF_MESSAGES_WIRE_PATH_H
#define YFW_FRONTENDS_NETCONF_MESSAGES_WIRE_PATH_H

#include <string>

#include <libyang/libyang.h>

namespace yfw::netconf {

// "/module:top/config" as "/top/config", for the module of `openconfig`, the top container.
std::string without_module(const std::string &path, const lysc_node *openconfig);

// An element with the instance path of a node below `openconfig`; `path` has no prefixes, and quotes in its
// quoted values are doubled (yang::quoted_literal()).
std::string openconfig_path_element(const char *name, const std::string &path, const lysc_node *openconfig);

} // namespace yfw::netconf

#endif
