// The native paths that a request walk emits, in order.
#ifndef YFW_HOST_NATIVE_PATHS_H
#define YFW_HOST_NATIVE_PATHS_H

#include <deque>
#include <optional>
#include <string>
#include <vector>

#include "host/node_hierarchy.h"
#include "host/tree_owner.h"
#include "platform/trace_buffer.h"

namespace yfw::host {

struct NativePath {
    std::string path;
    std::string ns;
    std::optional<std::string> value;
    uint32_t operation; // of the source node at the time; YFW_OP_NONE without one
    bool has_source;
    bool list_entry;
    uint32_t flags;
    std::string origin;       // the OpenConfig node being walked; empty unless followed
    uint64_t trace_lines = 0; // length of the numbered trace at the time; 0 unless followed
};

// The output tree of a request walk.
class NativePaths final : public TreeOwner {
public:
    NativePaths();

    tidl_yfw_datatree *root() { return &root_; }
    const std::vector<NativePath> &paths() const { return paths_; }

    // Records the walk's position and the trace's length with every path. Borrows both; either may be NULL.
    void follow(const NodeHierarchy *hierarchy, const platform::TraceBuffer *trace);

    terrno add(tidl_yfw_datatree &parent, const AddArguments &arguments) override;
    tidl_yfw_datatree *find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                         std::string_view key_name, std::string_view key_value) override;

private:
    struct Handle {
        tidl_yfw_datatree node;
        std::string path;
    };

    std::string origin_of(const tidl_yfw_datatree *source) const;

    const NodeHierarchy *hierarchy_ = nullptr;
    const platform::TraceBuffer *trace_ = nullptr;
    tidl_yfw_datatree root_{};
    std::vector<NativePath> paths_;
    std::deque<Handle> handles_; // nodes handed to the plug-in
};

} // namespace yfw::host

#endif
