// Values as paths write them.
#ifndef YFW_FRONTENDS_GNMI_PATHS_KEY_VALUE_H
#define YFW_FRONTENDS_GNMI_PATHS_KEY_VALUE_H

#include <optional>
#include <string>
#include <string_view>

#include <libyang/libyang.h>

namespace yfw::gnmi {

// The canonical form of a value of the leaf; an identity may be given without its module's name. Nothing when
// the leaf's type does not allow it.
std::optional<std::string> canonical_value(const lysc_node *leaf, const std::string &value);

// A canonical value without the name of its module: what identities look like wherever module names are left
// out. Of other values, the value itself.
std::string_view bare_value(const lysc_node *leaf, std::string_view canonical);

} // namespace yfw::gnmi

#endif
