// One pass of a request through a mapping.
#ifndef YFW_HOST_PASS_H
#define YFW_HOST_PASS_H

#include <deque>

#include "host/mapping_log.h"
#include "host/request_context.h"
#include "host/request_tree.h"
#include "platform/trace_buffer.h"

namespace yfw::host {

// The part of a request that has one key per list. The platform's logs go to it for as long as it lives.
struct Pass {
    RequestContext context;
    MappingLog log;
    std::deque<RequestTree> requests; // kept because errors refer to their nodes

    Pass(const RequestTraits &traits, platform::TraceBuffer &buffer);

    // Throws Error for a status that is a failure, with the path and the reason that the plug-in left.
    void check(terrno status) const;

    // The plug-in reports success for a deletion even when it could not find all entries; the paths it emitted
    // are then only half of the edit.
    void refuse_reported_errors() const;
};

} // namespace yfw::host

#endif
