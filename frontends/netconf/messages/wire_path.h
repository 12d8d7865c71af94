// Instance paths as NETCONF writes them: XPath 1.0 with a prefix at each name (RFC 7950 section 9.13).
#ifndef YFW_FRONTENDS_NETCONF_MESSAGES_WIRE_PATH_H
#define YFW_FRONTENDS_NETCONF_MESSAGES_WIRE_PATH_H

#include <string>

#include <libyang/libyang.h>

namespace yfw::netconf {

// Whether the path, with or without the module's name, is that of `top`, a top container, or of a node below
// it.
bool is_within(const std::string &path, const lysc_node *top);

// "/module:top/config" as "/top/config", for the module of `top`, the top container.
std::string without_module(const std::string &path, const lysc_node *top);

// An element with the instance path of a node below `top`, a top container of any module; `path` has no
// prefixes, and quotes in its quoted values are doubled (yang::quoted_literal()).
std::string path_element(const char *name, const std::string &path, const lysc_node *top);

} // namespace yfw::netconf

#endif
