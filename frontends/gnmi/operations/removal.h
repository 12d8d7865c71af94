// Deletions of a Set.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_REMOVAL_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_REMOVAL_H

#include <vector>

#include "frontends/gnmi/paths/path_pattern.h"
#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::gnmi {

// One edit for each node of the running configuration, which may be NULL, that the pattern selects.
std::vector<yang::EditNode> removals(const yang::Schemas &schemas, const PathPattern &pattern,
                                     const lyd_node *running);

} // namespace yfw::gnmi

#endif
