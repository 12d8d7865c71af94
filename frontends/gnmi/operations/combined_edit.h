// Several edits as one.
#ifndef YFW_FRONTENDS_GNMI_OPERATIONS_COMBINED_EDIT_H
#define YFW_FRONTENDS_GNMI_OPERATIONS_COMBINED_EDIT_H

#include "yang/edit.h"

namespace yfw::gnmi {

// Adds to an edit what the next one would do after it. Both are of the same node. Operations are merge,
// replace, remove and none.
void combine(yang::EditNode &edit, const yang::EditNode &next);

// The same edit without removals of whole leaf-lists beside values that they are set to: each value that
// `running`, which may be NULL, has and that is not set is removed, and values that are there stay.
yang::EditNode with_values_resolved(const yang::EditNode &edit, const lyd_node *running);

} // namespace yfw::gnmi

#endif
