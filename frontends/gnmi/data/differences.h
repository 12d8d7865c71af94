// What has changed between two snapshots.
#ifndef YFW_FRONTENDS_GNMI_DATA_DIFFERENCES_H
#define YFW_FRONTENDS_GNMI_DATA_DIFFERENCES_H

#include <vector>

#include "frontends/gnmi/data/snapshot.h"

namespace yfw::gnmi {

struct UpdatedLeaf {
    Snapshot::Index leaf;
    bool is_new; // it was not there before
};

struct Differences {
    // Of the later snapshot, in document order: the leaves that are new or have another value. Of a leaf-list,
    // the first value stands for all.
    std::vector<UpdatedLeaf> updated;
    // Of the earlier snapshot, in document order: the topmost nodes that are gone.
    std::vector<Snapshot::Index> removed;
};

// Entries are the same when their keys are; their order does not matter.
Differences differences(const Snapshot &before, const Snapshot &after);

} // namespace yfw::gnmi

#endif
