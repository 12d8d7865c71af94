// One request as the plug-in sees it: the contract's context structures and their backing data.
#ifndef YFW_HOST_REQUEST_CONTEXT_H
#define YFW_HOST_REQUEST_CONTEXT_H

#include <string>
#include <vector>

#include "host/node_hierarchy.h"
#include "host/tree_owner.h"
#include "yfw_map.h"

namespace yfw::host {

// The properties of a request that the plug-in sees.
struct RequestTraits {
    uint32_t kind = YMAP_REQ_GET;
    uint32_t content = YFW_CONTENT_ALL;
    bool selects_state = false;
    bool trace = false;        // debug log of level 3 and the trace buffer
    bool number_trace = false; // the trace buffer only
};

// Lives for one pass of a request. Frees whatever the plug-in left in the context.
class RequestContext {
public:
    // `trace_buffer`: the handle of the numbered trace, or NULL.
    RequestContext(const RequestTraits &traits, void *error_log, void *trace_log, void *trace_buffer);
    ~RequestContext();
    RequestContext(const RequestContext &) = delete;
    RequestContext &operator=(const RequestContext &) = delete;

    // The request that a context belongs to.
    static RequestContext &of(yfw_map_ctx ctx);

    yfw_map_ctx handle() { return &context_; }
    NodeHierarchy &hierarchy() { return hierarchy_; }
    std::vector<yfw_map_itree_item> &entry_stack() { return entry_stack_; }
    std::vector<tidl_yfw_datatree *> &saved_output_entries() { return saved_output_entries_; }
    bool is_edit() const;
    // Whether a replace stopped after its delete pass.
    bool replace_unfinished() const { return request_.replace_marker != 0; }

    // The nodes that the library may look up by path: at most YFW_REQUEST_SUBTREES, borrowed.
    void set_subtrees(const std::vector<yfw_request_subtree> &subtrees);

    // Paths of deleted entries that the plug-in wants kept.
    std::vector<std::string> &trimmed_paths() { return trimmed_paths_; }

    void record_error_path();
    // Where the plug-in failed: the path it recorded, else the last position of the walk.
    std::string error_path() const;
    // A message that the plug-in left as the failing node's name without recording a path; or empty.
    std::string error_text() const;

private:
    yfw_map_context context_{};
    yfw_req_ctx request_{};
    yfw_request_descriptor descriptor_{};
    NodeHierarchy hierarchy_;
    std::vector<yfw_map_itree_item> entry_stack_;
    std::vector<tidl_yfw_datatree *> saved_output_entries_;
    std::vector<std::string> trimmed_paths_;
    std::string error_path_;
};

} // namespace yfw::host

#endif
