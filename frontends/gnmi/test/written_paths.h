// Paths as people write them.
#pragma once

#include <string>

#include <gnmi.pb.h>

namespace yfw::gnmi::test {

/// "/top/list[key=value]/leaf" as a path; values hold neither "]" nor "/".
::gnmi::Path path(const std::string &text);

/// The same with an origin or a target.
::gnmi::Path path_of_origin(const std::string &origin, const std::string &text);
::gnmi::Path path_of_target(const std::string &target, const std::string &text);

/// "/a/b = 1" for each update of the notification, "- /a" for each delete, one a line. Scalars as the field
/// says: 'text', 1u, 1, true, b64.
std::string written(const ::gnmi::Notification &notification);
std::string written(const ::gnmi::TypedValue &value);

} // namespace yfw::gnmi::test
