#include "host/native_paths.h"

namespace yfw::host {
namespace {

std::string text_of(const char *text) {
    return text != nullptr ? text : "";
}

} // namespace

NativePaths::NativePaths() {
    root_.framework_private = this;
}

void NativePaths::follow(const NodeHierarchy *hierarchy, const platform::TraceBuffer *trace) {
    hierarchy_ = hierarchy;
    trace_ = trace;
}

// A leaf is not in the hierarchy, but is the source of what it adds.
std::string NativePaths::origin_of(const tidl_yfw_datatree *source) const {
    if (hierarchy_ == nullptr)
        return "";
    std::string origin = hierarchy_->instance_path();
    const bool below = source != nullptr && source->name != nullptr &&
                       (source->node_flags & YFW_NODE_CHILDREN_VALID) == 0 && !origin.ends_with(source->name);
    return below ? origin + "/" + source->name : origin;
}

terrno NativePaths::add(tidl_yfw_datatree &parent, const AddArguments &arguments) {
    std::string path = arguments.path;
    if (path.empty() || path.front() != '/') // relative to a node returned earlier
        path = text_of(parent.name).append("/").append(path);
    NativePath &added = paths_.emplace_back();
    added.path = path;
    added.ns = text_of(arguments.ns);
    if (arguments.value != nullptr)
        added.value = arguments.value;
    added.has_source = arguments.source != nullptr;
    added.operation = arguments.source != nullptr ? arguments.source->operation : 0u;
    added.list_entry = arguments.list_entry != 0;
    added.flags = arguments.flags;
    added.origin = origin_of(arguments.source);
    added.trace_lines = trace_ != nullptr ? trace_->written() : 0;
    if (arguments.slot != nullptr) {
        Handle &handle = handles_.emplace_back();
        handle.path = std::move(path);
        handle.node.name = handle.path.c_str();
        handle.node.framework_private = this;
        *arguments.slot = &handle.node;
    }
    return YMAP_OK;
}

tidl_yfw_datatree *NativePaths::find_or_add_entry(tidl_yfw_datatree &parent, std::string_view list_path,
                                                  std::string_view key_name, std::string_view key_value) {
    const std::string path(list_path);
    const std::string key = path + "/" + std::string(key_name);
    const std::string value(key_value);
    tidl_yfw_datatree *entry = nullptr;
    add(parent, {path.c_str(), nullptr, nullptr, nullptr, &entry, 1, 0});
    add(parent, {key.c_str(), nullptr, value.c_str(), nullptr, nullptr, 0, 0});
    return entry;
}

} // namespace yfw::host
