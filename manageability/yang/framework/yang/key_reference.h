// The leaves that list keys refer to.
#ifndef YFW_YANG_KEY_REFERENCE_H
#define YFW_YANG_KEY_REFERENCE_H

#include <vector>

#include <libyang/libyang.h>

namespace yfw::yang {

// The nodes from below an entry down to the leaf that its key refers to by a path like ../config/name; empty
// when it refers to none below the entry.
std::vector<const lysc_node *> leaf_behind_key(const lysc_node *key);

} // namespace yfw::yang

#endif
