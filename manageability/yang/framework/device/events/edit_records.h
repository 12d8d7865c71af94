// Edits as reported in events.
#ifndef YFW_DEVICE_EVENTS_EDIT_RECORDS_H
#define YFW_DEVICE_EVENTS_EDIT_RECORDS_H

#include <vector>

#include "device/events/events.h"
#include "yang/edit.h"

namespace yfw::events {

// The nodes that the edit touches: the leaves it sets, and the topmost node of each subtree it replaces or
// removes.
std::vector<EditRecord> edit_records(const yang::EditNode &edit);

} // namespace yfw::events

#endif
