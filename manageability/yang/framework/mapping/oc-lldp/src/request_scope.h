// What the framework's request descriptor says about a request's scope.
#ifndef OCLLDP_REQUEST_SCOPE_H
#define OCLLDP_REQUEST_SCOPE_H

#include "frame.h"

namespace oclldp {

// Whether the request selects LLDP operational data below the OpenConfig model.
inline bool touches_operational(const yfw_request_descriptor &d) {
    const unsigned word_559 = d.touches_559[0] | static_cast<unsigned>(d.touches_559[1]) << 8;
    return (d.touches_808 & 0x8000) != 0 || (d.touches_588 & 0x07) != 0 || (d.touches_560 & 0x03) != 0 ||
           (word_559 & (0x01ff | 0x0600 | 0x3800)) != 0 || (d.touches_4f4 & 0x0f) != 0 ||
           (d.touches_540 & 0x07) != 0 || (d.touches_520 & 0x03) != 0 || (d.touches_538 & 0x03) != 0 ||
           (d.touches_584 & 0x0f) != 0;
}

// Whether the request is for operational data only.
inline bool is_operational_only(yfw_map_ctx ctx) {
    const yfw_req_ctx *request = ctx->req_ctx;
    return request != nullptr && request->request != nullptr && touches_operational(*request->request) &&
           request->request->data_kind == YFW_CONTENT_OPERATIONAL;
}

// Whether the answer is to contain copies of configuration.
inline bool wants_config_copy(yfw_map_ctx ctx) {
    const yfw_req_ctx *request = ctx->req_ctx;
    if (request == nullptr || request->request == nullptr)
        return true;
    return request->request->req_selection_empty != 0 ||
           request->request->req_content != YFW_CONTENT_OPERATIONAL;
}

} // namespace oclldp

#endif
