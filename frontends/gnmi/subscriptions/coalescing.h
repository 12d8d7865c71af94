// Makes one update of several that a slow reader has not taken yet.
#ifndef YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_COALESCING_H
#define YFW_FRONTENDS_GNMI_SUBSCRIPTIONS_COALESCING_H

#include <deque>

#include "frontends/gnmi/subscriptions/bundles.h"

namespace yfw::gnmi {

// Messages that say the same in the end as the given ones, in their order: of several updates of a leaf the
// last one is left, with the number of the others as its duplicates, and what is deleted later is left out.
std::deque<SharedMessage> coalesced(const std::deque<SharedMessage> &messages);

} // namespace yfw::gnmi

#endif
