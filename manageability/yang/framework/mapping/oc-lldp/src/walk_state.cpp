#include "walk_state.h"

namespace oclldp {

constinit walk_state *walk_state::innermost_ = nullptr;

walk_state::walk_state(yfw_map_ctx ctx) : ctx_(ctx), outer_(innermost_) {
    const bool walking = innermost_ != nullptr && innermost_->ctx_ == ctx;
    if (ctx->req_ctx != nullptr || walking)
        return;
    own_.emplace();
    innermost_ = this;
}

walk_state::~walk_state() {
    innermost_ = outer_;
}

yfw_req_ctx &walk_state::of(yfw_map_ctx ctx) {
    return ctx->req_ctx != nullptr ? *ctx->req_ctx : *innermost_->own_;
}

} // namespace oclldp
