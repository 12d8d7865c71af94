// gNMI paths as text, for messages.
#ifndef YFW_FRONTENDS_GNMI_PATHS_PATH_TEXT_H
#define YFW_FRONTENDS_GNMI_PATHS_PATH_TEXT_H

#include <string>

#include <gnmi.pb.h>

namespace yfw::gnmi {

// "/top/list[key=value]/leaf", as gNMI clients write paths; keys in alphabetical order. The origin, if any,
// comes first: "origin:/top".
std::string to_text(const ::gnmi::Path &path);

// The path with the elements of its prefix before its own.
std::string to_text(const ::gnmi::Path &prefix, const ::gnmi::Path &path);

} // namespace yfw::gnmi

#endif
