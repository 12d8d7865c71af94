// Applies edits to configurations in OpenConfig terms (RFC 6241 section 7.2).
#ifndef YFW_YANG_EDIT_APPLY_H
#define YFW_YANG_EDIT_APPLY_H

#include "yang/edit.h"
#include "yang/schemas.h"

namespace yfw::yang {

// Applies the edit to `configuration`, which may be NULL. An entry that it touches gets the leaves that its
// keys refer to, such as config/name for the key name, where they are missing. Call check_existence() before.
// On an exception the configuration is left partly changed, so pass a copy. Throws Error (data-missing) where a
// node with the operation `none` is missing that new nodes would belong to.
void apply_edit(const EditNode &edit, DataTree &configuration);

// Validates an OpenConfig configuration against its modules; NULL is valid. Throws Error that names the node.
void validate_openconfig(const Schemas &schemas, const lyd_node *configuration);

} // namespace yfw::yang

#endif
