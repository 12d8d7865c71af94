// What an edit is told of as.
#ifndef YFW_DEVICE_EVENTS_EDIT_RECORDS_H
#define YFW_DEVICE_EVENTS_EDIT_RECORDS_H

#include <vector>

#include "device/events/events.h"
#include "yang/edit.h"

namespace yfw::events {

// What the edit touches: the leaves that it sets, and the topmost node of what is replaced or taken away as a
// whole.
std::vector<EditRecord> edit_records(const yang::EditNode &edit);

} // namespace yfw::events

#endif
