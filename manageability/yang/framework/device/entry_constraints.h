// Constraints of YANG models between the entries of lists.
#ifndef YFW_DEVICE_ENTRY_CONSTRAINTS_H
#define YFW_DEVICE_ENTRY_CONSTRAINTS_H

#include <vector>

#include <libyang/libyang.h>

namespace yfw::device {

// Whether configuration at or below `root` has a constraint that concerns several entries of these lists, or
// entries and what is outside: "unique", a number of elements, an order by the user, or a "must", "when" or
// leafref (RFC 7950 sections 7.8.3, 7.7.5, 7.5.3, 7.21.5 and 9.9) that leads from an entry to others, or into
// one from elsewhere.
bool constrains_entries(const lysc_node *root, const std::vector<const lysc_node *> &lists);

} // namespace yfw::device

#endif
