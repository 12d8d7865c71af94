// The data that a node of an edit is about.
#ifndef YFW_YANG_EDIT_INSTANCE_H
#define YFW_YANG_EDIT_INSTANCE_H

#include "yang/edit.h"

namespace yfw::yang {

// The instance among the siblings, of which any may be given: a list entry is found by its keys, an entry of a
// leaf-list by its value. NULL when there is none.
const lyd_node *find_instance(const lyd_node *siblings, const EditNode &node);

// Whether a leaf has this value; identities may be given without their module's name.
bool holds_value(const lyd_node *leaf, const std::string &value);

} // namespace yfw::yang

#endif
