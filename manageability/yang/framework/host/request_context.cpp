#include "host/request_context.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>

namespace yfw::host {

RequestContext::RequestContext(const RequestTraits &traits, void *error_log, void *trace_log,
                               void *trace_buffer) {
    descriptor_.req_type = traits.kind;
    descriptor_.req_content = traits.content;
    descriptor_.data_kind = traits.content;
    descriptor_.req_selection_empty = traits.content == YFW_CONTENT_ALL ? 1 : 0;
    descriptor_.touches_588 = traits.selects_state ? 1 : 0;
    request_.request = &descriptor_;
    context_.req_ctx = &request_;
    constexpr uint32_t errors_only = 1u << YFW_LOG_ERROR;
    context_.dbg_filter.level_mask = traits.trace ? errors_only | 1u << YFW_LOG_TRACE : errors_only;
    context_.err_log_handle = error_log;
    context_.trc_log_handle = trace_log;
    context_.ltrace_handle = trace_buffer;
    context_.trace_enabled = (traits.trace || traits.number_trace) && trace_buffer != nullptr ? 1 : 0;
    context_.framework_private = this;
}

RequestContext::~RequestContext() {
    std::free(request_.common_data_ptr);
    if (request_.err_node_name != nullptr)
        qdos_named_free(request_.err_node_name);
}

RequestContext &RequestContext::of(yfw_map_ctx ctx) {
    return *static_cast<RequestContext *>(ctx->framework_private);
}

bool RequestContext::is_edit() const {
    return descriptor_.req_type != YMAP_REQ_GET && descriptor_.req_type != YMAP_REQ_GET_CONFIG;
}

void RequestContext::set_subtrees(const std::vector<yfw_request_subtree> &subtrees) {
    std::fill(std::begin(request_.subtrees), std::end(request_.subtrees), yfw_request_subtree{});
    std::copy_n(subtrees.begin(), std::min<size_t>(subtrees.size(), YFW_REQUEST_SUBTREES), request_.subtrees);
}

void RequestContext::record_error_path() {
    error_path_ = hierarchy_.instance_path();
    if (request_.err_node_name != nullptr)
        error_path_.append("/").append(request_.err_node_name);
}

std::string RequestContext::error_path() const {
    return !error_path_.empty() ? error_path_ : hierarchy_.last_standing();
}

std::string RequestContext::error_text() const {
    return error_path_.empty() && request_.err_node_name != nullptr ? request_.err_node_name : "";
}

} // namespace yfw::host
