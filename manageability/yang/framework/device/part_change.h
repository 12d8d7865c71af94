// What a change of a part of a configuration changes in the whole.
#ifndef YFW_DEVICE_PART_CHANGE_H
#define YFW_DEVICE_PART_CHANGE_H

#include "device/configuration.h"
#include "device/independent_entries.h"
#include "yang/data_tree.h"

namespace yfw::device {

// One side of a change.
struct SideChange {
    yang::DataTree change; // see yang::change_between()
    yang::DataTree after;  // the part that it makes, as it is read from a text
};

// The change from a part of a configuration, as KeptTree::part() returns it, to what became of that.
// `containers`: KeptTree::containers() of the whole; the change leaves them there. Throws Error.
SideChange side_change(const lyd_node *before, const lyd_node *after, const lyd_node *containers);

// Both sides.
struct PartChange {
    EntryNames names; // of the part's entries
    SideChange openconfig;
    SideChange native;
};

// `containers`: as above, of both sides.
PartChange part_change(const Configuration &before, const Configuration &after, const EntryNames &names,
                       const Configuration &containers);

} // namespace yfw::device

#endif
