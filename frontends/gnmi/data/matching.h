// What a pattern selects of a snapshot.
#ifndef YFW_FRONTENDS_GNMI_DATA_MATCHING_H
#define YFW_FRONTENDS_GNMI_DATA_MATCHING_H

#include <vector>

#include "frontends/gnmi/data/snapshot.h"
#include "frontends/gnmi/paths/path_pattern.h"

namespace yfw::gnmi {

// The nodes that the pattern selects, in document order. Of a leaf-list, the first value stands for all.
std::vector<Snapshot::Index> matches(const Snapshot &snapshot, const PathPattern &pattern);

// Whether one of the patterns selects the node or a node around it.
bool is_selected(const Snapshot &snapshot, Snapshot::Index node, const std::vector<PathPattern> &patterns);

// Where the values of a leaf-list end that begin with this one.
Snapshot::Index end_of_values(const Snapshot &snapshot, Snapshot::Index first);

} // namespace yfw::gnmi

#endif
